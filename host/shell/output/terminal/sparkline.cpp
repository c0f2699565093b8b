#include "shell/output/terminal/sparkline.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace host {
namespace {

constexpr std::string_view kBlocks[] = {"\u2581", "\u2582", "\u2583", "\u2584", "\u2585", "\u2586", "\u2587", "\u2588"};
constexpr std::string_view kLetters[] = {"_", ".", "-", "=", "+", "*", "%", "#"};
static_assert(std::size(kBlocks) == std::size(kLetters));

}  // namespace

bool has_utf8_locale() {
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || value[0] == '\0') continue;
    std::string plain;
    for (const char character : std::string_view(value))
      if (character != '-') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return plain.find("utf8") != std::string::npos;
  }
  return false;
}

std::string sparkline(std::span<const double> values, std::size_t width, bool is_utf8) {
  if (values.size() > width) values = values.last(width);
  const double greatest = values.empty() ? 0 : *std::max_element(values.begin(), values.end());
  constexpr std::size_t kHighest = std::size(kBlocks) - 1;
  std::string text;
  for (const double value : values) {
    const double share = greatest > 0 ? value / greatest : 0;
    const auto height = std::min(kHighest, static_cast<std::size_t>(std::lround(share * double{kHighest})));
    text += is_utf8 ? kBlocks[height] : kLetters[height];
  }
  return text;
}

}  // namespace host
