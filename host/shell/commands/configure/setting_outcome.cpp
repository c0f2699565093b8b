#include "shell/commands/configure/setting_outcome.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/port_status.h"
#include "messages/calls/session.h"
#include "messages/calls/switch_facts.h"
#include "platform/syserr.h"
#include "shell/commands/configure/change_texts.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/session/invocation.h"
#include "switch/range_text.h"

namespace host {
namespace {

const char* text_of(uint32 status) {
  const char* const text = syserr2str(static_cast<syserr_t>(status));
  return text != nullptr ? text : "";
}

constexpr uint32 tuple_id(uint32 type, uint16 tag) { return type << 24 | tag; }

template <typename Test>
bool any_port(std::span<const pm_port_cfg_status_t> ports, Test test) {
  return std::any_of(ports.begin(), ports.end(),
                     [&](const pm_port_cfg_status_t& port) { return test(uint32{port.status}); });
}

// The result of a setting of one port.
enum class outcome : uint8 { applied, unchanged, refused };

struct setting_result {
  outcome what = outcome::unchanged;
  uint32 status = 0;
  std::string reason = {};
  command_changes made = {};
};

const char* word_of(outcome what) {
  switch (what) {
    case outcome::applied: return "applied";
    case outcome::unchanged: return "unchanged";
    case outcome::refused: return "refused";
  }
  return "";
}

void refuse(setting_result& result, uint32 status, const std::string& reason) {
  if (status == 0) return;
  result.what = outcome::refused;
  result.status = status;
  result.reason = reason;
}

// By the current settings of the port.
setting_result result_of(const noted_port& port) {
  return {.what = port.is_same ? outcome::unchanged : outcome::applied, .made = port.made};
}

void record(command_output& output, const std::string& setting, if_index_t if_index, const setting_result& result) {
  const auto bind_text = [&output](uint16 tag, const std::string& text) {
    output.bind({tuple_id(CMD_TYPE_STRING, tag), text.c_str()});
  };
  char name[64];
  output.begin_interface(sprintf_if_index(name, if_index));
  output.bind({tuple_id(CMD_TYPE_UINT32, kTagSettingStatus), &result.status});
  bind_text(kTagSettingText, result.reason);
  bind_text(kTagSettingCommand, setting);
  bind_text(kTagSettingResult, word_of(result.what));
  bind_text(kTagSettingReason, result.reason);
  bind_text(kTagSettingBefore, joined(result.made.before));
  bind_text(kTagSettingAfter, joined(result.made.after));
  output.end_interface();
}

void record(command_output& output, const std::string& setting, const std::map<if_index_t, setting_result>& results) {
  result_summary summary;
  for (const auto& [if_index, result] : results) {
    record(output, setting, if_index, result);
    ++(result.what == outcome::applied     ? summary.applied
       : result.what == outcome::unchanged ? summary.unchanged
                                           : summary.refused);
  }
  output.set_summary(summary);
}

// The changes of a dry run, as text.
std::string text_of(const setting_result& result) {
  const std::string before = joined(result.made.before), after = joined(result.made.after);
  if (before.empty()) return after.empty() ? word_of(result.what) : after;
  return fmt::format("{} -> {}", before, after.empty() ? "none" : after);
}

void print_names(command_output& output, const std::vector<if_index_t>& interfaces, const std::string& what) {
  if (!interfaces.empty()) output.text(fmt::format("{}: {}\n", names_text(interfaces), what));
}

void print(command_output& output, const std::map<if_index_t, setting_result>& results) {
  std::map<if_index_t, std::string> texts;
  for (const auto& [if_index, result] : results)
    if (result.what != outcome::refused) texts.emplace(if_index, text_of(result));
  for (const auto& [text, interfaces] : grouped(texts)) print_names(output, interfaces, text);
}

// The entries that only the first of two sorted lists has.
std::vector<if_index_t> difference_of(const std::vector<if_index_t>& from, const std::vector<if_index_t>& others) {
  std::vector<if_index_t> left;
  std::set_difference(from.begin(), from.end(), others.begin(), others.end(), std::back_inserter(left));
  return left;
}

int exit_code_of_ports(std::span<const pm_port_cfg_status_t> ports) {
  if (any_port(ports, is_missing_right)) return kNotPermitted;
  return any_port(ports, [](uint32 status) { return status != 0; }) ? kSomeInterfacesFailed : kDone;
}

}  // namespace

ports_before::ports_before(const invocation& run, std::span<const if_index_t> ports) : run_(run) {
  if (!is_reported()) return;
  std::vector<if_index_range_t> ranges;
  for (const if_index_t it : ports) ranges.push_back({it, it});
  session_note_ports(ranges, true);
}

ports_before::ports_before(const invocation& run) : run_(run) {
  if (!is_reported()) return;
  std::vector<if_index_range_t> ranges;
  for (const vsh_intf_mono_range_t& range : run.session.configured.ranges)
    ranges.push_back({range.lower_if_index, range.upper_if_index});
  session_note_ports(ranges, false);
}

bool ports_before::is_reported() const { return run_.output.is_structured() || run_.session.trying; }

void ports_before::report(const std::string& setting, std::span<const pm_port_cfg_status_t> answers,
                          const std::string& unanswered) const {
  if (!is_reported()) return;
  std::map<if_index_t, uint32> statuses;
  for (const pm_port_cfg_status_t& it : answers) {
    const auto known = statuses.emplace(it.if_index, it.status).first;
    if (known->second == 0) known->second = it.status;
  }
  std::map<if_index_t, setting_result> results;
  for (const noted_port& port : session_port_results()) {
    setting_result result = result_of(port);
    if (const auto answer = statuses.find(port.if_index); answer != statuses.end())
      refuse(result, answer->second, text_of(answer->second));
    else if (result.what == outcome::unchanged && !unanswered.empty())
      refuse(result, PM_ERR_GENERAL, unanswered);
    results.emplace(port.if_index, std::move(result));
  }
  for (const auto& [if_index, status] : statuses)
    if (status != 0 && results.count(if_index) == 0)
      refuse(results[if_index], status, text_of(status));  // there is no such interface
  if (run_.output.is_structured())
    record(run_.output, setting, results);
  else
    print(run_.output, results);
}

interfaces_before::interfaces_before(const invocation& run) : run_(run) {
  if (run.session.trying) interfaces_ = ask_every_interface();
}

void interfaces_before::report() const {
  if (!run_.session.trying) return;
  const auto now = ask_every_interface();
  if (!interfaces_ || !now) return;
  print_names(run_.output, difference_of(*now, *interfaces_), "created");
  print_names(run_.output, difference_of(*interfaces_, *now), "deleted");
}

std::string reason_of_silence(int32 worst, const setting_results& results) {
  if (results.has_failed) return "no answer from a service";
  if (results.was_asked || worst == 0) return {};
  return worst == kForbiddenSetting ? "not permitted" : "the command is refused as a whole";
}

int exit_code_of(int32 worst, const setting_results& results) {
  if (worst == kForbiddenSetting) return kNotPermitted;
  if (results.has_failed) return kServiceFailed;
  if (const int code = exit_code_of_ports(results.ports); code != kDone) return code;
  if (worst == 0) return kDone;
  return results.was_asked ? kSomeInterfacesFailed : kUsage;
}

int report_refusals(const invocation& run, const std::string& words, std::span<pm_port_cfg_status_t> ports) {
  const int code = exit_code_of_ports(ports);
  if (code != kDone) run.session.library.print_refusals(words.c_str(), ports.data(), static_cast<uint32>(ports.size()));
  run.output.flush();
  return code;
}

}  // namespace host
