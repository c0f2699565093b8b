#include "source/chassis/attribute_words.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace host {
namespace {

constexpr uint32 kHighestVlan = 4094;

struct time_unit {
  char letter;
  uint64 seconds;
};
constexpr time_unit kTimeUnits[] = {{'w', 604800}, {'d', 86400}, {'h', 3600}, {'m', 60}, {'s', 1}};

// Reads and removes a number at the beginning of a text. False when there is none.
bool take_number(std::string_view& text, uint32& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool take_mark(std::string_view& text, char mark) {
  if (text.empty() || text.front() != mark) return false;
  text.remove_prefix(1);
  return true;
}

// Reads and removes "4" or "4-7" at the beginning of a list of VLANs.
bool take_vlans(std::string_view& text, std::vector<uint16>& vlans) {
  uint32 low = 0;
  if (!take_number(text, low)) return false;
  uint32 high = low;
  if (take_mark(text, '-') && !take_number(text, high)) return false;
  if (low < 1 || high < low || high > kHighestVlan) return false;
  for (uint32 vlan = low; vlan <= high; ++vlan) vlans.push_back(static_cast<uint16>(vlan));
  return true;
}

}  // namespace

uint32 read_duration_sec(const yaml_value& value) {
  std::string_view text = value.text();
  uint64 seconds = 0;
  do {
    uint32 number = 0;
    const bool has_number = take_number(text, number);
    const auto unit = std::find_if(std::begin(kTimeUnits), std::end(kTimeUnits),
                                   [&](const time_unit& it) { return has_number && take_mark(text, it.letter); });
    if (unit == std::end(kTimeUnits)) value.fail_with_value("is not a duration such as 3d4h or 90s");
    seconds += number * unit->seconds;
    if (seconds > UINT32_MAX) value.fail_with_value("is longer than 136 years");
  } while (!text.empty());
  return static_cast<uint32>(seconds);
}

uint32 read_moment_sec(const yaml_value& value, uint32 now_sec) {
  const std::string& text = value.text();
  if (text == "never") return 0;
  if (text.find_first_not_of("0123456789") == std::string::npos)
    return static_cast<uint32>(value.number(0, UINT32_MAX));
  const uint32 seconds_ago = read_duration_sec(value);
  if (seconds_ago >= now_sec) value.fail_with_value("looks back to before 1970");
  return now_sec - seconds_ago;
}

mac_address read_mac(const yaml_value& value) {
  const std::string& text = value.text();
  mac_address mac;
  int length = 0;
  const int num_read = std::sscanf(text.c_str(), "%2hhx:%2hhx:%2hhx:%2hhx:%2hhx:%2hhx%n", &mac[0], &mac[1], &mac[2],
                                   &mac[3], &mac[4], &mac[5], &length);
  if (num_read != 6 || length != 17 || text.size() != 17)
    value.fail_with_value("is not a MAC address such as 02:00:00:00:00:00");
  return mac;
}

ip_address read_ip(const yaml_value& value) {
  const std::string& text = value.text();
  const std::size_t slash = text.find('/');
  const std::string host_part = text.substr(0, slash);
  ip_address address;
  address.is_ipv6 = host_part.find(':') != std::string::npos;
  std::string_view length = slash == std::string::npos ? "" : std::string_view(text).substr(slash + 1);
  const bool is_good = inet_pton(address.is_ipv6 ? AF_INET6 : AF_INET, host_part.c_str(), address.bytes.data()) == 1 &&
                       take_number(length, address.prefix_length) && length.empty() &&
                       address.prefix_length <= (address.is_ipv6 ? 128U : 32U);
  if (!is_good) value.fail_with_value("is not an address with its prefix length, such as 10.1.2.3/24");
  return address;
}

uint16 read_vlan(const yaml_value& value) { return static_cast<uint16>(value.number(1, kHighestVlan)); }

namespace {

// `what` names the numbers in errors.
std::vector<uint16> read_id_list(const yaml_value& value, const std::string& what) {
  std::string_view text = value.text();
  std::vector<uint16> vlans;
  if (text == "none") return vlans;
  if (text == "all") return every_vlan();
  bool is_good = take_vlans(text, vlans);
  while (is_good && take_mark(text, ',')) is_good = take_vlans(text, vlans);
  if (!is_good || !text.empty())
    value.fail_with_value(fmt::format("is not a list of {} from 1 to 4094, such as 1-10,20", what));
  std::sort(vlans.begin(), vlans.end());
  vlans.erase(std::unique(vlans.begin(), vlans.end()), vlans.end());
  return vlans;
}

}  // namespace

std::vector<uint16> read_vlan_list(const yaml_value& value) { return read_id_list(value, "VLANs"); }

std::vector<uint16> read_vsan_list(const yaml_value& value) { return read_id_list(value, "VSANs"); }

}  // namespace host
