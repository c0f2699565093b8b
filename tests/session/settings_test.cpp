// Settings survive a round trip: what one switch writes, a fresh switch of the same hardware loads, and is set the
// same.
#include "settings/settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/text.h"
#include "service/services.h"
#include "settings/change_journal.h"
#include "settings/running_config.h"
#include "settings/written_settings.h"
#include "shell/commands/added_commands.h"
#include "shell/library/command_library.h"
#include "shell/output/command_output.h"
#include "shell/session/run.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/switch_file.h"
#include "switch/if_index_layout.h"
#include "transport/transport.h"

namespace host {
namespace {

constexpr const char* kSwitchFiles[] = {"campus.yaml", "storage.yaml"};

machine switch_of(const std::string& name) { return load_switch_file(std::string(PMSH_SWITCHES "/") + name); }

machine fresh(const std::string& name) {
  machine made = switch_of(name);
  set_to_defaults(made);
  return made;
}

std::vector<if_index_t> interfaces_of(const machine& of) {
  std::vector<if_index_t> all;
  for (const interface& it : of.interfaces) all.push_back(it.if_index);
  return all;
}

std::string name_of(if_index_t if_index) {
  char name[64];
  return sprintf_if_index(name, if_index);
}

// What was written, and what was loaded.
std::string differences(const port_settings& written, const port_settings& loaded) {
  std::string text;
  for (const setting& row : all_settings())
    if (!is_equal(row, written, loaded))
      for (const port_settings* it : {&written, &loaded})
        for (const std::string& command : commands_for(row, *row.get(*it))) text += command + "; ";
  return text;
}

// The shell in this process, with everything that it prints.
class shell_of_test {
 public:
  shell_of_test() {
    static const command_library library = [] {
      transport_register(all_services());
      return load_libraries(std::filesystem::canonical("/proc/self/exe").parent_path() / "../lib", {});
    }();
    session_.library = library;
    settings_.sink = [this](std::string_view text) { said_ += text; };
    settings_.sinks_errors = true;
    session_.output = &settings_;
    set_source(std::make_unique<chassis_source>());
  }

  // Runs each line. Returns those that failed, with what was said.
  std::string load(const std::string& lines) {
    std::string failures;
    session_.mode = kExecMode;
    std::istringstream all(lines);
    for (std::string line; std::getline(all, line);) {
      if (trim(line).empty() || trim(line).front() == '!') continue;
      said_.clear();
      if (const int code = run_line(session_, line); code != 0)
        failures += line + ": exit code " + std::to_string(code) + ": " + said_ + "\n";
    }
    return failures;
  }

 private:
  shell session_;
  output_settings settings_;
  std::string said_;
};

class RoundTrip : public testing::Test {
 protected:
  // The machine with these settings is written and loaded into a fresh one, where all settings are the same.
  void expect_same_after_loading(const machine& written, const machine& hardware) {
    const std::vector<if_index_t> all = interfaces_of(written);
    the_machine() = written;
    const std::string text = running_config(written, all, {});
    the_machine() = hardware;
    forget_changes();
    EXPECT_EQ(shell_.load(text), "") << text;
    for (const interface& it : written.interfaces) {
      const interface* const loaded = the_machine().find(it.if_index);
      ASSERT_NE(loaded, nullptr);
      if (loaded->settings == it.settings) continue;
      ADD_FAILURE() << name_of(it.if_index) << " differs after loading: " << differences(it.settings, loaded->settings)
                    << "\n"
                    << text;
      return;
    }
    EXPECT_EQ(running_config(the_machine(), all, {}), text) << "and is written the same";
  }

  shell_of_test shell_;
};

// Texts with all that a file of commands could take for something else. A text has no byte 0, and at most 80 bytes.
std::vector<std::string> hostile_texts() {
  std::vector<std::string> texts = {"",
                                    "a",
                                    "  leading",
                                    "trailing \t",
                                    "\t",
                                    "\"",
                                    "'",
                                    "\"quoted\"",
                                    "'quoted'",
                                    "it's \"both\"",
                                    "a | include b",
                                    "?",
                                    "what?",
                                    "!",
                                    "! comment",
                                    "# comment",
                                    "\\",
                                    "\\n",
                                    "x\n shutdown\ninterface mgmt 0",
                                    "\r\n",
                                    "end",
                                    "no description",
                                    "\x1b[31mred",
                                    "\xc3\xa9t\xc3\xa9",
                                    "\xff\xfe",
                                    std::string(80, 'x'),
                                    std::string(80, '"'),
                                    std::string(80, '\n')};
  for (int first = 1; first < 256; first += 80) {
    std::string bytes;
    for (int byte = first; byte < std::min(first + 80, 256); ++byte) bytes.push_back(static_cast<char>(byte));
    texts.push_back(bytes);
  }
  return texts;
}

std::vector<setting_value> values_of(const setting& of) {
  std::vector<setting_value> values;
  if (of.kind == setting_kind::text)
    for (const std::string& text : hostile_texts()) values.emplace_back(text);
  if (of.kind == setting_kind::vlans) {
    std::vector<uint16> every_second;
    for (uint16 id = 2; id <= 4094; id += 2) every_second.push_back(id);
    values = {std::vector<uint16>{}, std::vector<uint16>{1}, std::vector<uint16>{4094}, every_vlan(), every_second};
  }
  for (const setting_form& form : of.forms) {
    if (of.kind == setting_kind::vlans || of.kind == setting_kind::text) break;
    if (form.kind == form_kind::argument)
      for (const uint32 number : {of.lowest, of.lowest + 1, 576U, 4096U, 9216U, of.highest / 2, of.highest})
        values.emplace_back(number | form.value);
    else if (form.kind != form_kind::usual)
      values.emplace_back(form.value);
  }
  return values;
}

// Sets the first port of each kind that takes the value. Returns how many did.
std::size_t set_one_of_each_kind(machine& of, const setting& row, const setting_value& value) {
  std::vector<if_index_type_t> kinds;
  for (interface& port : of.interfaces) {
    const if_index_type_t kind = decode_index(port.if_index).type;
    const bool is_first = std::find(kinds.begin(), kinds.end(), kind) == kinds.end();
    if (!is_first || !row.has_it(kind) || set_value(row, port, value) != 0) continue;
    kinds.push_back(kind);
  }
  return kinds.size();
}

TEST_F(RoundTrip, EveryValueOfEverySettingLoadsAsItWasWritten) {
  std::map<std::string_view, std::size_t> num_set;  // by command, on all switches
  for (const char* const file : kSwitchFiles) {
    const machine hardware = fresh(file);
    for (const setting& row : all_settings()) {
      if (row.command.empty()) continue;
      for (const setting_value& value : values_of(row)) {
        the_machine() = hardware;
        num_set[row.command] += set_one_of_each_kind(the_machine(), row, value);
        const machine written = the_machine();
        expect_same_after_loading(written, hardware);
      }
    }
  }
  for (const auto& [command, count] : num_set) EXPECT_GT(count, 0U) << command << " was set nowhere";
}

TEST_F(RoundTrip, SettingsTogetherLoadAsTheyWereWritten) {
  std::minstd_rand random(1);
  for (const char* const file : kSwitchFiles) {
    const machine hardware = fresh(file);
    for (int i = 0; i < 20; ++i) {
      the_machine() = hardware;
      for (interface& port : the_machine().interfaces)
        for (const setting& row : all_settings()) {
          const auto values = values_of(row);
          const bool is_left = values.empty() || row.command.empty() || random() % 3 == 0;
          const bool is_of_channel = row.traits.of_channel && port.settings.channel != 0;
          if (is_left || is_of_channel || !row.has_it(decode_index(port.if_index).type)) continue;
          set_value(row, port, values[random() % values.size()]);
        }
      for (interface& port : the_machine().interfaces)
        if (port.settings.channel != 0) take_over_settings(*the_machine().find(port.settings.channel), port);
      const machine written = the_machine();
      expect_same_after_loading(written, hardware);
    }
  }
}

TEST_F(RoundTrip, AShippedSwitchIsRebuiltFromItsHardware) {
  for (const char* const file : kSwitchFiles) expect_same_after_loading(switch_of(file), fresh(file));
}

TEST_F(RoundTrip, ALongerTextIsRefusedAndChangesNothing) {
  the_machine() = fresh("campus.yaml");
  const machine before = the_machine();
  for (const std::size_t length : {81U, 254U, 4000U})
    EXPECT_NE(shell_.load("configure\ninterface ethernet 1/1\ndescription " + std::string(length, 'x') + "\nend\n"), "")
        << length;
  EXPECT_EQ(the_machine().interfaces, before.interfaces);
}

}  // namespace
}  // namespace host
