#include "shell/library/selection.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>

#include "base/port_status.h"
#include "messages/calls/command_account.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "platform/vsh.h"
#include "pmcli/displays.h"
#include "shell/grammar/range_text.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/listing.h"

namespace host {
namespace {

using interfaces = std::vector<if_index_t>;
using ranges = std::vector<vsh_intf_mono_range_t>;

constexpr int32 kEnumerated = 1;
constexpr uint32 kFailure = 0xFFFFFFFF;

// Words whose interfaces are shown when no range is given, in this order.
constexpr std::string_view kWordsInOrder[] = {"mgmt", "ethernet",     "fc",       "bay",
                                              "ext",  "port-channel", "loopback", "vethernet"};

// Calls `visit` with ranges in blocks that an argument can hold, until it returns false.
template <typename Visit>
bool for_each_block(std::span<const vsh_intf_mono_range_t> all, Visit visit) {
  while (all.size() > PARAM_MAX_RANGES) {
    if (!visit(all.first(PARAM_MAX_RANGES))) return false;
    all = all.subspan(PARAM_MAX_RANGES);
  }
  return visit(all);
}

bool enumerate(command_parameters& command, const interface_kind& kind, std::span<const vsh_intf_mono_range_t> block,
               interfaces& found) {
  if_index_list_t list{};
  if (command.library().enumerate(command.for_ranges(kind.mask, block), &list) != kEnumerated) return false;
  const std::unique_ptr<if_index_t, decltype(&std::free)> owned(list.list, &std::free);
  found.insert(found.end(), list.list, list.list + list.length);
  return true;
}

// Appends the interfaces of a kind: those in the ranges, or all without ranges; of a kind that the library does not
// enumerate always all. False after the reason was printed.
bool append_existing(command_parameters& command, const interface_kind& kind, const ranges& wanted, interfaces& found) {
  if (kind.is_enumerated)
    return for_each_block(wanted, [&](auto block) { return enumerate(command, kind, block, found); });
  const mts_q_handle_t q = command.queue();
  const auto listed = list_kind(q, kind.type);
  if (!listed) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
    return false;
  }
  found.insert(found.end(), listed->begin(), listed->end());
  return true;
}

// A number names a satellite's port if, and only if, it has a unit.
bool may_name(const interface_span& span, const interface_kind& kind) {
  const auto& kinds = span.word->kinds;
  return span.word->family == kind.family && (span.low.unit != 0) == (kind.type == IF_TYPE_SATELLITE) &&
         std::find(kinds.begin(), kinds.end(), kind.type) != kinds.end();
}

// All interfaces of any kind that may lie in the spans, by index. Nothing after the reason was printed.
std::optional<interfaces> existing_of(command_parameters& command, std::span<const interface_span> spans) {
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

// A span and the interfaces in it, in natural order.
struct expanded_span {
  interface_span span;
  span_ends ends;
  interfaces found;
};
using expanded_spans = std::vector<expanded_span>;

// `existing` is sorted by index.
expanded_spans expand(std::span<const interface_span> spans, const interfaces& existing) {
  expanded_spans expanded;
  for (const interface_span& span : spans) {
    expanded_span& it = expanded.emplace_back(expanded_span{span, {}, {}});
    it.ends = append_matching(span, existing, it.found);
  }
  return expanded;
}

interfaces all_of(std::span<const expanded_span> spans) {
  interfaces all;
  for (const expanded_span& it : spans) all.insert(all.end(), it.found.begin(), it.found.end());
  return all;
}

// The ends of spans that do not exist, such as "ethernet 9/9, loopback 5"; empty when all exist.
std::string missing_ends(std::span<const expanded_span> spans) {
  std::string text;
  const auto add = [&text](const interface_word& word, const interface_number& number) {
    text += (text.empty() ? "" : ", ") + interface_text(word, number);
  };
  for (const auto& [span, ends, found] : spans) {
    if (!ends.low_exists) add(*span.word, span.low);
    if (!ends.high_exists && span.high != span.low) add(*span.word, span.high);
  }
  return text;
}

selection no_such(const std::string& missing) {
  return {kNoSuchInterface, "no such interface: " + missing + ". Type 'show interface ?' for the kinds.", {}};
}

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

std::string text_of(std::span<const vsh_intf_mono_range_t> all) {
  std::string text;
  for (const auto& [low, high] : all) text.append(text.empty() ? "" : ", ").append(range_text(number_run{low, high}));
  return text;
}

// The exit code of a verification that did not succeed; why goes to `complaint` unless it was printed.
int refusal(int32 result, const command_parameters& parameters, std::span<const vsh_intf_mono_range_t> block,
            std::string& complaint) {
  if (const syserr_t error = creation_error_of(parameters.queue()); error != 0) {
    const char* const reason = syserr2str(error);
    complaint = (parameters.is_no() ? "cannot delete " : "cannot create ") + text_of(block) + ": " +
                (reason == nullptr ? "unknown error" : reason) + ".";
    return error == kPortStatusNoRight ? kNotPermitted : kServiceFailed;
  }
  if (result == PM_CLI_FAILED) return kServiceFailed;
  complaint = result == PM_CLI_VSAN_DENIED ? "the user's VSANs do not allow this command on these interfaces."
                                           : "the port manager does not allow this command on these interfaces.";
  return kNotPermitted;
}

// Asks the port manager whether the command may use some ranges of a kind. False when it may not; `chosen` says why.
bool verify_ranges(command_parameters& command, const interface_kind& kind, const ranges& named, selection& chosen) {
  return named.empty() || for_each_block(named, [&](auto block) {
           paraminfo_t* const parameters = command.for_ranges(kind.mask, block);
           const int32 result = command.library().verify(kind.mask, parameters);
           if (result != 0) chosen.code = refusal(result, command, block, chosen.complaint);
           return result == 0;
         });
}

// The same of all that was named, once for each kind that has a callback.
bool verify(command_parameters& command, std::span<const expanded_span> spans, selection& chosen) {
  const auto kinds = all_kinds();
  return std::all_of(kinds.begin(), kinds.end(), [&](const interface_kind& kind) {
    return !kind.is_enumerated || verify_ranges(command, kind, found_ranges(kind, spans), chosen);
  });
}

bool is_restricted(const host::user* user) { return user != nullptr && user->vsans; }

// Takes the interfaces that the user may not see out of `found`. Nothing after the reason was printed.
std::optional<interfaces> take_hidden(command_parameters& command, interfaces& found) {
  interfaces hidden;
  if (!is_restricted(command.user())) return hidden;
  interfaces seen;
  for (const if_index_t if_index : found) {
    paraminfo_t* const block = command.for_interface(kind_of(if_index).mask, if_index);
    const uint32 result = command.library().check_vsans(block, if_index);
    if (result == kFailure) return std::nullopt;
    (result == 0 ? seen : hidden).push_back(if_index);
  }
  found = std::move(seen);
  return hidden;
}

std::string forbidden(const host::user& user, const interfaces& hidden) {
  constexpr std::size_t kNamed = 8;
  std::string text = "not permitted: user '" + user.name + "' may not see ";
  for (std::size_t i = 0; i < std::min(kNamed, hidden.size()); ++i) {
    char name[64];
    text.append(i == 0 ? "" : ", ").append(sprintf_if_index(name, hidden[i]));
  }
  if (hidden.size() > kNamed) text += ", ... (" + std::to_string(hidden.size()) + ")";
  return text + ". Omit the range to show every interface that this user may see.";
}

void check_vsans(command_parameters& command, selection& chosen) {
  const auto hidden = take_hidden(command, chosen.interfaces);
  if (!hidden) {
    chosen.code = kServiceFailed;
  } else if (!hidden->empty()) {
    chosen.code = kNotPermitted;
    chosen.complaint = forbidden(*command.user(), *hidden);
  }
}

bool is_one_of(if_index_type_t type, std::span<const if_index_type_t> kinds) {
  return std::find(kinds.begin(), kinds.end(), type) != kinds.end();
}

// The interfaces of a word's kinds that are among the requested kinds, in natural order.
std::optional<interfaces> all_of_word(command_parameters& command, const interface_word& word,
                                      std::span<const if_index_type_t> wanted) {
  interfaces found;
  for (const interface_kind& kind : all_kinds()) {
    if (kind.family != word.family || !is_one_of(kind.type, word.kinds) || !is_one_of(kind.type, wanted)) continue;
    if (!append_existing(command, kind, {}, found)) return std::nullopt;
  }
  sort_naturally(found);
  return found;
}

// Appends the interfaces of a word's kinds that are requested and that the user may see.
void append_word(command_parameters& command, const interface_word& word, std::span<const if_index_type_t> wanted,
                 selection& chosen) {
  auto found = all_of_word(command, word, wanted);
  if (!found || !take_hidden(command, *found)) {
    chosen.code = kServiceFailed;
    return;
  }
  chosen.interfaces.insert(chosen.interfaces.end(), found->begin(), found->end());
}

// ---- Interfaces that commands create and delete ---------------------------------------------------------------------

constexpr if_index_type_t kPortsWithSubInterfaces[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3};

bool names_sub_interfaces_of_ports(const interface_span& span) {
  return span.low.sub_interface != 0 && span.word->kinds.front() == IF_TYPE_ETHERNET;
}

bool names_loopbacks(const interface_span& span) { return span.word->kinds.front() == IF_TYPE_LOOPBACK; }

bool may_be_created(const interface_span& span) { return names_loopbacks(span) || names_sub_interfaces_of_ports(span); }

interface_number port_of(interface_number number) {
  number.sub_interface = 0;
  return number;
}

// The spans, and the ports of those that name sub-interfaces.
std::vector<interface_span> with_ports(std::span<const interface_span> spans) {
  std::vector<interface_span> all(spans.begin(), spans.end());
  for (const interface_span& span : spans)
    if (names_sub_interfaces_of_ports(span)) all.push_back({span.word, port_of(span.low), port_of(span.low)});
  return all;
}

// The range that a command may create: loopbacks, or sub-interfaces of a port that exists. `existing` is sorted.
std::optional<vsh_intf_mono_range_t> range_to_create(const interface_span& span, const interfaces& existing) {
  const auto range_of = [&span](if_index_type_t type) {
    return vsh_intf_mono_range_t{index_of(type, span.low), index_of(type, span.high)};
  };
  if (names_loopbacks(span)) return range_of(IF_TYPE_LOOPBACK);
  if (!names_sub_interfaces_of_ports(span)) return std::nullopt;
  for (const if_index_type_t type : kPortsWithSubInterfaces)
    if (std::binary_search(existing.begin(), existing.end(), index_of(type, port_of(span.low)))) return range_of(type);
  return std::nullopt;
}

// Has the command library verify the ranges of the spans, so that it creates what they lack.
bool create(command_parameters& command, std::span<const expanded_span> spans, const interfaces& existing,
            selection& chosen) {
  const auto kinds = all_kinds();
  return std::all_of(kinds.begin(), kinds.end(), [&](const interface_kind& kind) {
    ranges named;
    for (const expanded_span& it : spans) {
      const auto range = range_to_create(it.span, existing);
      if (range && &kind_of(range->lower_if_index) == &kind) named.push_back(*range);
    }
    return verify_ranges(command, kind, named, chosen);
  });
}

}  // namespace

selection select_named(command_parameters& command, std::span<const interface_span> spans) {
  const auto existing = existing_of(command, spans);
  if (!existing) return {kServiceFailed, {}, {}};

  const expanded_spans expanded = expand(spans, *existing);
  if (const std::string missing = missing_ends(expanded); !missing.empty()) return no_such(missing);
  selection chosen;
  chosen.interfaces = all_of(expanded);
  if (verify(command, expanded, chosen)) check_vsans(command, chosen);
  return chosen;
}

selection select_or_create(command_parameters& command, std::span<const interface_span> spans) {
  const auto existing = existing_of(command, with_ports(spans));
  if (!existing) return {kServiceFailed, {}, {}};

  expanded_spans expanded = expand(spans, *existing);
  selection chosen;
  chosen.interfaces = all_of(expanded);
  const auto first_new = std::stable_partition(
      expanded.begin(), expanded.end(), [&](const expanded_span& it) { return !range_to_create(it.span, *existing); });
  const std::span<const expanded_span> permanent(expanded.begin(), first_new);
  if (const std::string missing = missing_ends(permanent); !missing.empty()) return no_such(missing);
  check_vsans(command, chosen);
  if (chosen.code != kDone) return chosen;

  command.begin_creation(false);
  const std::span<const expanded_span> creatable(first_new, expanded.end());
  if (!verify(command, permanent, chosen) || !create(command, creatable, *existing, chosen) || creatable.empty())
    return chosen;
  const auto now = existing_of(command, spans);
  if (!now) return {kServiceFailed, {}, {}};
  expanded = expand(spans, *now);
  if (const std::string missing = missing_ends(expanded); !missing.empty()) return no_such(missing);
  chosen.interfaces = all_of(expanded);
  return chosen;
}

selection delete_named(command_parameters& command, std::span<const interface_span> spans, bool may_be_missing) {
  const auto existing = existing_of(command, spans);
  if (!existing) return {kServiceFailed, {}, {}};

  expanded_spans expanded = expand(spans, *existing);
  if (const std::string missing = missing_ends(expanded); !missing.empty() && !may_be_missing) return no_such(missing);
  selection chosen;
  chosen.interfaces = all_of(expanded);
  check_vsans(command, chosen);
  if (chosen.code != kDone) return chosen;

  // Check what cannot be deleted first, so that a refusal changes nothing.
  const auto permanent_end = std::stable_partition(expanded.begin(), expanded.end(),
                                                   [](const expanded_span& it) { return !may_be_created(it.span); });
  command.begin_creation(true);
  for (const std::span<const expanded_span> part : {std::span<const expanded_span>(expanded.begin(), permanent_end),
                                                    std::span<const expanded_span>(permanent_end, expanded.end())})
    for (const interface_kind& kind : all_kinds())
      if (!verify_ranges(command, kind, found_ranges(kind, part), chosen)) return chosen;
  return chosen;
}

selection select_all(command_parameters& command, std::span<const if_index_type_t> kinds) {
  selection chosen;
  for (const std::string_view name : kWordsInOrder) {
    range_fault fault{};
    append_word(command, *parse_interface_word(name, fault), kinds, chosen);
    if (chosen.code != kDone) return {chosen.code, {}, {}};
  }
  return chosen;
}

selection select_every(command_parameters& command) {
  selection chosen;
  for (const interface_word& word : kInterfaceWords) {
    if (&word != word_of(word.kinds.front(), word.family)) continue;  // another word for the same interfaces
    append_word(command, word, word.kinds, chosen);
    if (chosen.code != kDone) return {chosen.code, {}, {}};
  }
  return chosen;
}

}  // namespace host
