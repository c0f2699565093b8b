#include "source/kernel/device_list.h"

#include <net/if.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

#include "base/digits.h"
#include "base/replace_file.h"
#include "source/kernel/own_file.h"
#include "source/kernel/sorted_records.h"

namespace host {
namespace {

// After the line of the namespace the number of the management port's device, then a line for each device:
//   NUMBER INTERFACE REASON LOOPBACK KIND SLAVE-KIND MAC NAME
// INTERFACE is an index, 0 without one; an empty kind is "-"; a name may have blanks. The last line is kEndOfList.
constexpr std::string_view kEndOfList = "end";
constexpr std::string_view kNoKind = "-";

template <typename Number>
void append_field(std::string& to, Number number) {
  std::array<char, 24> digits;
  to.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
  to += ' ';
}

void append_kind(std::string& to, const std::string& kind) {
  to += kind.empty() ? kNoKind : std::string_view(kind);
  to += ' ';
}

// The hardware address as one number.
uint64 number_of_mac(const std::array<uint8, 6>& mac) {
  uint64 number = 0;
  for (const uint8 byte : mac) number = number << 8 | byte;
  return number;
}

std::array<uint8, 6> mac_of_number(uint64 number) {
  std::array<uint8, 6> mac{};
  for (std::size_t i = mac.size(); i-- > 0; number >>= 8) mac[i] = static_cast<uint8>(number);
  return mac;
}

void append_device(std::string& to, const kernel_link& link, const mapped_device* mapped) {
  append_field(to, link.number);
  append_field(to, mapped == nullptr ? 0U : mapped->if_index);
  append_field(to, mapped == nullptr ? 0U : static_cast<uint32>(mapped->reason));
  append_field(to, link.flags & IFF_LOOPBACK);
  append_kind(to, link.kind);
  append_kind(to, link.slave_kind);
  append_field(to, number_of_mac(link.mac));
  to += link.name;
  to += '\n';
}

// Reads the next field. False when it is not a number.
template <typename Number>
bool take_field(std::string_view& line, Number& number) {
  return read_number(take_until(' ', line), number);
}

std::string take_kind(std::string_view& line) {
  const std::string_view kind = take_until(' ', line);
  return std::string(kind == kNoKind ? std::string_view() : kind);
}

bool take_device(std::string_view line, listed_devices& found) {
  kernel_link link;
  if_index_t if_index = 0;
  uint32 reason = 0;
  uint64 mac = 0;
  if (!take_field(line, link.number) || !take_field(line, if_index) || !take_field(line, reason) ||
      !take_field(line, link.flags) || reason > static_cast<uint32>(name_reason::device_index))
    return false;
  link.kind = take_kind(line);
  link.slave_kind = take_kind(line);
  if (!take_field(line, mac) || line.empty()) return false;
  link.mac = mac_of_number(mac);
  link.name = line;
  if (!found.links.empty() && link.number <= found.links.back().number) return false;
  if (if_index != 0)
    found.mapped.push_back(
        {link.name, link.number, if_index, link.slave_kind == "bridge", static_cast<name_reason>(reason)});
  found.links.push_back(std::move(link));
  return true;
}

bool is_one_field(const std::string& kind) { return kind.find_first_of(" \n") == std::string::npos; }

bool is_listable(const kernel_link& link) {
  return link.name.find('\n') == std::string::npos && is_one_field(link.kind) && is_one_field(link.slave_kind);
}

}  // namespace

std::optional<listed_devices> device_list::read() const {
  if (path_.empty()) return std::nullopt;
  std::string fault;
  const std::string text = read_own_file(path_, fault);
  std::string_view rest = text;
  listed_devices found;
  if (take_until('\n', rest) != line_of_namespace()) return std::nullopt;
  if (std::string_view line = take_until('\n', rest); !take_field(line, found.management)) return std::nullopt;
  while (!rest.empty()) {
    const std::string_view line = take_until('\n', rest);
    if (line == kEndOfList) return rest.empty() ? std::optional(std::move(found)) : std::nullopt;
    if (!take_device(line, found)) return std::nullopt;
  }
  return std::nullopt;
}

void device_list::write(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped,
                        uint32 management) const {
  if (path_.empty() || !std::all_of(links.begin(), links.end(), is_listable)) return;
  std::string text = line_of_namespace() + "\n" + std::to_string(management) + "\n";
  for (const kernel_link& link : links) append_device(text, link, find_by<&mapped_device::number>(mapped, link.number));
  text.append(kEndOfList) += '\n';
  std::string fault;
  if (read_own_file(path_, fault) != text) replace_file(path_, text, nullptr);
}

}  // namespace host
