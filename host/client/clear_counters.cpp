#include "platform/clear_counters.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/c_edge.h"
#include "client/library_functions.h"
#include "client/request.h"
#include "messages/calls/command_account.h"
#include "messages/port_channel_messages.h"
#include "messages/port_manager_messages.h"
#include "messages/statistics_messages.h"
#include "platform/port_manager.h"
#include "transport/transport.h"

namespace host {
namespace {

using status_entries = std::vector<pm_clear_status_t>;

// Adds what an answer says of the interfaces that were asked for. PM_ERR_GENERAL for one that does not hold what it
// promises.
syserr_t take_entries(std::span<const std::byte> payload, std::size_t asked, status_entries& entries) {
  if (payload.empty()) return PM_ERR_GENERAL;
  const auto promised = std::to_integer<std::size_t>(payload.front());
  const std::span list = payload.subspan(1);
  if (promised > list.size() / sizeof(pm_clear_status_t)) return PM_ERR_GENERAL;
  for (std::size_t i = 0; i < std::min(promised, asked); ++i)
    std::memcpy(&entries.emplace_back(), list.data() + i * sizeof(pm_clear_status_t), sizeof(pm_clear_status_t));
  return 0;
}

// The status of one interface that was asked for; PM_ERR_GENERAL when the answer does not name it.
syserr_t status_of(if_index_t if_index, std::span<const pm_clear_status_t> entries) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [=](const pm_clear_status_t& it) { return it.if_index == if_index; });
  return found == entries.end() ? syserr_t{PM_ERR_GENERAL} : syserr_t{found->status};
}

// Asks for as many interfaces as one answer can count. There is room for their entries.
syserr_t ask_to_clear_some(mts_q_handle_t q, std::span<const if_index_t> if_indexes, status_entries& entries) {
  struct {
    clear_request head;
    be32 if_indexes[kMaxClearedAtOnce];
  } request;
  request.head.count = static_cast<uint32>(if_indexes.size());
  std::copy(if_indexes.begin(), if_indexes.end(), request.if_indexes);
  const std::size_t size = sizeof request.head + if_indexes.size() * sizeof(be32);
  mts_msg_ref_t got;
  const syserr_t error =
      exchange({q, MTS_SAP_PORT_MANAGER, PM_OPC_CLEAR_COUNTERS}, bytes_of(request).first(size), &got);
  if (error != 0) return error;
  const syserr_t result = take_entries(payload_of(got), if_indexes.size(), entries);
  if (result != 0) transport_note_damaged(MTS_SAP_PORT_MANAGER);
  mts_drop(q, &got);
  return result;
}

syserr_t clear_some(mts_q_handle_t q, std::span<const if_index_t> if_indexes, status_entries& entries) {
  const std::size_t known = entries.size();
  entries.reserve(known + if_indexes.size());
  const syserr_t error = ask_to_clear_some(q, if_indexes, entries);
  const auto answered = std::span(entries).subspan(known);
  for (const if_index_t if_index : if_indexes)
    note_clear(q, MTS_SAP_PORT_MANAGER, if_index, if_index, error != 0 ? error : status_of(if_index, answered));
  return error;
}

// Entries that the count byte cannot hold are omitted, successful ones first.
void fit_in_list(status_entries& entries) {
  if (entries.size() <= kMaxClearedAtOnce) return;
  std::erase_if(entries, [](const pm_clear_status_t& it) { return it.status == 0; });
  entries.resize(std::min<std::size_t>(entries.size(), kMaxClearedAtOnce));
}

// A heap block of a count byte and the entries; null when there are none.
syserr_t give_list(const status_entries& entries, uint8** list) {
  if (entries.empty()) return 0;
  const std::size_t size = entries.size() * sizeof entries.front();
  *list = static_cast<uint8*>(std::malloc(1 + size));
  if (*list == nullptr) return PM_ERR_GENERAL;
  **list = static_cast<uint8>(entries.size());
  std::memcpy(*list + 1, entries.data(), size);
  return 0;
}

// Notes the result; a failure to store it is a failure of the request.
syserr_t ask_to_clear(const call& to, if_index_t if_index) {
  return no_throw<syserr_t>(PM_ERR_GENERAL, [&] {
    const syserr_t error = answer(answered_by_errors(to), bytes_of(interface_request{if_index}), 1).error();
    note_clear(to.q, to.sap, if_index, if_index, error);
    return error;
  });
}

// Clears all interfaces, in as many requests as needed.
syserr_t clear_all_of(mts_q_handle_t q, std::span<const if_index_t> left, uint8** status_list) {
  status_entries entries;
  while (!left.empty()) {
    const std::size_t size = std::min<std::size_t>(left.size(), kMaxClearedAtOnce);
    const syserr_t error = clear_some(q, left.first(size), entries);
    if (error != 0) return error;
    left = left.subspan(size);
  }
  fit_in_list(entries);
  return give_list(entries, status_list);
}

// The interface ranges of a command; null when it has none.
const intf_range_t* ranges_of(const paraminfo_t& param) {
  const std::size_t count = std::min<std::size_t>(param.parameter_count, PARAM_MAX_ARGS);
  const auto is_range_type = [](uint32 id) { return id == PARAM_TYPE_CONF_INTERFACES || id == PARAM_TYPE_INTERFACES; };
  for (std::size_t i = 0; i < count; ++i) {
    const param_arg_t* const argument = param.arg_list[i];
    if (argument == nullptr || argument->arg == nullptr) continue;
    if (is_range_type(argument->type) || is_range_type(argument->token_id))
      return static_cast<const intf_range_t*>(argument->arg);
  }
  return nullptr;
}

bool clear_channels(mts_q_handle_t q, const vsh_intf_mono_range_t& range) {
  const eth_statistics_request request{{range.lower_if_index, range.upper_if_index}, 0};
  const syserr_t error = no_throw<syserr_t>(PM_ERR_GENERAL, [&] {
    const syserr_t answered =
        answer(answered_by_errors({q, MTS_SAP_PORT_MANAGER, PM_OPC_CHANNEL_STATISTICS}), bytes_of(request), 1).error();
    note_clear(q, MTS_SAP_PORT_MANAGER, range.lower_if_index, range.upper_if_index, answered);
    return answered;
  });
  if (error == 0) return true;
  std::array<char, 40> name;
  const char* const text = syserr2str(error);
  std::printf("error: %s clearing interface %s counters\n", text == nullptr ? "" : text,
              sprintf_if_index(name.data(), range.lower_if_index));
  return false;
}

}  // namespace

int32 clear_port_statistics(if_index_t if_index) {
  return ask_to_clear({client_queue(), SAP_STATISTICS, STATS_OPC_CLEAR_PORT}, if_index);
}

int32 clear_loopback_counters(if_index_t if_index) {
  return ask_to_clear({client_queue(), SAP_STATISTICS, STATS_OPC_CLEAR_LOOPBACK}, if_index) == 0 ? 1 : 0;
}

}  // namespace host

using namespace host;

int32 pm_clear_port_counters(mts_q_handle_t q, uint32 count, const if_index_t* if_indexes, uint32, uint8** status_list,
                             uint32) {
  if (status_list == nullptr) return PM_ERR_GENERAL;
  *status_list = nullptr;
  if (if_indexes == nullptr && count != 0) return PM_ERR_GENERAL;
  return no_throw<syserr_t>(PM_ERR_GENERAL, [&] { return clear_all_of(q, {if_indexes, count}, status_list); });
}

// Not zero is success. Callers name the device by the number of its port; the machine maps it to the device here.
int32 pm_clear_interface_counters(const char*, if_index_t if_index, mts_q_handle_t q) {
  return ask_to_clear({q, MTS_SAP_PORT_MANAGER, PM_OPC_CLEAR_MANAGEMENT}, if_index) == 0 ? 1 : 0;
}

int32 dstats_clear_counters(mts_q_handle_t q, if_index_t if_index, uint32, uint32, uint32 timeout) {
  return ask_to_clear({q, SAP_STATISTICS, STATS_OPC_CLEAR_CHANNEL, static_cast<int32>(timeout)}, if_index);
}

int32 pcmap_get_next_port_channel(if_index_t current, if_index_t* next) {
  if (next == nullptr) return PM_ERR_GENERAL;
  be32 found;
  const syserr_t error = ask_record(answered_by_errors({client_queue(), SAP_PORT_CHANNEL, PC_OPC_NEXT}),
                                    bytes_of(interface_request{current}), writable_bytes_of(found));
  if (error == 0) *next = found;
  return error;
}

int32 pm_cli_clear_ethernet_channel_counters(paraminfo_t* param) {
  if (param == nullptr) return 1;
  const intf_range_t* const named = ranges_of(*param);
  if (named == nullptr) {
    std::puts("error: token id list does not contain CONF_INTF");
    return 1;
  }
  const std::size_t count = std::min<std::size_t>(named->range_count, PARAM_MAX_RANGES);
  int32 result = 0;
  for (const vsh_intf_mono_range_t& range : std::span(named->range, count))
    if (!clear_channels(param->q, range)) result = 1;
  return result;
}
