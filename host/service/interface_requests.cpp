#include "service/interface_requests.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "messages/port_manager_messages.h"
#include "platform/interface_manager.h"
#include "platform/port_config.h"
#include "service/answers.h"
#include "settings/change_journal.h"
#include "settings/settings.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

struct index_range {
  if_index_t low;
  if_index_t high;
};

struct verification {
  bool is_create;
  bool is_delete;
  std::vector<index_range> ranges;
};

std::optional<verification> read_verification(std::span<const std::byte> bytes) {
  pm_cli_if_index_verify_req_payload_t head;
  if (bytes.size() < sizeof head) return std::nullopt;
  std::memcpy(&head, bytes.data(), sizeof head);
  const auto pairs = bytes.subspan(sizeof head);
  if (pairs.size() % sizeof(pm_port_range_t) != 0 || pairs.size() / sizeof(pm_port_range_t) != head.num_range)
    return std::nullopt;
  verification request{head.is_create != 0, head.is_delete != 0, {}};
  request.ranges.reserve(head.num_range);
  for (std::size_t at = 0; at < pairs.size(); at += sizeof(pm_port_range_t)) {
    pm_port_range_t pair;
    std::memcpy(&pair, pairs.data() + at, sizeof pair);
    request.ranges.push_back({pair.if_index_low, pair.if_index_high});
  }
  return request;
}

bool exists(if_index_t if_index) { return std::as_const(the_machine()).find(if_index) != nullptr; }

bool is_sub_interface(if_index_t if_index) { return if_index_is_sub_intf(if_index) != 0; }

// Bounds in order and of one kind; a sub-interface only with another one of the same parent.
bool spans_a_range(const index_range& range) {
  if_index_type_t low_type = IF_TYPE_NONE;
  if_index_type_t high_type = IF_TYPE_NONE;
  if (if_index_get_type(range.low, &low_type) != 0 || if_index_get_type(range.high, &high_type) != 0) return false;
  if (range.low > range.high || low_type != high_type) return false;
  if (!is_sub_interface(range.low) && !is_sub_interface(range.high)) return true;
  return is_sub_interface(range.low) && is_sub_interface(range.high) && parent_of(range.low) == parent_of(range.high);
}

// Indexes of the range's numbers that no interface has. Such ranges count in the last field of an index.
uint32 count_missing(const index_range& range) {
  uint32 missing = 0;
  for (uint64 it = range.low; it <= range.high; ++it) missing += exists(static_cast<if_index_t>(it)) ? 0 : 1;
  return missing;
}

template <class Matches>
uint32 count_interfaces(Matches matches) {
  const auto& all = the_machine().interfaces;
  return static_cast<uint32>(std::count_if(all.begin(), all.end(), matches));
}

// The status that prevents sub-interfaces of a range; 0: none.
syserr_t refusal_of_sub_interfaces(const index_range& range) {
  const interface* const parent = std::as_const(the_machine()).find(parent_of(range.low));
  if (parent == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  uint16 highest = 0;
  if_index_get_sub_intf(range.high, &highest);
  if (highest == kMaxSubInterface) return PM_ERR_SUB_INTERFACE_INTERNAL;
  if (parent->settings.channel != 0) return PM_ERR_PORT_IN_CHANNEL;
  if (parent->settings.layer != IF_LAYER_2 || the_source().allows_sub_interfaces_of_switched_ports()) return 0;
  return PM_ERR_SUB_INTERFACE_ON_L2;
}

// Checks a request that creates sub-interfaces, before they are looked up.
syserr_t refusal_of_creation(std::span<const index_range> ranges) {
  uint32 missing = 0;
  for (const index_range& range : ranges) {
    if (!is_sub_interface(range.low)) continue;
    if (const syserr_t refusal = refusal_of_sub_interfaces(range); refusal != 0) return refusal;
    missing += count_missing(range);
  }
  if (missing == 0) return 0;
  const uint32 present = count_interfaces([](const interface& it) { return is_sub_interface(it.if_index); });
  return present + missing > kMaxSubInterfaces ? PM_ERR_TOO_MANY_SUB_INTERFACES : 0;
}

bool is_loopback(if_index_t if_index) { return decode_index(if_index).type == IF_TYPE_LOOPBACK; }

bool is_too_wide(const index_range& range) { return range.high - range.low >= kMaxLoopbacks; }

// Whether a command that creates its interfaces has something to create in a range.
bool lacks_interfaces(const index_range& range) {
  if (is_loopback(range.low)) return is_too_wide(range) || count_missing(range) != 0;
  return is_sub_interface(range.low) && count_missing(range) != 0;
}

// The caller deletes loopbacks when it gets PM_ERR_NO_SUCH_INTERFACE.
syserr_t status_of_deletion(std::span<const index_range> ranges) {
  const auto is_of = [ranges](bool (*is_one)(if_index_t)) {
    return std::all_of(ranges.begin(), ranges.end(), [=](const index_range& range) { return is_one(range.low); });
  };
  if (is_of(is_sub_interface)) return 0;
  return is_of(is_loopback) ? PM_ERR_NO_SUCH_INTERFACE : PM_ERR_NOT_ALLOWED_ON_INTERFACE;
}

syserr_t status_of(const verification& request) {
  if (!std::all_of(request.ranges.begin(), request.ranges.end(), spans_a_range)) return PM_ERR_INVALID_RANGE;
  if (request.is_create) {
    if (const syserr_t refusal = refusal_of_creation(request.ranges); refusal != 0) return refusal;
  }
  for (const index_range& range : request.ranges) {
    if (!exists(range.low) || !exists(range.high)) return PM_ERR_NO_SUCH_INTERFACE;
    if (request.is_create && lacks_interfaces(range)) return PM_ERR_NO_SUCH_INTERFACE;
  }
  return request.is_delete ? status_of_deletion(request.ranges) : 0;
}

// Configuration.

// A kind of interface that commands create and delete.
struct configurable {
  bool (*is_one)(if_index_t if_index);
  syserr_t (*refusal)(std::span<const index_range> ranges);
};

syserr_t refusal_of_loopbacks(std::span<const index_range> ranges) {
  uint64 requested = count_interfaces([](const interface& it) { return is_loopback(it.if_index); });
  for (const index_range& range : ranges) {
    if (is_too_wide(range)) return PM_ERR_INVALID_RANGE;
    requested += count_missing(range);
  }
  return requested > kMaxLoopbacks ? PM_ERR_INVALID_RANGE : 0;
}

constexpr configurable kSubInterfaces = {is_sub_interface, refusal_of_creation};
constexpr configurable kLoopbacks = {is_loopback, refusal_of_loopbacks};

// Sorted, each once.
void make_set(std::vector<if_index_t>& interfaces) {
  std::sort(interfaces.begin(), interfaces.end());
  interfaces.erase(std::unique(interfaces.begin(), interfaces.end()), interfaces.end());
}

// A sub-interface of a simulated switch. Other sources report the settings of a new one.
void set_as_parent(if_index_t if_index) {
  interface* const made = the_machine().find(if_index);
  if (made == nullptr || if_index_is_sub_intf(if_index) == 0) return;
  inherit_settings(*the_machine().find(parent_of(if_index)), *made);
  made->at_start = made->settings;
}

syserr_t create(std::span<const index_range> ranges) {
  std::vector<if_index_t> missing;
  for (const index_range& range : ranges)
    for (uint64 it = range.low; it <= range.high; ++it)
      if (!exists(static_cast<if_index_t>(it))) missing.push_back(static_cast<if_index_t>(it));
  make_set(missing);
  if (missing.empty()) return 0;
  const uint32 status = the_source().create_interfaces(the_machine(), missing);
  if (status != 0) return static_cast<syserr_t>(status);
  for (const if_index_t it : missing) {
    if (the_source().knows_all_fields()) set_as_parent(it);
    note_created(it);
  }
  return 0;
}

// Interfaces that the source deletes before it refuses are noted, too.
syserr_t remove(std::span<const index_range> ranges) {
  std::vector<if_index_t> doomed;
  for (const index_range& range : ranges) {
    const auto [error, interfaces] = find_range({range.low, range.high});
    if (error != 0) return error;
    for (const interface& it : interfaces) doomed.push_back(it.if_index);
  }
  make_set(doomed);
  std::vector<interface> before;
  for (const if_index_t it : doomed) before.push_back(*the_machine().find(it));
  const uint32 status = the_source().delete_interfaces(the_machine(), doomed);
  for (interface& it : before)
    if (!exists(it.if_index)) note_deleted(std::move(it));
  return static_cast<syserr_t>(status);
}

syserr_t configure(const verification& request, const configurable& kind) {
  for (const index_range& range : request.ranges) {
    if (!spans_a_range(range)) return PM_ERR_INVALID_RANGE;
    if (!kind.is_one(range.low)) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  }
  if (request.is_delete) return remove(request.ranges);
  if (const syserr_t refusal = kind.refusal(request.ranges); refusal != 0) return refusal;
  return create(request.ranges);
}

reply answer_configuration(std::span<const std::byte> bytes, const configurable& kind) {
  const auto request = read_verification(bytes);
  if (!request || request->is_create == request->is_delete) return reject();
  const syserr_t error = configure(*request, kind);
  return error != 0 ? answer_error(error) : answer_writer(0).finish();
}

}  // namespace

reply answer_verification(std::span<const std::byte> bytes) {
  const auto request = read_verification(bytes);
  if (!request) return reject();
  reply answer;
  append_bytes(answer, pm_cli_if_index_verify_res_payload_t{static_cast<uint32>(status_of(*request))});
  return answer;
}

reply configure_sub_interfaces(std::span<const std::byte> request) {
  return answer_configuration(request, kSubInterfaces);
}

reply configure_loopbacks(std::span<const std::byte> request) { return answer_configuration(request, kLoopbacks); }

}  // namespace host
