#include <algorithm>
#include <cstring>
#include <string_view>

#include "messages/card_config_messages.h"
#include "service/answers.h"
#include "service/services.h"

namespace host {
namespace {

uint8 yes_no(bool yes) { return yes ? 1 : 0; }

template <std::size_t Size>
void copy_text(std::string_view text, char (&to)[Size]) {
  std::memcpy(to, text.data(), std::min(text.size(), Size));
}

crdcfg_port_cap_t capability_record(const port_capabilities& port) {
  crdcfg_port_cap_t record{};
  record.speed = static_cast<uint8>(port.speeds.value_or(0));  // those that its byte has
  record.duplex = port.duplexes.value_or(0);
  record.trunk_encap = yes_no(port.trunk_encapsulation);
  record.channel = yes_no(port.channel);
  record.suppression = yes_no(port.suppression);
  record.rx_flowcontrol = port.rx_flow_control.value_or(0);
  record.tx_flowcontrol = port.tx_flow_control.value_or(0);
  record.cos_rewrite = yes_no(port.cos_rewrite);
  record.tos_rewrite = yes_no(port.tos_rewrite);
  record.span = yes_no(port.span);
  record.udld = yes_no(port.udld);
  record.link_debounce = yes_no(port.debounce);
  record.link_debounce_time = yes_no(port.debounce);
  record.fcot_capable = yes_no(port.transceiver);
  record.rate_mode = port.rate_modes.value_or(0);
  record.mdix = yes_no(port.mdix);
  const auto qos = port.qos.value_or(port_capabilities::qos_scheduling{});
  record.rx_qos_priority = qos.rx_priorities;
  record.rx_qos_queue = qos.rx_queues;
  record.rx_qos_threshold = qos.rx_thresholds;
  record.tx_qos_priority = qos.tx_priorities;
  record.tx_qos_queue = qos.tx_queues;
  record.tx_qos_threshold = qos.tx_thresholds;
  copy_text(port.model, record.model);
  copy_text(port.type, record.type);
  return record;
}

reply answer_capability(std::span<const std::byte> bytes) {
  const auto request = read_request<range_request>(bytes);
  if (!request) return reject();
  const auto [error, interfaces] = find_range(*request);
  if (error != 0) return answer_error(error);
  the_source().complete(interfaces.front(), detail::driver);
  the_source().complete(interfaces.front(), detail::module);
  return answer_record(capability_record(interfaces.front().capabilities));
}

}  // namespace

reply serve_card_config(mts_opc_t opcode, std::span<const std::byte> request) {
  return opcode == CRDCFG_OPC_PORT_CAPABILITY ? answer_capability(request) : reject_opcode();
}

}  // namespace host
