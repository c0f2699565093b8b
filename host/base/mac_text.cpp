#include "base/mac_text.h"

#include <fmt/format.h>

#include <cctype>

#include "base/digits.h"

namespace host {
namespace {

constexpr std::string_view kSeparators = ".:-";
constexpr std::size_t kDigits = 12;

mac_reading fault_at(std::size_t position, std::string fault) { return {std::nullopt, position, std::move(fault)}; }

// The number of groups that digits after each separator are in; 0: any.
std::size_t groups_for(char separator) { return separator == '.' ? 3 : separator == '\0' ? 1 : 6; }

}  // namespace

mac_reading read_mac(std::string_view text) {
  const std::size_t first_separator = text.find_first_of(kSeparators);
  const char separator = first_separator == std::string_view::npos ? '\0' : text[first_separator];
  const std::size_t groups = groups_for(separator), width = kDigits / groups;
  std::string digits;  // of all groups, in full
  std::size_t start = 0;
  for (std::size_t group = 0; group < groups; ++group) {
    std::size_t end = start;
    while (end < text.size() && std::isxdigit(static_cast<unsigned char>(text[end])) != 0) ++end;
    const bool is_last = group + 1 == groups;
    if (end == start)
      return fault_at(start, start == text.size() ? "the address ends too soon" : "expected a hexadecimal digit");
    if (end - start > width) return fault_at(start + width, "too many digits");
    if (end == text.size() ? !is_last : is_last || text[end] != separator) {
      if (end == text.size()) return fault_at(end, "the address ends too soon");
      if (kSeparators.find(text[end]) == std::string_view::npos) return fault_at(end, "expected a hexadecimal digit");
      return fault_at(end, is_last ? "the address is too long" : fmt::format("expected '{}'", separator));
    }
    if (separator == '\0' && end - start < width) return fault_at(end, "the address ends too soon");
    digits.append(width - (end - start), '0').append(text.substr(start, end - start));
    start = end + 1;
  }
  mac_reading read;
  read.mac.emplace();
  read_hex(digits, *read.mac);
  return read;
}

}  // namespace host
