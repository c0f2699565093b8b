#include "service/port_record.h"

#include <algorithm>
#include <cstring>

#include "base/vsan_access.h"
#include "platform/syserr.h"

namespace host {
namespace {

// On and off in most attributes of the port manager.
enum : uint8 { kOn = 1, kOff = 2 };
// Trunking mode uses the opposite numbers.
enum : uint8 { kTrunkingOff = 1, kTrunkingOn = 2 };
enum : uint8 { kPortReserved = 1, kPortUnreserved = 2 };
enum : uint32 { kPortTypeExternal = 1 };

// First byte of a world-wide name that is made of a MAC address (network address authority 2).
constexpr uint8 kWwnOfMac = 0x20;

constexpr uint32 kMicrosecondsPerDelayUnit = 10;

constexpr uint8 on_off(bool on) { return on ? kOn : kOff; }

uint8 trunking_mode(uint32 port_mode) { return is_trunking_mode(port_mode) ? kTrunkingOn : kTrunkingOff; }

uint32 port_number(const interface& port) {
  uint32 number = 0;
  if_index_get_port(port.if_index, &number);
  return number;
}

void fill_identity(const interface& port, pm_port_info_t& record) {
  record.if_index = port.if_index;
  record.status = port.record_error;
  std::memcpy(record.port_name, port.settings.description.data(),
              std::min(port.settings.description.size(), sizeof record.port_name));
  record.phy_port_index = static_cast<uint16>(port_number(port));
  record.phy_port_layer = port.fc_layer;
  record.port_type = kPortTypeExternal;
  record.port_wwn[0] = kWwnOfMac;
  std::copy(port.burned_in_mac.begin(), port.burned_in_mac.end(), record.port_wwn + PM_WWN_BYTES - PM_MAC_BYTES);
  std::copy(port.router_mac.begin(), port.router_mac.end(), record.router_mac);
}

void fill_configured(const interface& port, pm_port_info_t& record) {
  record.admin_port_mode = port.settings.admin_mode;
  record.admin_port_speed = port.settings.admin_speed_mbps;
  record.admin_port_flow_ctrl = port.settings.admin_flow_control.value_or(0);
  record.admin_port_state = port.settings.admin_state;
  record.admin_trunking_mode =
      port.settings.trunking_mode != 0 ? port.settings.trunking_mode : trunking_mode(port.settings.admin_mode);
  record.admin_beacon_mode = on_off(port.settings.beacon_on);
  record.admin_port_encap = port.settings.encapsulation;
  record.admin_port_link_debounce = port.debounce_ms.value_or(0);
  record.admin_rxbufsize = port.settings.mtu_bytes.value_or(0);
  record.snmp_link_up_down_trap_enable = kOn;
  record.admin_port_promiscuous_mode = port.settings.promiscuous_mode;
  record.admin_rxbbcredit = port.settings.receive_credit;
  record.admin_rxbuf_performance_buffers = port.settings.performance_buffers;
  record.admin_port_auto_negotiate = on_off(port.settings.admin_speed_mbps == 0);
  record.admin_port_duplex = port.settings.admin_duplex;
  record.admin_port_rate_mode = port.rate_mode.value_or(0);
  record.service_state = port.settings.service_state;
  record.admin_port_delay = port.delay_usec.value_or(0) / kMicrosecondsPerDelayUnit;
  record.admin_port_bandwidth = port.bandwidth_kbps.value_or(0);
  record.admin_si_vlan_id = port.encapsulation_vlan;
  record.admin_mdix_mode = static_cast<uint16>(port.mdix_on.value_or(false) ? PM_PORT_MDIX_ON : 0);
  record.span_mode = port.settings.span_monitor.value_or(0) != 0 ? 1 : 0;
  record.bound_ifindex = port.bound_to;
  record.vfc_bind_data.vfc_eth_ifindex = port.bound_to;
  record.admin_port_reserve_state = kPortUnreserved;
  const interface::storm_levels storm = port.storm_control.value_or(interface::storm_levels{});
  for (std::size_t i = 0; i < storm.size(); ++i)
    record.admin_port_storm_control[i] = {storm[i].mode, storm[i].percent, storm[i].hundredths};
}

void fill_operational(const interface& port, pm_port_info_t& record) {
  record.oper_port_mode = port.oper_mode.value_or(0);
  record.oper_port_speed = port.oper_speed_mbps.value_or(0);
  record.oper_port_flow_ctrl = port.oper_flow_control.value_or(0);
  record.oper_port_state = port.oper_state;
  record.oper_state_reason = port.state_reason;
  record.oper_trunking_mode = trunking_mode(port.oper_mode.value_or(0));
  record.oper_phy_port_enable_state = port.settings.admin_state == PM_PORT_STATE_UP ? 1 : 0;
  record.oper_port_duplex = port.oper_duplex.value_or(0);
  record.oper_port_rate_mode = port.rate_mode.value_or(0);
  record.reset_cntr = port.resets.value_or(0);
  record.is_part_of_bundle = port.settings.channel != 0 ? 1 : 0;
  record.bundle_if_index = port.settings.channel;
  record.link_status_last_change_sec = port.link_change_sec.value_or(0);
  record.not_first_time_port_bringup = port.link_change_sec.value_or(0) != 0 ? 1 : 0;
  record.is_fcot_present = port.module_in_port ? 1 : 0;
  record.sfp_initializing_state = port.module_in_port && port.module_in_port->is_initializing ? 1 : 0;
  record.port_vsan = port.vsan;
  record.cfg_port_vsan = port.vsan;
  record.oper_port_vsan = port.vsan;
}

// Copies the image up to the trailer, which is the port manager's own.
void copy_image(const transceiver& module, void* image, std::size_t trailer_offset) {
  if (!module.eeprom.empty()) std::memcpy(image, module.eeprom.data(), std::min(module.eeprom.size(), trailer_offset));
}

void fill_sfp(const interface& port, lc_fcot_info_t& info) {
  copy_image(*port.module_in_port, &info, offsetof(lc_fcot_info_t, maxSpeed));
  info.maxSpeed = fastest_mbps(port.capabilities.speeds.value_or(0));
  info.minSpeed = slowest_mbps(port.capabilities.speeds.value_or(0));
  info.fcotNum = static_cast<port_num_t>(port_number(port));
  info.fcotType = port.module_in_port->type;
  info.gigaEthCC = info.xcvrCode[3];
}

void fill_x2(const interface& port, lc_fcot_x2_info_t& info) {
  copy_image(*port.module_in_port, &info, offsetof(lc_fcot_x2_info_t, max_speed));
  info.max_speed = fastest_mbps(port.capabilities.speeds.value_or(0));
  info.min_speed = slowest_mbps(port.capabilities.speeds.value_or(0));
  info.fcot_num = static_cast<port_num_t>(port_number(port));
  info.fcot_type = port.module_in_port->type;
  info.giga_eth_cc = info.xg_eth_code[0];
}

constexpr uint8 kPresentNotSupported = 2;

}  // namespace

pm_port_info_t port_record(const interface& port) {
  pm_port_info_t record{};
  fill_identity(port, record);
  fill_configured(port, record);
  fill_operational(port, record);
  return record;
}

pm_fcot_res_t transceiver_record(const interface& port) {
  pm_fcot_res_t record;
  std::memset(&record, 0, sizeof record);  // all of it, the rest of the union too
  record.if_index = port.if_index;
  if (!port.module_in_port) {
    record.status = PM_ERR_NO_TRANSCEIVER;
    return record;
  }
  const transceiver& module = *port.module_in_port;
  record.is_fcot_supported = module.supported ? uint8{FCOT_SUPPORTED} : kPresentNotSupported;
  record.fcot_type = module.type;
  if (module.type == FCOT_TYPE_X2)
    fill_x2(port, record.fi.x2_fcot_info);
  else
    fill_sfp(port, record.fi.fcot_info);
  return record;
}

}  // namespace host
