// Neighbors by LLDP as text.
#include <fmt/format.h>

#include <optional>

#include "base/digits.h"
#include "source/kernel/lldp.h"
#include "source/kernel/own_file.h"

namespace host {
namespace {

std::string escaped(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes)
    if (byte < ' ' || byte > '~' || byte == '\\')
      append_hex(text += "\\x", static_cast<uint8>(byte));
    else
      text += byte;
  return text;
}

// Nothing when the text is not a number.
template <typename Number>
std::optional<Number> number_in(std::string_view text, int base = 10) {
  Number number = 0;
  return read_number(text, number, base) ? std::optional(number) : std::nullopt;
}

std::string unescaped(std::string_view text) {
  constexpr std::size_t kEscapeLength = 4;
  std::string bytes;
  while (!text.empty()) {
    const auto byte = text.starts_with("\\x") && text.size() >= kEscapeLength ? number_in<uint8>(text.substr(2, 2), 16)
                                                                              : std::optional<uint8>();
    bytes += byte ? static_cast<char>(*byte) : text.front();
    text.remove_prefix(byte ? kEscapeLength : 1);
  }
  return bytes;
}

// A line of a neighbor: how it is written, if at all, and read.
struct line_form {
  std::string_view word;
  void (*write)(const lldp_neighbor& it, std::string_view word, std::string& to);
  void (*read)(std::string_view value, lldp_neighbor& it);
};

void put_line(std::string& to, std::string_view word, std::string_view value) {
  to += fmt::format("{} {}\n", word, value);
}

template <std::string lldp_neighbor::*member>
constexpr line_form text_line(std::string_view word) {
  return {word,
          [](const lldp_neighbor& it, std::string_view name, std::string& to) {
            if (!(it.*member).empty()) put_line(to, name, escaped(it.*member));
          },
          [](std::string_view value, lldp_neighbor& it) { it.*member = unescaped(value); }};
}

template <lldp_id lldp_neighbor::*member>
constexpr line_form id_line(std::string_view word) {
  return {word,
          [](const lldp_neighbor& it, std::string_view name, std::string& to) {
            put_line(to, name, fmt::format("{} {}", (it.*member).subtype, escaped((it.*member).bytes)));
          },
          [](std::string_view value, lldp_neighbor& it) {
            (it.*member).subtype = number_in<uint32>(take_until(' ', value)).value_or(0);
            (it.*member).bytes = unescaped(value);
          }};
}

template <uint32 lldp_neighbor::*member>
constexpr line_form bits_line(std::string_view word) {
  return {word,
          [](const lldp_neighbor& it, std::string_view name, std::string& to) {
            if (it.*member != 0) put_line(to, name, std::to_string(it.*member));
          },
          [](std::string_view value, lldp_neighbor& it) { it.*member = number_in<uint32>(value).value_or(0); }};
}

template <std::optional<uint32> lldp_neighbor::*member>
constexpr line_form number_line(std::string_view word) {
  return {word,
          [](const lldp_neighbor& it, std::string_view name, std::string& to) {
            if (it.*member) put_line(to, name, std::to_string(*(it.*member)));
          },
          [](std::string_view value, lldp_neighbor& it) { it.*member = number_in<uint32>(value); }};
}

void write_addresses(const lldp_neighbor& it, std::string_view word, std::string& to) {
  for (const std::string& address : it.management_addresses) put_line(to, word, escaped(address));
}
void read_address(std::string_view value, lldp_neighbor& it) {
  if (it.management_addresses.size() < kMostLldpEntries) it.management_addresses.push_back(unescaped(value));
}

void write_vlans(const lldp_neighbor& it, std::string_view word, std::string& to) {
  for (const uint32 vlan : it.vlans) put_line(to, word, std::to_string(vlan));
}
void read_vlan(std::string_view value, lldp_neighbor& it) {
  const auto vlan = number_in<uint32>(value);
  if (vlan && it.vlans.size() < kMostLldpEntries) it.vlans.push_back(*vlan);
}

constexpr line_form kLineForms[] = {
    text_line<&lldp_neighbor::protocol>("protocol"),
    id_line<&lldp_neighbor::chassis>("chassis-id"),
    id_line<&lldp_neighbor::port>("port-id"),
    text_line<&lldp_neighbor::system_name>("system-name"),
    text_line<&lldp_neighbor::system_description>("system-description"),
    text_line<&lldp_neighbor::port_description>("port-description"),
    {"management-address", write_addresses, read_address},
    bits_line<&lldp_neighbor::capabilities>("capabilities"),
    bits_line<&lldp_neighbor::enabled_capabilities>("enabled-capabilities"),
    number_line<&lldp_neighbor::port_vlan>("port-vlan"),
    {"vlan", write_vlans, read_vlan},
    number_line<&lldp_neighbor::ttl_seconds>("ttl"),
    number_line<&lldp_neighbor::unchanged_seconds>("unchanged"),
};

constexpr std::string_view kNeighborWord = "neighbor";

void read_line(std::string_view line, std::vector<lldp_neighbor>& neighbors) {
  const std::string_view word = take_until(' ', line);
  if (word == kNeighborWord) {
    lldp_neighbor& it = neighbors.emplace_back();
    it.device_number = number_in<uint32>(take_until(' ', line)).value_or(0);
    it.device = unescaped(line);
    return;
  }
  if (neighbors.empty()) return;
  for (const line_form& form : kLineForms)
    if (form.word == word) form.read(line, neighbors.back());
}

}  // namespace

std::string lldp_text(const std::vector<lldp_neighbor>& neighbors) {
  std::string text;
  for (const lldp_neighbor& it : neighbors) {
    put_line(text, kNeighborWord, fmt::format("{} {}", it.device_number, escaped(it.device)));
    for (const line_form& form : kLineForms) form.write(it, form.word, text);
  }
  return text;
}

std::vector<lldp_neighbor> read_lldp_text(std::string_view text) {
  std::vector<lldp_neighbor> neighbors;
  while (!text.empty()) read_line(take_until('\n', text), neighbors);
  return neighbors;
}

}  // namespace host
