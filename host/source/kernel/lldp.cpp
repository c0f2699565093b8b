// Rows of the neighbors that lldpd reports.
#include "source/kernel/lldp.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>
#include <utility>

#include "base/digits.h"
#include "source/kernel/netlink.h"
#include "source/kernel/tables.h"

namespace host {
namespace {

enum class id_form : uint8 { text, mac, address };

struct id_type {
  const char* word;
  id_form form = id_form::text;
};
// By subtype, from 1.
constexpr id_type kChassisIdTypes[] = {
    {"chassis"}, {"ifalias"}, {"port"}, {"mac", id_form::mac}, {"ip", id_form::address}, {"ifname"}, {"local"},
};
constexpr id_type kPortIdTypes[] = {
    {"ifalias"}, {"port"}, {"mac", id_form::mac}, {"ip", id_form::address}, {"ifname"}, {"agent"}, {"local"},
};

constexpr flag_word kLldpCapabilities[] = {
    {0x01, "other"},  {0x02, "repeater"},  {0x04, "bridge"}, {0x08, "wlan"},
    {0x10, "router"}, {0x20, "telephone"}, {0x40, "docsis"}, {0x80, "station"},
};

std::string mac_text(std::string_view bytes) {
  std::string text;
  append_dotted_hex(text, bytes);
  return text;
}

// The first byte is the family, as IANA numbers them.
std::string address_text(std::string_view bytes) {
  constexpr char kIpv4 = 1, kIpv6 = 2;
  char text[INET6_ADDRSTRLEN] = {};
  if (bytes.size() == 5 && bytes[0] == kIpv4) inet_ntop(AF_INET, bytes.data() + 1, text, sizeof text);
  if (bytes.size() == 17 && bytes[0] == kIpv6) inet_ntop(AF_INET6, bytes.data() + 1, text, sizeof text);
  return text[0] == '\0' ? hex_of(bytes) : text;
}

std::string id_text(const lldp_id& id, id_form form) {
  constexpr std::size_t kMacBytes = 6;
  if (form == id_form::mac) return id.bytes.size() == kMacBytes ? mac_text(id.bytes) : hex_of(id.bytes);
  return form == id_form::address ? address_text(id.bytes) : id.bytes;
}

// Sets the text of an identifier and the word of its type.
void take_id(const lldp_id& id, std::span<const id_type> types, std::string& text, std::string& word) {
  if (id.bytes.empty()) return;
  const bool is_known = id.subtype >= 1 && id.subtype <= types.size();
  const id_type type = is_known ? types[id.subtype - 1] : id_type{};
  text = id_text(id, type.form);
  word = is_known ? type.word : std::to_string(id.subtype);
}

// Only addresses: a text may have a comma.
std::string address_words(const std::vector<std::string>& addresses) {
  in6_addr parsed;
  std::string words;
  for (const std::string& it : addresses)
    if (inet_pton(AF_INET, it.c_str(), &parsed) == 1 || inet_pton(AF_INET6, it.c_str(), &parsed) == 1)
      append_word(words, it);
  return words;
}

std::vector<uint16> vlans_of(const std::vector<uint32>& numbers) {
  constexpr uint32 kLastVlan = 4094;
  std::vector<uint16> vlans;
  for (const uint32 it : numbers)
    if (it >= 1 && it <= kLastVlan) vlans.push_back(static_cast<uint16>(it));
  std::sort(vlans.begin(), vlans.end());
  vlans.erase(std::unique(vlans.begin(), vlans.end()), vlans.end());
  return vlans;
}

lldp_row row_of(const lldp_neighbor& it, const row_device& device) {
  lldp_row row{.device = device, .protocol = it.protocol};
  take_id(it.chassis, kChassisIdTypes, row.chassis_id, row.chassis_id_type);
  take_id(it.port, kPortIdTypes, row.port_id, row.port_id_type);
  row.system_name = it.system_name;
  row.system_description = it.system_description;
  row.port_description = it.port_description;
  row.management_addresses = address_words(it.management_addresses);
  row.capabilities = words_of_flags(it.capabilities, kLldpCapabilities);
  row.enabled_capabilities = words_of_flags(it.enabled_capabilities, kLldpCapabilities);
  row.port_vlan = it.port_vlan;
  row.vlans = vlans_of(it.vlans);
  row.ttl_seconds = it.ttl_seconds;
  row.unchanged_seconds = it.unchanged_seconds;
  return row;
}

// A device of lldpd is that of this namespace if both the name and the number agree: lldpd may run in another one.
row_device device_of(const lldp_neighbor& neighbor, const table_devices& devices) {
  const table_device* const found = devices.find(neighbor.device_number);
  if (found == nullptr || found->name != neighbor.device) return {0, neighbor.device, 0};
  return {found->if_index, found->name, found->number};
}

class lldp_reader final : public table_reader {
 public:
  explicit lldp_reader(table_devices devices) : devices_(std::move(devices)) {}

  bool next(std::vector<table_row>& rows) override {
    lldp_answer answer = the_kernel_io().lldp_neighbors();
    if (answer.error != 0) throw kernel_error(lldp_error_text(answer.error));
    std::stable_sort(answer.neighbors.begin(), answer.neighbors.end(),
                     [](const auto& left, const auto& right) { return left.device_number < right.device_number; });
    for (const lldp_neighbor& it : answer.neighbors) {
      const row_device device = device_of(it, devices_);
      if (devices_.is_requested(device.number)) rows.emplace_back(row_of(it, device));
    }
    return false;
  }

 private:
  table_devices devices_;
};

}  // namespace

std::unique_ptr<table_reader> read_lldp_table(table_devices devices) {
  return std::make_unique<lldp_reader>(std::move(devices));
}

std::string lldp_error_text(int error) {
  switch (error) {
    case ELIBACC: return "liblldpctl.so.4 is missing. Install the package lldpd";
    case ELIBBAD: return "liblldpctl.so.4 lacks a function. Install the package lldpd again";
    case ENOENT:
    case ECONNREFUSED: return "lldpd is not running. Start it with 'systemctl start lldpd'";
    case EACCES:
    case EPERM:
      return "this user may not use the socket of lldpd. Run the shell as root or as a member of the group _lldpd";
    case EAGAIN: return "lldpd does not answer";
    case EPROTO: return "the answer of lldpd is damaged. lldpd and liblldpctl.so.4 must have the same version";
    default: return fmt::format("lldpd: {}", std::strerror(error));
  }
}

}  // namespace host
