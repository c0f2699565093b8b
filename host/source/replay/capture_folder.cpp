#include "source/replay/capture_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <linux/netlink.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <utility>

#include "base/digits.h"
#include "base/replace_file.h"
#include "base/text.h"

namespace host {
namespace {

constexpr std::size_t kMostBytes = 256 << 20;  // of one file
constexpr std::string_view kVersionWords = "pmsh capture ";

std::vector<std::string_view> words_of(std::string_view line) {
  std::vector<std::string_view> words;
  while (true) {
    const std::size_t end = line.find(' ');
    words.push_back(line.substr(0, end));
    if (end == std::string_view::npos) return words;
    line.remove_prefix(end + 1);
  }
}

// The bytes of a regular file; an errno in `error`.
std::string read_file(const std::string& path, int& error) {
  const open_file file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW));
  struct stat found {};
  error = file.descriptor < 0 || fstat(file.descriptor, &found) != 0 ? errno : 0;
  if (error == 0 && !S_ISREG(found.st_mode)) error = S_ISDIR(found.st_mode) ? EISDIR : EINVAL;
  if (error == 0 && static_cast<std::size_t>(found.st_size) > kMostBytes) error = EFBIG;
  std::string bytes;
  char block[1 << 16];
  while (error == 0) {
    const ssize_t size = ::read(file.descriptor, block, sizeof block);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) error = errno;
    if (size <= 0) break;
    bytes.append(block, static_cast<std::size_t>(size));
  }
  return bytes;
}

bool is_file_name(std::string_view name) {
  return !name.empty() && name.front() != '.' && name.find('/') == std::string_view::npos;
}

// Whether bytes are complete messages.
bool are_messages(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const std::size_t length = message_length(bytes);
    if (length == 0) return false;
    bytes = bytes.subspan(length);
  }
  return true;
}

class folder_reader {
 public:
  explicit folder_reader(const std::string& directory) : directory_(directory) {}

  capture_folder read() {
    int error = 0;
    const std::string index = read_file(path(kCaptureIndex), error);
    if (error != 0)
      fail("cannot read " + in_quotes(path(kCaptureIndex)) + ": " + std::strerror(error) +
           ". Give --replay a folder that --capture has written.");
    read_index(index);
    read_foreign_files();
    if (!faults_.empty()) throw capture_folder_error(faults_);
    return std::move(folder_);
  }

 private:
  using words = std::vector<std::string_view>;

  [[noreturn]] void fail(const std::string& fault) {
    faults_.push_back(fault);
    throw capture_folder_error(faults_);
  }

  std::string path(std::string_view name) const { return directory_ + "/" + std::string(name); }

  void add_fault(const std::string& text) { faults_.push_back(text); }

  std::string at_line() const { return in_quotes(path(kCaptureIndex)) + " line " + std::to_string(line_); }

  void read_index(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      if (end == std::string_view::npos) break;  // a line that is cut
      ++line_;
      read_line(text.substr(0, end));
      text.remove_prefix(end + 1);
    }
    if (line_ == 0) fail_without_version();
    if (!is_ended_)
      add_fault(in_quotes(path(kCaptureIndex)) +
                " has no last line 'end'. The capture was interrupted or the file is cut.");
  }

  [[noreturn]] void fail_without_version() {
    fail(in_quotes(path(kCaptureIndex)) + " is not the index of a capture: expected '" + kCaptureVersion +
         "' in its first line.");
  }

  void read_line(std::string_view line) {
    if (line_ == 1) return read_version(line);
    const words all = words_of(line);
    for (const line_row& row : kLines)
      if (row.word == all[0] && !is_ended_ && all.size() >= row.least_words && (this->*row.read)(all, line)) return;
    add_fault(at_line() + " cannot be read: " + in_quotes(line) + ".");
  }

  void read_version(std::string_view line) {
    if (line == kCaptureVersion) return;
    if (!line.starts_with(kVersionWords)) fail_without_version();
    fail(in_quotes(path(kCaptureIndex)) + " has the format " + in_quotes(line) + ", but this program reads " +
         in_quotes(kCaptureVersion) + ".");
  }

  bool read_byte_order(const words& all, std::string_view) {
    if (all[1] == byte_order_word()) return true;
    if (all[1] != "little" && all[1] != "big") return false;
    fail("the capture " + in_quotes(directory_) + " is of a " + std::string(all[1]) +
         "-endian machine. Replay it on one.");
  }

  bool read_clock(const words& all, std::string_view) {
    uint32 seconds = 0;
    if (!read_number(all[1], seconds)) return false;
    folder_.clock = static_cast<std::time_t>(seconds);
    return true;
  }

  bool read_system(const words& all, std::string_view) {
    folder_.system = {std::string(all[1]), std::string(all[2])};
    return true;
  }

  bool read_switch(const words&, std::string_view line) {
    folder_.switch_name = line.substr(line.find(' ') + 1);
    return true;
  }

  bool read_device(const words& all, std::string_view) {
    uint32 number = 0;
    captured_interface it;
    const auto reason = reason_named(all[3]);
    if (!read_number(all[1], number) || !read_number(all[2], it.if_index, 16) || !reason) return false;
    it.reason = *reason;
    folder_.interfaces[number] = it;
    return true;
  }

  bool read_baseline_line(const words&, std::string_view line) {
    uint32 number = 0;
    counter_baseline baseline;
    if (!read_baseline(std::string(line.substr(line.find(' ') + 1)), number, baseline)) return false;
    folder_.baselines[number] = baseline;
    return true;
  }

  // "answer N BUS TYPE NAME FILE BYTES ERROR KEY"
  bool read_answer(const words& all, std::string_view) {
    uint32 number = 0;
    std::size_t size = 0;
    captured_answer answer;
    const auto bus = bus_named(all[2]);
    const std::string_view name = all[5];
    if (!read_number(all[1], number) || number != answers_ + 1 || !bus || !is_file_name(name) ||
        !read_number(all[6], size) || !read_number(all[7], answer.error) || answer.error < 0 || all[8].empty())
      return false;
    ++answers_;
    files_.insert(std::string(name));
    if (read_answer_file(name, size, *bus, answer.bytes))
      folder_.answers[{*bus, std::string(all[8])}].push_back(std::move(answer));
    return true;
  }

  bool read_answer_file(std::string_view name, std::size_t size, capture_bus bus, std::string& bytes) {
    int error = 0;
    bytes = read_file(path(name), error);
    if (error == ENOENT)
      add_fault(in_quotes(path(name)) + " is missing; " + at_line() + " names it.");
    else if (error != 0)
      add_fault("cannot read " + in_quotes(path(name)) + ": " + std::strerror(error) + ".");
    else if (bytes.size() != size)
      add_fault(in_quotes(path(name)) + " has " + std::to_string(bytes.size()) + " bytes; " + at_line() + " expects " +
                std::to_string(size) + ".");
    else if ((bus == capture_bus::route || bus == capture_bus::generic) && !are_messages(bytes))
      add_fault(in_quotes(path(name)) + " is not an answer of the kernel: a message in it has a wrong length.");
    else
      return true;
    return false;
  }

  bool read_end(const words& all, std::string_view) {
    uint32 number = 0;
    is_ended_ = read_number(all[1], number) && number == answers_;
    return is_ended_;
  }

  void read_foreign_files() {
    const auto close_directory = [](DIR* it) { closedir(it); };
    const std::unique_ptr<DIR, decltype(close_directory)> opened(opendir(directory_.c_str()), close_directory);
    if (opened == nullptr) return add_fault("cannot read " + in_quotes(directory_) + ": " + std::strerror(errno) + ".");
    std::vector<std::string> foreign;
    while (const dirent* const entry = readdir(opened.get())) {
      const std::string name = entry->d_name;
      if (name != "." && name != ".." && name != kCaptureIndex && !files_.contains(name)) foreign.push_back(name);
    }
    std::sort(foreign.begin(), foreign.end());
    for (const std::string& name : foreign)
      add_fault(in_quotes(path(name)) + " is not part of the capture. Remove it.");
  }

  struct line_row {
    std::string_view word;
    std::size_t least_words;
    bool (folder_reader::*read)(const words&, std::string_view line);
  };
  static const line_row kLines[8];

  const std::string& directory_;
  capture_folder folder_;
  std::vector<std::string> faults_;
  std::set<std::string> files_;
  uint32 answers_ = 0;
  std::size_t line_ = 0;
  bool is_ended_ = false;
};

const folder_reader::line_row folder_reader::kLines[8] = {
    {"byte-order", 2, &folder_reader::read_byte_order}, {"clock", 2, &folder_reader::read_clock},
    {"system", 3, &folder_reader::read_system},         {"switch", 2, &folder_reader::read_switch},
    {"device", 4, &folder_reader::read_device},         {"baseline", 4, &folder_reader::read_baseline_line},
    {"answer", 9, &folder_reader::read_answer},         {"end", 2, &folder_reader::read_end},
};

}  // namespace

capture_folder_error::capture_folder_error(std::vector<std::string> all)
    : std::runtime_error(fmt::format("{}", fmt::join(all, "\n"))), faults(std::move(all)) {}

capture_folder read_capture_folder(const std::string& directory) { return folder_reader(directory).read(); }

}  // namespace host
