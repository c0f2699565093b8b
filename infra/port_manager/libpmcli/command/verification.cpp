// Whether a command may use the interfaces that the user named: the shell's callback before it runs.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "command/frame.h"
#include "platform/if_index.h"
#include "platform/mts.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "platform/vsh.h"
#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "pmcli/selection.h"
#include "support/interface_masks.h"
#include "support/reader.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

enum : int32 { kAllowed = 0, kFailed = PM_CLI_FAILED, kRefused = PM_CLI_REFUSED };

constexpr mts_opc_t kVerifyOpcode = 330;
constexpr int32 kVerifyTimeout = 60;    // seconds
constexpr uint32 kConfigTimeout = 120;  // seconds

// The arguments of the command.
struct named_interfaces {
  bool is_conf = false;  // a configuration command, which may create or delete its interfaces
  bool is_move = false;
  const intf_range_t* ranges = nullptr;
};

named_interfaces scan_arguments(const paraminfo_t* param) {
  named_interfaces named;
  const uint32 count = std::min<uint32>(param->parameter_count, PARAM_MAX_ARGS);
  for (uint8 i = 0; i < count; ++i) {
    const param_arg_t* const argument = param->arg_list[i];
    if (argument == nullptr) continue;
    if (argument->token_id == TOKEN_CONF_INTERFACES) named.is_conf = true;
    if (argument->token_id == TOKEN_MOVE_INTERFACES) named.is_move = true;
    if (argument->type == PARAM_TYPE_INTERFACES && named.ranges == nullptr)
      named.ranges = static_cast<const intf_range_t*>(argument->arg);
  }
  return named;
}

uint32 range_count(const intf_range_t& ranges) { return std::min<uint32>(ranges.range_count, PARAM_MAX_RANGES); }

bool is_sub_interface(if_index_t if_index) {
  uint16 number = 0;
  return if_index_get_sub_intf(if_index, &number) == 0 && number != 0;
}

bool are_sub_interfaces(const intf_range_t& ranges) {
  return std::all_of(ranges.range, ranges.range + range_count(ranges), [](const vsh_intf_mono_range_t& range) {
    return is_sub_interface(range.lower_if_index) && is_sub_interface(range.upper_if_index);
  });
}

// One walk in order: a range of more than one interface refuses, the active supervisor's interface allows.
int32 verify_inband(const intf_range_t& ranges) {
  for (uint32 i = 0; i < range_count(ranges); ++i) {
    const auto& [low, high] = ranges.range[i];
    if (low != high) return kRefused;
    if (low == if_index_inband_get_active_sup_priority_hi()) return kAllowed;
  }
  return kRefused;
}

struct request_block {
  heap_block<pm_cli_if_index_verify_req_payload_t> payload;
  uint32 size;  // bytes
};

request_block build_request(bool is_create, bool is_delete, const vsh_intf_mono_range_t* ranges, uint32 count) {
  const auto size = static_cast<uint32>(sizeof(pm_cli_if_index_verify_req_payload_t) + count * sizeof(pm_port_range_t));
  request_block request{heap_block<pm_cli_if_index_verify_req_payload_t>(
                            static_cast<pm_cli_if_index_verify_req_payload_t*>(std::malloc(size))),
                        size};
  if (request.payload == nullptr) return request;
  *request.payload = {is_create ? 1U : 0U, is_delete ? 1U : 0U, count};
  auto* const pairs = reinterpret_cast<pm_port_range_t*>(request.payload.get() + 1);
  for (uint32 i = 0; i < count; ++i) pairs[i] = {ranges[i].lower_if_index, ranges[i].upper_if_index};
  return request;
}

enum class exchange_end { answered, not_sent, not_received, no_answer, not_dropped };

// Sends a request to the port manager at `sap` and stores its status. A message that cannot be dropped is reported.
exchange_end exchange(mts_q_handle_t q, uint32 sap, const request_block& request, uint32* status) {
  const mts_addr_t to{MTS_NODE_LOCAL, sap};
  message sent(q);
  if (mts_send(q, &to, kVerifyOpcode, request.payload.get(), request.size, sent.ref(), 0, 0) != 0)
    return exchange_end::not_sent;
  sent.hold();
  mts_recv_options_t options{};
  options.version = 1;
  options.timeout = kVerifyTimeout;
  options.rr_token = mts_rr_token_get(sent.ref());
  if (sent.drop() != 0) {
    std::puts("error: in dropping message");
    return exchange_end::not_dropped;
  }

  message got(q);
  if (pm_mts_recv_with_eintr(q, got.ref(), &options) != 0) return exchange_end::not_received;
  got.hold();
  if (mts_is_reject(got.ref())) return exchange_end::no_answer;
  reader answer(mts_payload_get(got.ref()), mts_payload_size(got.ref()));
  *status = answer.u32();
  if (!answer.ok()) return exchange_end::no_answer;
  if (got.drop() == 0) return exchange_end::answered;
  std::puts("error: in dropping message");
  return exchange_end::not_dropped;
}

// The text for a status that refuses.
struct refusal {
  uint32 status;
  const char* text;
};

constexpr refusal kRefusals[] = {
    {PM_ERR_PORT_IN_CHANNEL, "Gigabit Ethernet port belongs to a port-channel\nSub interface creation not allowed"},
    {PM_ERR_SUB_INTERFACE_ON_L2, "Sub-interface configuration not allowed on L2 port"},
    {PM_ERR_SUB_INTERFACE_INTERNAL, "Sub-interface 4095 is internal and not user-configurable"},
    {PM_ERR_NOT_ALLOWED_ON_INTERFACE, "This configuration is not allowed on the interface"},
};

constexpr int kMaxSubInterfaces = 1000;

int32 judge(uint32 status) {
  if (status == PM_ERR_PASSED_THROUGH) return static_cast<int32>(status);
  if (status == PM_ERR_TOO_MANY_SUB_INTERFACES)
    std::printf("Total number of Gigabit Ethernet sub-interfaces exceeds %d\n", kMaxSubInterfaces);
  for (const refusal& row : kRefusals)
    if (row.status == status) std::puts(row.text);
  return kRefused;
}

// Creates or deletes the interfaces of a configuration command, when the port manager's status requires this.
// The loopback rule is the same for both forms, which is intended.
uint32 configure(interface_mask_t mask, const paraminfo_t* param, const intf_range_t& ranges, uint32 status) {
  const bool is_no = param->no_flag == 1;
  const uint32 create = is_no ? 0 : 1;
  const uint32 sub_interface_status = is_no ? 0U : static_cast<uint32>(PM_ERR_NO_SUCH_INTERFACE);
  if ((mask & kMaskWithSubInterfaces) != 0 && status == sub_interface_status)
    status = pm_cli_config_sub_interface(param->q, create, mask, &ranges, kConfigTimeout);
  if ((mask & IF_MASK_LOOPBACK) != 0 && status == PM_ERR_NO_SUCH_INTERFACE)
    status = pm_cli_config_loopback_interface(param->q, create, mask, &ranges, kConfigTimeout);
  return status;
}

// Sends the request to the port manager; -1 after the reason was printed.
int32 ask_status(const paraminfo_t* param, const named_interfaces& named, uint32* status) {
  const bool is_no = param->no_flag == 1;
  const intf_range_t& ranges = *named.ranges;
  const if_index_t first = ranges.range_count != 0 ? ranges.range[0].lower_if_index : 0;
  const uint32 sap = named.is_move ? static_cast<uint32>(MTS_SAP_PORT_MANAGER) : pm_get_mts_sap(first);
  const request_block request =
      build_request(named.is_conf && !is_no, named.is_conf && is_no, ranges.range, range_count(ranges));
  if (request.payload == nullptr) {
    std::printf("error: malloc failure - size(%d)\n", static_cast<int32>(request.size));
    return kFailed;
  }
  switch (exchange(param->q, sap, request, status)) {
    case exchange_end::answered: return kAllowed;
    case exchange_end::not_sent: std::puts("error: in sending message"); break;
    case exchange_end::not_received: vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(param->q)); break;
    case exchange_end::no_answer:
    case exchange_end::not_dropped: break;
  }
  return kFailed;
}

}  // namespace

int32 pm_cli_if_index_verification_func(interface_mask_t iface_mask, paraminfo_t* param) {
  if (param == nullptr || iface_mask == 0) return kRefused;
  if ((iface_mask & kMaskNotEnumerable) != 0) return kAllowed;
  const named_interfaces named = scan_arguments(param);
  const bool is_deletion = named.is_conf && param->no_flag == 1;
  if (is_deletion && (iface_mask & kMaskPermanent) != 0) return kRefused;
  if (named.ranges == nullptr) {
    std::puts("error: token id list does not contain SHOW_INTF");
    return kFailed;
  }
  if (is_deletion && (iface_mask & kMaskWithSubInterfaces) != 0 && !are_sub_interfaces(*named.ranges)) return kRefused;
  if ((iface_mask & IF_MASK_INBAND) != 0) return verify_inband(*named.ranges);

  uint32 status = 0;
  if (ask_status(param, named, &status) != kAllowed) return kFailed;
  if (named.is_conf) status = configure(iface_mask, param, *named.ranges, status);
  if (status != 0) return judge(status);
  if (param->prc_mode == PRC_MODE_SHOW) return kAllowed;
  return static_cast<int32>(pm_cli_check_user_vsan_perms(param, named.ranges));
}

syserr_t pm_if_index_verify_cb(if_index_verify_info_t* if_info) {
  const vsh_intf_mono_range_t range{if_info->if_range.low, if_info->if_range.high};
  const request_block request = build_request(false, false, &range, 1);
  if (request.payload == nullptr) return kFailed;
  uint32 status = 0;
  const exchange_end end = exchange(if_info->mts_q, pm_get_mts_sap(range.lower_if_index), request, &status);
  return end == exchange_end::answered ? static_cast<syserr_t>(status) : kFailed;
}
