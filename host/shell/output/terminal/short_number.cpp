#include "shell/output/terminal/short_number.h"

#include <string_view>

namespace host {

std::string short_number(uint64 number) {
  constexpr uint64 kThousand = 1000;
  constexpr std::string_view kPrefixes = "kMGTPE";
  if (number < kThousand) return std::to_string(number);
  std::size_t prefix = 0;
  uint64 unit = kThousand;
  while (number / unit >= kThousand) {
    unit *= kThousand;
    ++prefix;
  }
  const uint64 whole = number / unit;
  const std::size_t decimals = whole >= 100 ? 0 : whole >= 10 ? 1 : 2;
  const uint64 step = decimals == 0 ? unit : decimals == 1 ? unit / 10 : unit / 100;
  const uint64 steps = number / step + (number % step >= step / 2 ? 1 : 0);
  if (decimals == 0 && steps == kThousand) return std::string("1") + kPrefixes[prefix + 1];
  std::string digits = std::to_string(steps);
  if (decimals != 0) {
    digits.insert(digits.size() - decimals, ".");
    digits.resize(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
  }
  return digits + kPrefixes[prefix];
}

}  // namespace host
