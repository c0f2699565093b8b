#include "shell/selection.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

#include "platform/port_manager.h"
#include "platform/vsh.h"
#include "pmcli/displays.h"
#include "shell/interface_kinds.h"
#include "shell/listing.h"

namespace host {
namespace {

using interfaces = std::vector<if_index_t>;
using ranges = std::vector<vsh_intf_mono_range_t>;

constexpr int32 kEnumerated = 1;
constexpr uint32 kFailure = 0xFFFFFFFF;

// Words whose interfaces are shown when no range is given, in this order.
constexpr std::string_view kWordsInOrder[] = {"mgmt", "ethernet", "port-channel", "loopback", "vethernet"};

// A command that is selecting.
struct selecting {
  const shell& session;
  command_parameters& parameters;
};

// Calls `visit` with ranges in blocks that an argument can hold, until it returns false.
template <typename Visit>
bool for_each_block(std::span<const vsh_intf_mono_range_t> all, Visit visit) {
  while (all.size() > PARAM_MAX_RANGES) {
    if (!visit(all.first(PARAM_MAX_RANGES))) return false;
    all = all.subspan(PARAM_MAX_RANGES);
  }
  return visit(all);
}

bool enumerate(const selecting& command, const interface_kind& kind, std::span<const vsh_intf_mono_range_t> block,
               interfaces& found) {
  if_index_list_t list{};
  if (command.session.library.enumerate(command.parameters.for_ranges(kind.mask, block), &list) != kEnumerated)
    return false;
  const std::unique_ptr<if_index_t, decltype(&std::free)> owned(list.list, &std::free);
  found.insert(found.end(), list.list, list.list + list.length);
  return true;
}

// Appends the interfaces of a kind: those in the ranges, or all without ranges; of a kind that the library does not
// enumerate always all. False after the reason was printed.
bool append_existing(const selecting& command, const interface_kind& kind, const ranges& wanted, interfaces& found) {
  if (kind.is_enumerated)
    return for_each_block(wanted, [&](auto block) { return enumerate(command, kind, block, found); });
  const mts_q_handle_t q = command.parameters.queue();
  const auto listed = list_kind(q, kind.type);
  if (!listed) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
    return false;
  }
  found.insert(found.end(), listed->begin(), listed->end());
  return true;
}

// A number with a unit is a satellite's port, and no other number is.
bool may_name(const interface_span& span, const interface_kind& kind) {
  const auto& kinds = span.word->kinds;
  return span.word->family == kind.family && (span.low.unit != 0) == (kind.type == IF_TYPE_SATELLITE) &&
         std::find(kinds.begin(), kinds.end(), kind.type) != kinds.end();
}

// All interfaces of any kind that may lie in the spans, by index. Nothing after the reason was printed.
std::optional<interfaces> existing_of(const selecting& command, std::span<const interface_span> spans) {
  interfaces found;
  for (const interface_kind& kind : all_kinds()) {
    ranges wanted;
    for (const interface_span& span : spans) {
      if (may_name(span, kind)) wanted.push_back({index_of(kind.type, span.low), index_of(kind.type, span.high)});
    }
    if (!wanted.empty() && !append_existing(command, kind, wanted, found)) return std::nullopt;
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

// The ends of spans that do not exist, such as "ethernet 9/9, loopback 5".
class missing_ends {
 public:
  void add(const interface_span& span, const span_ends& ends) {
    if (!ends.low_exists) add(*span.word, span.low);
    if (!ends.high_exists && span.high != span.low) add(*span.word, span.high);
  }
  const std::string& text() const { return text_; }

 private:
  void add(const interface_word& word, const interface_number& number) {
    if (!text_.empty()) text_ += ", ";
    text_ += interface_text(word, number);
  }

  std::string text_;
};

// A span and the interfaces in it, in natural order.
struct expanded_span {
  const interface_span& span;
  std::span<const if_index_t> found;
};

// What the port manager verifies of a kind: the first and the last interface of it in each span.
ranges found_ranges(const interface_kind& kind, std::span<const expanded_span> spans) {
  const auto is_of_kind = [&kind](if_index_t if_index) { return &kind_of(if_index) == &kind; };
  ranges found;
  for (const expanded_span& expanded : spans) {
    if (!may_name(expanded.span, kind)) continue;
    const auto first = std::find_if(expanded.found.begin(), expanded.found.end(), is_of_kind);
    if (first == expanded.found.end()) continue;
    const auto last = std::find_if(expanded.found.rbegin(), expanded.found.rend(), is_of_kind);
    found.push_back({*first, *last});
  }
  return found;
}

// The exit code of a verification that did not succeed; why goes to `complaint` unless it was printed.
int refusal(int32 result, std::string& complaint) {
  if (result == PM_CLI_FAILED) return kServiceFailed;
  complaint = result == PM_CLI_VSAN_DENIED ? "the user's VSANs do not allow this command on these interfaces."
                                           : "the port manager does not allow this command on these interfaces.";
  return kNotPermitted;
}

// Asks the port manager whether the command may use what was named, once for each kind that was named.
void verify(const selecting& command, std::span<const expanded_span> spans, selection& chosen) {
  const auto is_allowed = [&](const interface_kind& kind, std::span<const vsh_intf_mono_range_t> block) {
    const int32 result = command.session.library.verify(kind.mask, command.parameters.for_ranges(kind.mask, block));
    if (result != 0) chosen.code = refusal(result, chosen.complaint);
    return result == 0;
  };
  for (const interface_kind& kind : all_kinds()) {
    if (!kind.is_enumerated) continue;
    const ranges named = found_ranges(kind, spans);
    if (!named.empty() && !for_each_block(named, [&](auto block) { return is_allowed(kind, block); })) return;
  }
}

bool is_restricted(const shell& session) { return session.who != nullptr && session.who->vsans; }

// Takes the interfaces that the user may not see out of `found`. Nothing after the reason was printed.
std::optional<interfaces> take_hidden(const selecting& command, interfaces& found) {
  interfaces hidden;
  if (!is_restricted(command.session)) return hidden;
  interfaces seen;
  for (const if_index_t if_index : found) {
    paraminfo_t* const block = command.parameters.for_interface(kind_of(if_index).mask, if_index);
    const uint32 result = command.session.library.check_vsans(block, if_index);
    if (result == kFailure) return std::nullopt;
    (result == 0 ? seen : hidden).push_back(if_index);
  }
  found = std::move(seen);
  return hidden;
}

std::string forbidden(const user& who, const interfaces& hidden) {
  constexpr std::size_t kNamed = 8;
  std::string text = "not permitted: user '" + who.name + "' may not see ";
  for (std::size_t i = 0; i < std::min(kNamed, hidden.size()); ++i) {
    char name[64];
    text.append(i == 0 ? "" : ", ").append(sprintf_if_index(name, hidden[i]));
  }
  if (hidden.size() > kNamed) text += ", ... (" + std::to_string(hidden.size()) + ")";
  return text + ". Leave the range away for all that it may.";
}

void check_vsans(const selecting& command, selection& chosen) {
  const auto hidden = take_hidden(command, chosen.interfaces);
  if (!hidden) {
    chosen.code = kServiceFailed;
  } else if (!hidden->empty()) {
    chosen.code = kNotPermitted;
    chosen.complaint = forbidden(*command.session.who, *hidden);
  }
}

bool is_one_of(if_index_type_t type, std::span<const if_index_type_t> kinds) {
  return std::find(kinds.begin(), kinds.end(), type) != kinds.end();
}

// The interfaces of a word's kinds, as far as they are wanted, in natural order.
std::optional<interfaces> all_of_word(const selecting& command, const interface_word& word,
                                      std::span<const if_index_type_t> wanted) {
  interfaces found;
  for (const interface_kind& kind : all_kinds()) {
    if (kind.family != word.family || !is_one_of(kind.type, word.kinds) || !is_one_of(kind.type, wanted)) continue;
    if (!append_existing(command, kind, {}, found)) return std::nullopt;
  }
  sort_naturally(found);
  return found;
}

// Appends the interfaces of a word's kinds that are wanted and that the user may see.
void append_word(const selecting& command, const interface_word& word, std::span<const if_index_type_t> wanted,
                 selection& chosen) {
  auto found = all_of_word(command, word, wanted);
  if (!found || !take_hidden(command, *found)) {
    chosen.code = kServiceFailed;
    return;
  }
  chosen.interfaces.insert(chosen.interfaces.end(), found->begin(), found->end());
}

}  // namespace

selection select_named(const shell& session, command_parameters& parameters, std::span<const interface_span> spans) {
  const selecting command{session, parameters};
  const auto existing = existing_of(command, spans);
  if (!existing) return {kServiceFailed, {}, {}};

  selection chosen;
  missing_ends missing;
  std::vector<std::size_t> starts;
  for (const interface_span& span : spans) {
    starts.push_back(chosen.interfaces.size());
    missing.add(span, append_matching(span, *existing, chosen.interfaces));
  }
  if (!missing.text().empty())
    return {kNoSuchInterface, "no such interface: " + missing.text() + ". Type 'show interface ?' for the kinds.", {}};

  starts.push_back(chosen.interfaces.size());
  std::vector<expanded_span> expanded;
  for (std::size_t i = 0; i < spans.size(); ++i)
    expanded.push_back({spans[i], std::span(chosen.interfaces).subspan(starts[i], starts[i + 1] - starts[i])});
  verify(command, expanded, chosen);
  if (chosen.code == kDone) check_vsans(command, chosen);
  return chosen;
}

selection select_all(const shell& session, command_parameters& parameters, std::span<const if_index_type_t> kinds) {
  selection chosen;
  for (const std::string_view name : kWordsInOrder) {
    range_fault fault{};
    append_word({session, parameters}, *parse_interface_word(name, fault), kinds, chosen);
    if (chosen.code != kDone) return {chosen.code, {}, {}};
  }
  return chosen;
}

selection select_every(const shell& session, command_parameters& parameters) {
  selection chosen;
  for (const interface_word& word : kInterfaceWords) {
    if (&word != word_of(word.kinds.front(), word.family)) continue;  // another word for the same interfaces
    append_word({session, parameters}, word, word.kinds, chosen);
    if (chosen.code != kDone) return {chosen.code, {}, {}};
  }
  return chosen;
}

}  // namespace host
