#include "shell/commands/configure/own_connection.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "messages/calls/switch_facts.h"
#include "platform/port_manager.h"
#include "platform/vsh.h"
#include "shell/output/command_output.h"
#include "shell/session/invocation.h"
#include "switch/range_text.h"

namespace host {
namespace {

// The address from which the user is connected, by the environment; empty at the machine itself, and after a change of
// the user, when it is unknown.
std::string address_of_user() {
  const char* const connection = std::getenv("SSH_CONNECTION");
  const std::string_view text = connection == nullptr ? "" : connection;
  return std::string(text.substr(0, text.find(' ')));
}

bool is_in_mode(const shell& session, if_index_t if_index) {
  const auto& ranges = session.configured.ranges;
  return std::any_of(ranges.begin(), ranges.end(), [if_index](const vsh_intf_mono_range_t& range) {
    return range.lower_if_index <= if_index && if_index <= range.upper_if_index;
  });
}

bool wants_it(const std::vector<if_index_t>& cut) {
  const std::string prompt = fmt::format(
      "This may cut your own connection through {}. 'commit confirmed SECONDS' of a candidate is rolled back unless "
      "you "
      "confirm it. Continue? (y/n) [n] ",
      range_text(cut));
  std::array<char, 9> answer{};
  vsh_user_input_info_t question{};
  question.prompt = prompt.c_str();
  question.default_input = "n";
  question.notty_input = "n";
  question.max_len = answer.size() - 1;
  return vsh_util_user_input_get(&question, answer.data()) == 0 && (answer[0] == 'y' || answer[0] == 'Y');
}

template <typename Test>
bool may_change(const invocation& run, Test is_changed) {
  if (run.session.is_trial()) return true;
  const auto towards = ask_interfaces_towards(address_of_user());
  if (!towards) return false;
  std::vector<if_index_t> way = *towards;
  std::erase_if(way, [&](if_index_t it) { return !is_changed(it); });
  if (way.empty() || wants_it(way)) return true;
  run.output.complain(fmt::format(
      "nothing was changed: this may cut your own connection through {}. Start the shell with --yes to change it "
      "anyway, or use 'configure candidate' and 'commit confirmed SECONDS', which is rolled back unless you confirm "
      "it.",
      range_text(way)));
  return false;
}

}  // namespace

bool may_go_on(const invocation& run) {
  const setting* const of = run.line.what->sets;
  if (of == nullptr || of->traits.cuts == may_cut::never) return true;
  if (of->traits.cuts == may_cut::unless_off && run.line.what->form->kind == form_kind::off) return true;
  return may_change(run, [&](if_index_t it) { return is_in_mode(run.session, it); });
}

bool may_delete(const invocation& run) {
  return may_change(run, [&](if_index_t it) { return matches(run.line.range, it); });
}

bool may_commit(const invocation& run, std::span<const candidate_change> changes) {
  return may_change(run, [&](if_index_t it) {
    return std::any_of(changes.begin(), changes.end(),
                       [it](const candidate_change& change) { return change.if_index == it && change.may_cut; });
  });
}

bool may_undo(const invocation& run, std::span<const if_index_t> changed) {
  return may_change(run, [&](if_index_t it) { return std::binary_search(changed.begin(), changed.end(), it); });
}

}  // namespace host
