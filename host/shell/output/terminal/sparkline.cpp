#include "shell/output/terminal/sparkline.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

namespace host {
namespace {

constexpr std::string_view kBlocks[] = {"\u2581", "\u2582", "\u2583", "\u2584", "\u2585", "\u2586", "\u2587", "\u2588"};
constexpr std::string_view kLetters[] = {"_", ".", "-", "=", "+", "*", "%", "#"};
static_assert(std::size(kBlocks) == std::size(kLetters));

}  // namespace

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
