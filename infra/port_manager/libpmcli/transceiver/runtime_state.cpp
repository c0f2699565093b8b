#include "transceiver/runtime_state.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <optional>

#include "interface/port_record.h"
#include "platform/if_index.h"
#include "platform/misc_info.h"
#include "platform/vsh.h"
#include "support/errors.h"
#include "support/exchange.h"
#include "support/reader.h"

namespace pmcli {

namespace {

constexpr syserr_t kFailed = 1;

// ---- The answer -------------------------------------------------------------------------------------------------

// The state of the first port in the answer.
struct port_information {
  if_index_t if_index;
  syserr_t status;
  uint16 num_entries;
};

std::optional<port_information> read_first_port(reader* answer) {
  answer->skip(sizeof(port_misc_info_rsp_t::port_misc_info_fsm_flag));
  const uint8 num_ports = answer->u8();
  const port_information port{answer->u32(), static_cast<syserr_t>(answer->u32()), answer->u16()};
  return answer->ok() && num_ports != 0 ? std::optional(port) : std::nullopt;
}

// The first entry with the state that is not empty; zero where the entry is shorter. None when there is no such entry.
std::optional<port_xcvr_info_t> find_state(reader* answer, uint16 num_entries) {
  for (uint16 i = 0; i < num_entries; ++i) {
    const uint16 type = answer->u16();
    const uint16 length = answer->u16();
    reader value = answer->sub(length);
    if (!answer->ok()) return std::nullopt;
    if (type != MISC_INFO_TRANSCEIVER_STATE || length == 0) continue;
    uint8 bytes[sizeof(port_xcvr_info_t)] = {};
    for (std::size_t at = 0; at < std::min<std::size_t>(length, sizeof bytes); ++at) bytes[at] = value.u8();
    port_xcvr_info_t state;
    std::memcpy(&state, bytes, sizeof state);
    return state;
  }
  return std::nullopt;
}

// ---- Output -----------------------------------------------------------------------------------------------------

const char* no_unless(uint8 flag) { return flag != 0 ? "" : "no "; }

void print_state(const port_xcvr_info_t& state) {
  if (state.op_status != 0 || state.read_ok != 1) {
    std::puts("    Failed to get runtime SFP state info.");
    return;
  }
  if (state.csum_base_ok == 0) std::puts("    Base checksum not OK.");
  if (state.csum_ext_ok == 0) std::puts("    Extended checksum not OK.");
  if (state.csum_base_ok == 0 || state.csum_ext_ok == 0) return;
  std::printf("    %stx fault, %srx loss, %s, Diag mon type %d\n", no_unless(state.tx_fault), no_unless(state.rx_loss),
              state.sync_state != 0 ? "in sync state" : "no sync exists", state.diag_mon_type);
}

void print_answer(if_index_t if_index, reader answer) {
  const auto port = read_first_port(&answer);
  if (!port) return;
  if (port->if_index != if_index) {
    std::printf("Xcvr misc info received for wrong ifindex 0x%x.\n", port->if_index);
  } else if (port->status != 0) {
    std::printf("Error (0x%x)%s in Xcvr misc info response.\n", static_cast<uint32>(port->status),
                system_error_text(port->status));
  } else if (const auto state = find_state(&answer, port->num_entries)) {
    print_state(*state);
  }
}

}  // namespace

syserr_t print_transceiver_state(mts_q_handle_t q, if_index_t if_index) {
  uint32 node = 0;
  if (idxmap_node_by_if_index(if_index, &node) != 0) {
    std::printf("IDX lookup error for ifindex 0x%x.\n", if_index);
    return kFailed;
  }
  port_misc_info_req_t request{0, 1, if_index, 1, {MISC_INFO_TRANSCEIVER_STATE}};
  message answer(q);
  const auto result = exchange(
      q, {{node, MTS_SAP_PORT_MISC_INFO}, MTS_OPC_PORT_MISC_INFO, &request, sizeof request, kPortManagerTimeout},
      &answer);
  if (result == exchange_result::not_sent) {
    std::puts("MTS send failed for xcvr misc info.");
    return kFailed;
  }
  if (result == exchange_result::not_received) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q));
    return kFailed;
  }
  if (mts_is_reject(answer.ref())) return kFailed;
  print_answer(if_index, reader(mts_payload_get(answer.ref()), mts_payload_size(answer.ref())));
  if (answer.drop() == 0) return 0;
  std::puts("error: in dropping message");
  return kFailed;
}

}  // namespace pmcli
