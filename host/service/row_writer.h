// Writes the values of a row: of tables, and of events.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "messages/interface_values.h"
#include "switch/tables.h"

namespace host {

class row_writer {
 public:
  explicit row_writer(value_writer& to) : to_(to) {}

  void number(property of, const std::optional<uint64>& value) { put(of, value, absence::none, &value_writer::number); }
  void text(property of, const std::string& text) { put(of, filled(text), absence::none, &value_writer::text); }
  // A list, which may be empty.
  void words(property of, const std::optional<std::string>& words) {
    put(of, words, absence::not_supported, &value_writer::text);
  }
  void address(property of, const std::optional<ip_address>& address) {
    if (!address)
      to_.absent(of, absence::none);
    else if (address->is_ipv6)
      to_.ipv6(of, address->bytes);
    else
      to_.ipv4(of, address->bytes);
  }
  void interface(property of, if_index_t if_index) {
    if (if_index == 0)
      to_.absent(of, absence::none);
    else
      to_.interface(of, if_index);
  }
  void mac(property of, const std::optional<mac_address>& mac) { put(of, mac, absence::none, &value_writer::mac); }
  // Without a value these are unknown.
  template <typename Number>
  void known_number(property of, const std::optional<Number>& value) {
    put(of, value, absence::not_supported, &value_writer::number);
  }
  void known_mac(property of, const std::optional<mac_address>& value) {
    put(of, value, absence::not_supported, &value_writer::mac);
  }
  void known_decimal(property of, const std::string& digits) {
    put(of, filled(digits), absence::not_supported, &value_writer::decimal);
  }
  void map(property of, const std::optional<std::vector<std::pair<std::string, uint64>>>& entries) {
    put(of, entries, absence::not_supported, &value_writer::map);
  }
  void known_text(property of, const std::optional<std::string>& text) {
    put(of, text ? filled(*text) : std::nullopt, absence::not_supported, &value_writer::text);
  }
  void vlans(property of, const std::vector<uint16>& ascending) { to_.vlans(of, ascending); }
  void device(const row_device& it) {
    interface(property::interface, it.if_index);
    text(property::device, it.name);
    number(property::ifindex, it.number == 0 ? std::nullopt : std::optional<uint64>(it.number));
  }

 private:
  static std::optional<std::string_view> filled(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string_view>(text);
  }

  // The value, or why there is none.
  template <typename Value, typename Written>
  void put(property of, const std::optional<Value>& value, absence why,
           void (value_writer::*write)(property, Written)) {
    if (value)
      (to_.*write)(of, *value);
    else
      to_.absent(of, why);
  }

  value_writer& to_;
};

}  // namespace host
