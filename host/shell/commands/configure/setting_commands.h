// The commands of settings: one for each form of each setting, and those that combine settings.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "pmcli/displays.h"
#include "settings/table.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/group.h"
#include "shell/grammar/syntax.h"

namespace host {

// Applies the setting of a line to the chosen interfaces, by the command library or by the host.
int set_ports(const invocation& run);
int set_ports_of_host(const invocation& run);

constexpr command of_library(command_syntax syntax, std::string_view help, setting_tokens tokens) {
  return {syntax,  help,    set_ports, kSettingShown, 0, kInterfaceMode, command_effect::settings,
          nullptr, nullptr, nullptr,   tokens};
}

// clang-format off
inline constexpr command kOtherSettingCommands[] = {
    of_library("switchport name TEXT", "The same as 'description'", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_NAME}, {0, token_value::text}}),
    of_library("no switchport name", "The same as 'no description'", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_NAME}}),
    of_library("switchport trunk mode", "The same as 'switchport trunk mode on'", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_MODE_WORD}}),
    of_library("switchport trunk encapsulation dot1q", "VLAN tags on trunks", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_ENCAPSULATION_DOT1Q}}),
    of_library("switchport dot1q ethertype", "Ethertype of VLAN tags", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_DOT1Q_ETHERTYPE}}),
    of_library("[no] switchport host", "Host ports: access mode, edge, no channel", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_HOST}}),
};
// clang-format on

// Visits each form of each setting that commands make.
template <typename Visit>
constexpr void for_each_form(Visit visit) {
  for (const setting& of : kSettings) {
    if (of.command.empty()) continue;
    for (const setting_form& form : of.forms) visit(of, form);
  }
}

// "COMMAND syntax" or "no COMMAND syntax". A form with its own words restores the default without "no".
template <typename Append>
constexpr void write_form(const setting& of, const setting_form& form, Append append) {
  const bool is_no = form.kind == form_kind::off || (form.kind == form_kind::usual && form.syntax.empty());
  if (is_no) append("no ");
  append(of.command);
  if (!form.syntax.empty()) append(" ");
  append(form.syntax);
}

inline constexpr std::size_t kNumSettingForms = [] {
  std::size_t count = 0;
  for_each_form([&](const setting&, const setting_form&) { ++count; });
  return count;
}();

inline constexpr std::size_t kLengthOfForms = [] {
  std::size_t length = 0;
  for_each_form([&](const setting& of, const setting_form& form) {
    write_form(of, form, [&](std::string_view text) { length += text.size(); });
  });
  return length;
}();

// All forms, one after the other.
inline constexpr auto kWrittenForms = [] {
  std::array<char, kLengthOfForms> all{};
  std::size_t at = 0;
  for_each_form([&](const setting& of, const setting_form& form) {
    write_form(of, form, [&](std::string_view text) {
      for (const char letter : text) all[at++] = letter;
    });
  });
  return all;
}();

constexpr setting_tokens with_more(setting_tokens tokens, const setting_tokens& more) {
  for (std::size_t i = 0; i < more.count; ++i) tokens.token[tokens.count++] = more.token[i];
  return tokens;
}

constexpr command command_of(const setting& of, const setting_form& form, std::string_view written) {
  const bool is_of_host = form.is_of_host || of.tokens.count == 0;
  return {command_syntax(written),
          form.help,
          is_of_host ? set_ports_of_host : set_ports,
          kSettingShown,
          0,
          kInterfaceMode,
          command_effect::settings,
          nullptr,
          &of,
          &form,
          is_of_host ? setting_tokens() : with_more(of.tokens, form.tokens)};
}

inline constexpr auto kSettingCommands = [] {
  std::array<command, kNumSettingForms + std::size(kOtherSettingCommands)> all{};
  std::size_t count = 0, at = 0;
  for_each_form([&](const setting& of, const setting_form& form) {
    std::size_t length = 0;
    write_form(of, form, [&](std::string_view text) { length += text.size(); });
    all[count++] = command_of(of, form, std::string_view(kWrittenForms.data() + at, length));
    at += length;
  });
  for (const command& other : kOtherSettingCommands) all[count++] = other;
  return all;
}();

}  // namespace host
