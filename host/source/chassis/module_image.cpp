#include "source/chassis/module_image.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <numeric>
#include <span>
#include <sstream>
#include <stdexcept>

#include "base/digits.h"
#include "platform/transceiver.h"

namespace host {
namespace {

constexpr std::size_t kSfpBytes = 128, kX2Bytes = 245;
constexpr uint8 kInternalDiagnostics = 0x68;  // diagnostics, calibrated by the module, average power

// A usual SFP. Lengths in the units of its page.
struct sfp_medium {
  std::string_view word;
  const char* part_number;
  uint8 hundreds_of_mbd;
  uint8 km, hundreds_of_m;  // 9/125 um
  uint8 tens_50, tens_625;  // 50/125 and 62.5/125 um, in tens of metres or a code
  uint8 copper_m;
  uint8 ethernet_10g, ethernet_1g;                      // compliance codes of bytes 3 and 6
  uint8 fc_length, fc_transmitter, fc_media, fc_speed;  // of bytes 7 to 10
  uint16 wavelength_nm;
  uint8 diagnostics;
};

constexpr sfp_medium kSfps[] = {
    {"1000base-T", "LW-GE-T", 13, 0, 0, 0, 0, 100, 0, 0x08, 0, 0, 0, 0, 0, 0},
    {"1000base-SX", "LW-GE-SX", 13, 0, 0, 55, 27, 0, 0, 0x01, 0, 0, 0x0C, 0, 850, kInternalDiagnostics},
    {"1000base-LH", "LW-GE-LH", 13, 10, 100, 55, 55, 0, 0, 0x02, 0, 0, 0x01, 0, 1310, kInternalDiagnostics},
    {"10Gbase-SR", "LW-10G-SR", 103, 0, 0, 8, 3, 0, 0x10, 0, 0, 0, 0x0C, 0, 850, kInternalDiagnostics},
    {"10Gbase-LR", "LW-10G-LR", 103, 10, 100, 0, 0, 0, 0x20, 0, 0, 0, 0x01, 0, 1310, kInternalDiagnostics},
    {"10Gbase-CU", "LW-10G-CU3M", 103, 0, 0, 0, 0, 3, 0x04, 0, 0, 0, 0, 0, 0, 0},
    {"4GFC-SW", "LW-FC4-SW", 43, 0, 0, 15, 7, 0, 0, 0, 0x20, 0x40, 0x0C, 0x15, 850, kInternalDiagnostics},
    {"4GFC-LW", "LW-FC4-LW", 43, 10, 100, 0, 0, 0, 0, 0, 0x10, 0x02, 0x01, 0x15, 1310, kInternalDiagnostics},
    {"8GFC-SW", "LW-FC8-SW", 85, 0, 0, 5, 2, 0, 0, 0, 0x20, 0x40, 0x0C, 0x54, 850, kInternalDiagnostics},
    {"8GFC-LW", "LW-FC8-LW", 85, 10, 100, 0, 0, 0, 0, 0, 0x10, 0x02, 0x01, 0x54, 1310, kInternalDiagnostics},
};

struct x2_medium {
  std::string_view word;
  const char* part_number;
};
constexpr x2_medium kX2s[] = {{"10Gbase-LX4", "LW-X2-LX4"}, {"10Gbase-ZR", "LW-X2-ZR"}};

// A blank-padded text field.
void put(std::vector<uint8>& image, std::size_t at, std::size_t width, std::string_view text) {
  std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(at), width, uint8{' '});
  std::copy_n(text.begin(), std::min(width, text.size()), image.begin() + static_cast<std::ptrdiff_t>(at));
}

uint8 sum(const std::vector<uint8>& image, std::size_t from, std::size_t until) {
  return std::accumulate(image.begin() + static_cast<std::ptrdiff_t>(from),
                         image.begin() + static_cast<std::ptrdiff_t>(until), uint8{0},
                         [](uint8 all, uint8 byte) { return static_cast<uint8>(all + byte); });
}

std::string serial_number(if_index_t port) {
  std::ostringstream text;
  text << "LW" << std::hex << std::uppercase << port;
  return text.str();
}

std::vector<uint8> sfp_image(const sfp_medium& medium, if_index_t port) {
  std::vector<uint8> image(kSfpBytes);
  image[0] = 3;  // an SFP
  image[1] = 4;  // reported by its page
  image[2] = medium.copper_m != 0 ? 0x22 : 7;
  image[3] = medium.ethernet_10g;
  image[6] = medium.ethernet_1g;
  image[7] = medium.fc_length;
  image[8] = medium.fc_transmitter;
  image[9] = medium.fc_media;
  image[10] = medium.fc_speed;
  image[11] = medium.hundreds_of_mbd > 100 ? 6 : 1;  // 64B/66B, 8B/10B
  image[12] = medium.hundreds_of_mbd;
  image[14] = medium.km;
  image[15] = medium.hundreds_of_m;
  image[16] = medium.tens_50;
  image[17] = medium.tens_625;
  image[18] = medium.copper_m;
  put(image, 20, 16, "LIGHTWORKS");
  put(image, 40, 16, medium.part_number);
  put(image, 56, 4, "A1");
  image[60] = static_cast<uint8>(medium.wavelength_nm >> 8);
  image[61] = static_cast<uint8>(medium.wavelength_nm);
  image[63] = sum(image, 0, 63);
  put(image, 68, 16, serial_number(port));
  put(image, 84, 8, "240115");
  image[92] = medium.diagnostics;
  image[94] = medium.diagnostics != 0 ? 5 : 0;
  image[95] = sum(image, 64, 95);
  return image;
}

std::vector<uint8> x2_image(const x2_medium& medium, if_index_t port) {
  std::vector<uint8> image(kX2Bytes);
  image[0] = 2;     // an X2
  image[1] = 1;     // SC
  image[3] = 0x28;  // 10300 Mbit/s
  image[4] = 0x3C;
  image[6] = 0x80;
  put(image, 40, 16, "LIGHTWORKS");
  put(image, 56, 16, medium.part_number);
  put(image, 72, 2, "B");
  put(image, 74, 16, serial_number(port));
  put(image, 90, 8, "20240115");
  image[107] = sum(image, 0, 107);
  return image;
}

std::vector<uint8> bytes_of_hex(const std::string& text) {
  std::vector<uint8> bytes;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    line.resize(std::min(line.find('#'), line.size()));
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      if (word.size() % 2 != 0) throw std::runtime_error(fmt::format("odd number of digits in '{}'", word));
      const std::size_t before = bytes.size();
      bytes.resize(before + word.size() / 2);
      if (!read_hex(word, std::span(bytes).subspan(before)))
        throw std::runtime_error(fmt::format("'{}' is not hexadecimal", word));
    }
  }
  return bytes;
}

}  // namespace

std::vector<uint8> module_image(std::string_view medium, if_index_t port) {
  for (const sfp_medium& known : kSfps)
    if (known.word == medium) return sfp_image(known, port);
  for (const x2_medium& known : kX2s)
    if (known.word == medium) return x2_image(known, port);
  return {};
}

std::vector<uint8> read_image(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot be read");
  const std::string content{std::istreambuf_iterator<char>(file), {}};
  if (path.ends_with(".hex")) return bytes_of_hex(content);
  return {content.begin(), content.end()};
}

}  // namespace host
