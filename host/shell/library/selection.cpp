#include "shell/library/selection.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <optional>
#include <unordered_set>

#include "base/port_status.h"
#include "messages/calls/command_account.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "platform/vsh.h"
#include "pmcli/displays.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/listing.h"
#include "switch/range_text.h"

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

// The spans of some items.
std::vector<interface_span> spans_of(std::span<const range_item> items) {
  std::vector<interface_span> spans;
  for (const range_item& item : items)
    if (const auto* const span = std::get_if<interface_span>(&item)) spans.push_back(*span);
  return spans;
}

// All interfaces of any kind that may be of the items, by index. Nothing after the reason was printed.
std::optional<interfaces> existing_of(command_parameters& command, std::span<const range_item> items) {
  const std::vector<interface_span> spans = spans_of(items);
  const bool is_any = spans.size() != items.size();
  interfaces found;
  for (const interface_kind& kind : all_kinds()) {
    ranges wanted;
    for (const interface_span& span : spans) {
      if (may_name(span, kind)) wanted.push_back({index_of(kind.type, span.low), index_of(kind.type, span.high)});
    }
    if (is_any) wanted.clear();
    if ((is_any || !wanted.empty()) && !append_existing(command, kind, wanted, found)) return std::nullopt;
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

std::vector<range_item> all_items(const interface_range& range) {
  std::vector<range_item> all = range.items;
  all.insert(all.end(), range.exceptions.begin(), range.exceptions.end());
  return all;
}

std::optional<interfaces> existing_of(command_parameters& command, const interface_range& range) {
  return existing_of(command, all_items(range));
}

// An item of a range and the interfaces of it, in natural order.
struct expanded_item {
  range_item item;
  span_ends ends;  // of a span
  interfaces found;

  const interface_span* span() const { return std::get_if<interface_span>(&item); }
};
using expanded_items = std::vector<expanded_item>;

// The words of interfaces, in the order of displays.
std::vector<const interface_word*> words_in_order() {
  std::vector<const interface_word*> words;
  range_fault fault{};
  for (const std::string_view name : kWordsInOrder) words.push_back(parse_interface_word(name, fault));
  for (const interface_word& word : kInterfaceWords) {
    const bool is_second_word = &word != word_of(word.kinds.front(), word.family);
    if (!is_second_word && std::find(words.begin(), words.end(), &word) == words.end()) words.push_back(&word);
  }
  return words;
}

// The interfaces of an item that is no span, word by word in natural order.
interfaces matching(const range_item& item, const interfaces& existing) {
  const std::vector<const interface_word*> words = words_in_order();
  std::vector<interfaces> of_words(words.size());
  for (const if_index_t it : existing) {
    const interface_word* const word = word_of(decode_index(it).type, number_of(it).family);
    const auto place = std::find(words.begin(), words.end(), word);
    if (place != words.end() && matches(item, it))
      of_words[static_cast<std::size_t>(place - words.begin())].push_back(it);
  }
  interfaces found;
  for (interfaces& of_word : of_words) {
    sort_naturally(of_word);
    found.insert(found.end(), of_word.begin(), of_word.end());
  }
  return found;
}

// `existing` is sorted by index.
expanded_items expand(std::span<const range_item> items, const interfaces& existing) {
  expanded_items expanded;
  for (const range_item& item : items) {
    expanded_item& it = expanded.emplace_back(expanded_item{item, {}, {}});
    if (const interface_span* const span = it.span())
      it.ends = append_matching(*span, existing, it.found);
    else
      it.found = matching(item, existing);
  }
  return expanded;
}

// The interfaces of some items, each once, in their order.
interfaces all_of(std::span<const expanded_item> items) {
  interfaces all;
  std::unordered_set<if_index_t> seen;
  for (const expanded_item& it : items)
    std::copy_if(it.found.begin(), it.found.end(), std::back_inserter(all),
                 [&seen](if_index_t if_index) { return seen.insert(if_index).second; });
  return all;
}

// The ends of spans that do not exist, and the patterns that no name matches, such as "ethernet 9/9, loopback 5"; empty
// when there are none.
std::string missing_of(std::span<const expanded_item> items) {
  std::string text;
  const auto add = [&text](const std::string& name) { text += (text.empty() ? "" : ", ") + name; };
  for (const expanded_item& it : items) {
    const auto* const pattern = std::get_if<name_pattern>(&it.item);
    if (pattern != nullptr && it.found.empty()) add('"' + pattern->text + '"');
    const interface_span* const span = it.span();
    if (span == nullptr) continue;
    if (!it.ends.low_exists) add(interface_text(*span->word, span->low));
    if (!it.ends.high_exists && span->high != span->low) add(interface_text(*span->word, span->high));
  }
  return text;
}

// Takes the interfaces of the exceptions out of the items.
void take_out(const expanded_items& exceptions, expanded_items& items) {
  if (exceptions.empty()) return;
  interfaces out = all_of(exceptions);
  std::sort(out.begin(), out.end());
  for (expanded_item& it : items)
    std::erase_if(it.found, [&out](if_index_t found) { return std::binary_search(out.begin(), out.end(), found); });
}

selection no_such(const std::string& missing) {
  return {kNoSuchInterface, fmt::format("no such interface: {}. Type 'show interface ?' for the kinds.", missing), {}};
}

// What the port manager verifies of a kind: the first and the last interface of it in each span, and the runs of what
// is named otherwise or has exceptions.
ranges found_ranges(const interface_kind& kind, std::span<const expanded_item> items, bool has_exceptions) {
  ranges found;
  for (const expanded_item& it : items) {
    interfaces of_kind;
    std::copy_if(it.found.begin(), it.found.end(), std::back_inserter(of_kind),
                 [&kind](if_index_t if_index) { return &kind_of(if_index) == &kind; });
    if (of_kind.empty()) continue;
    if (it.span() != nullptr && !has_exceptions) {
      found.push_back({of_kind.front(), of_kind.back()});
      continue;
    }
    for (const number_run& run : runs_of(of_kind)) found.push_back({run.first, run.last});
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
    complaint = fmt::format("cannot {} {}: {}.", parameters.is_no() ? "delete" : "create", text_of(block),
                            reason == nullptr ? "unknown error" : reason);
    return is_missing_right(static_cast<uint32>(error)) ? kNotPermitted : kServiceFailed;
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
bool verify(command_parameters& command, std::span<const expanded_item> items, bool has_exceptions, selection& chosen) {
  const auto kinds = all_kinds();
  return std::all_of(kinds.begin(), kinds.end(), [&](const interface_kind& kind) {
    return !kind.is_enumerated || verify_ranges(command, kind, found_ranges(kind, items, has_exceptions), chosen);
  });
}

bool is_restricted(const session_user* user) { return user != nullptr && user->vsans; }

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

// Removes the interfaces that the user may not see from items that are not named by numbers. False after the reason was
// printed.
bool hide(command_parameters& command, expanded_items& items) {
  return std::all_of(items.begin(), items.end(),
                     [&](expanded_item& it) { return it.span() != nullptr || take_hidden(command, it.found); });
}

std::string forbidden(const session_user& user, const interfaces& hidden) {
  constexpr std::size_t kNamed = 8;
  std::string names;
  for (std::size_t i = 0; i < std::min(kNamed, hidden.size()); ++i) {
    char name[64];
    names.append(i == 0 ? "" : ", ").append(sprintf_if_index(name, hidden[i]));
  }
  if (hidden.size() > kNamed) names += fmt::format(", ... ({})", hidden.size());
  return fmt::format(
      "not permitted: user '{}' may not see {}. Omit the range to show every interface that this user may see.",
      user.name, names);
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

// The items of a range, and the ports of those that name sub-interfaces.
std::vector<range_item> with_ports(const interface_range& range) {
  std::vector<range_item> all = all_items(range);
  for (const interface_span& span : spans_of(range.items))
    if (names_sub_interfaces_of_ports(span))
      all.emplace_back(interface_span{span.word, port_of(span.low), port_of(span.low)});
  return all;
}

// The parts of a span that may be created which no exception names.
std::vector<interface_span> parts_without(const interface_span& span, std::span<const range_item> exceptions) {
  std::vector<interface_span> parts;
  const if_index_type_t type = span.word->kinds.front();
  interface_number number = span.low;
  uint32& last_part = number.sub_interface != 0 ? number.sub_interface : number.port;
  for (bool is_new = true; number <= span.high; ++last_part) {
    const if_index_t if_index = index_of(type, number);
    const bool is_out = std::any_of(exceptions.begin(), exceptions.end(),
                                    [if_index](const range_item& it) { return matches(it, if_index); });
    if (!is_out && is_new) parts.push_back({span.word, number, number});
    if (!is_out) parts.back().high = number;
    is_new = is_out;
  }
  return parts;
}

// The items, with the parts of spans that may be created in the place of those spans.
std::vector<range_item> items_to_create(const interface_range& range) {
  std::vector<range_item> items;
  for (const range_item& item : range.items) {
    const auto* const span = std::get_if<interface_span>(&item);
    if (span == nullptr || range.exceptions.empty() || !may_be_created(*span)) {
      items.push_back(item);
      continue;
    }
    for (const interface_span& part : parts_without(*span, range.exceptions)) items.emplace_back(part);
  }
  return items;
}

// Exceptions that need not exist are those that may be created.
void drop_creatable(expanded_items& exceptions) {
  std::erase_if(exceptions, [](const expanded_item& it) { return it.span() != nullptr && may_be_created(*it.span()); });
}

// The range that a command may create: loopbacks, or sub-interfaces of a port that exists. `existing` is sorted.
std::optional<vsh_intf_mono_range_t> range_to_create(const expanded_item& item, const interfaces& existing) {
  if (item.span() == nullptr) return std::nullopt;
  const interface_span& span = *item.span();
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
bool create(command_parameters& command, std::span<const expanded_item> items, const interfaces& existing,
            selection& chosen) {
  const auto kinds = all_kinds();
  return std::all_of(kinds.begin(), kinds.end(), [&](const interface_kind& kind) {
    ranges named;
    for (const expanded_item& it : items) {
      const auto range = range_to_create(it, existing);
      if (range && &kind_of(range->lower_if_index) == &kind) named.push_back(*range);
    }
    return verify_ranges(command, kind, named, chosen);
  });
}

}  // namespace

bool selection::is_named(if_index_t if_index) const {
  return !std::binary_search(matched.begin(), matched.end(), if_index);
}

namespace {

// A range and what there is of it.
struct expansion {
  expanded_items items;
  expanded_items exceptions;  // whose interfaces the items do not have any more

  std::string missing() const {
    const std::string of_items = missing_of(items), of_exceptions = missing_of(exceptions);
    return of_items + (of_items.empty() || of_exceptions.empty() ? "" : ", ") + of_exceptions;
  }
};

// What "all" and patterns name and the spans do not.
interfaces matched_by(const expanded_items& items) {
  interfaces named, matched;
  for (const expanded_item& it : items) {
    interfaces& to = it.span() != nullptr ? named : matched;
    to.insert(to.end(), it.found.begin(), it.found.end());
  }
  std::sort(named.begin(), named.end());
  std::sort(matched.begin(), matched.end());
  std::erase_if(matched, [&named](if_index_t it) { return std::binary_search(named.begin(), named.end(), it); });
  return matched;
}

bool is_empty(const expanded_items& items) {
  return std::all_of(items.begin(), items.end(), [](const expanded_item& it) { return it.found.empty(); });
}

selection nothing_left() { return {kNoSuchInterface, "'except' leaves no interface of the range.", {}}; }

// The interfaces that are left, before they are checked.
selection selection_of(const expansion& expanded) {
  selection chosen;
  chosen.interfaces = all_of(expanded.items);
  chosen.matched = matched_by(expanded.items);
  if (chosen.interfaces.empty() && !expanded.exceptions.empty()) return nothing_left();
  return chosen;
}

}  // namespace

selection select_named(command_parameters& command, const interface_range& range, absent_ends absent) {
  const auto existing = existing_of(command, range);
  if (!existing) return {kServiceFailed, {}, {}};

  expansion expanded{expand(range.items, *existing), expand(range.exceptions, *existing)};
  if (!hide(command, expanded.items)) return {kServiceFailed, {}, {}};
  const std::string missing = expanded.missing();
  if (!missing.empty() && (absent == absent_ends::refuse || is_empty(expanded.items))) return no_such(missing);
  take_out(expanded.exceptions, expanded.items);
  selection chosen = selection_of(expanded);
  if (chosen.code != kDone) return chosen;
  if (verify(command, expanded.items, !range.exceptions.empty(), chosen)) check_vsans(command, chosen);
  if (missing.empty()) return chosen;
  if (chosen.code != kDone) return no_such(missing);
  chosen.has_absent_ends = true;
  chosen.complaint = fmt::format("no such interface: {}. The others are shown.", missing);
  return chosen;
}

selection select_or_create(command_parameters& command, const interface_range& range) {
  const auto existing = existing_of(command, with_ports(range));
  if (!existing) return {kServiceFailed, {}, {}};

  const std::vector<range_item> wanted = items_to_create(range);
  expansion expanded{expand(wanted, *existing), expand(range.exceptions, *existing)};
  expanded_items& items = expanded.items;
  if (!hide(command, items)) return {kServiceFailed, {}, {}};
  const auto first_new = std::stable_partition(
      items.begin(), items.end(), [&](const expanded_item& it) { return !range_to_create(it, *existing); });
  const std::span<const expanded_item> permanent(items.begin(), first_new);
  const std::span<const expanded_item> creatable(first_new, items.end());
  expanded_items exceptions = expanded.exceptions;
  drop_creatable(exceptions);
  const std::string missing = expansion{{permanent.begin(), permanent.end()}, exceptions}.missing();
  if (!missing.empty()) return no_such(missing);
  take_out(expanded.exceptions, items);
  selection chosen;
  chosen.interfaces = all_of(items);
  if (chosen.interfaces.empty() && creatable.empty() && !range.exceptions.empty()) return nothing_left();
  check_vsans(command, chosen);
  if (chosen.code != kDone) return chosen;

  command.begin_creation(false);
  if (!verify(command, permanent, !range.exceptions.empty(), chosen) ||
      !create(command, creatable, *existing, chosen) || creatable.empty())
    return chosen;
  const auto now = existing_of(command, with_ports(range));
  if (!now) return {kServiceFailed, {}, {}};
  expanded_items made = expand(wanted, *now);
  if (!hide(command, made)) return {kServiceFailed, {}, {}};
  if (const std::string lost = missing_of(made); !lost.empty()) return no_such(lost);
  take_out(expanded.exceptions, made);
  chosen.interfaces = all_of(made);
  return chosen;
}

selection delete_named(command_parameters& command, const interface_range& range, bool may_be_missing) {
  const auto existing = existing_of(command, range);
  if (!existing) return {kServiceFailed, {}, {}};

  expansion expanded{expand(range.items, *existing), expand(range.exceptions, *existing)};
  expanded_items& items = expanded.items;
  if (!hide(command, items)) return {kServiceFailed, {}, {}};
  if (const std::string missing = expanded.missing(); !missing.empty() && !may_be_missing) return no_such(missing);
  take_out(expanded.exceptions, items);
  selection chosen = selection_of(expanded);
  if (chosen.code != kDone) return chosen;
  check_vsans(command, chosen);
  if (chosen.code != kDone) return chosen;

  // Check what cannot be deleted first, so that a refusal changes nothing.
  const auto permanent_end = std::stable_partition(items.begin(), items.end(), [](const expanded_item& it) {
    return it.span() == nullptr || !may_be_created(*it.span());
  });
  command.begin_creation(true);
  for (const std::span<const expanded_item> part : {std::span<const expanded_item>(items.begin(), permanent_end),
                                                    std::span<const expanded_item>(permanent_end, items.end())})
    for (const interface_kind& kind : all_kinds())
      if (!verify_ranges(command, kind, found_ranges(kind, part, !range.exceptions.empty()), chosen)) return chosen;
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
