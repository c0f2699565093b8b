#include "pm/port_attributes.h"

#include <cstdio>
#include <cstring>
#include <span>

char local_temp_string_buffer[200];

namespace {

struct attribute_text {
  uint32 value;
  const char* text;
};

using attribute_texts = std::span<const attribute_text>;

// The first match wins.
constexpr attribute_text kPortModes[] = {
    {0xFFFF, "ALL"},
    {0xFFFB, "Not E"},
    {0xFE3F, "Not FL"},
    {PM_PORT_MODE_FX, "FX"},
    {PM_PORT_MODE_AUTO, "auto"},
    {PM_PORT_MODE_SD, "SD"},
    {PM_PORT_MODE_ST, "ST"},
    {PM_PORT_MODE_E, "E"},
    {PM_PORT_MODE_TE, "TE"},
    {PM_PORT_MODE_TL, "TL"},
    {PM_PORT_MODE_F, "F"},
    {PM_PORT_MODE_FL, "FL"},  // the three loop modes share one text
    {0x80, "FL"},
    {0x100, "FL"},
    {PM_PORT_MODE_IPS, "IPS"},
    {PM_PORT_MODE_ISCSI, "ISCSI"},
    {0x80000, "FA"},
    {PM_PORT_MODE_ACCESS, "access"},  // has the value of FA and is never reached: an access port shows as "FA"
    {PM_PORT_MODE_NP, "NP"},
    {PM_PORT_MODE_TRUNK, "trunk"},
    {PM_PORT_MODE_PVLAN_HOST, "private-vlan host"},
    {PM_PORT_MODE_PVLAN_PROMISCUOUS, "private-vlan promiscuous"},
    {PM_PORT_MODE_FABRIC, "fabric"},
    {PM_PORT_MODE_TNP, "TNP"},
    {PM_PORT_MODE_TF, "TF"},
};

constexpr attribute_text kServiceStates[] = {{0, "in service"}, {1, "out of service"}};
constexpr attribute_text kPortTypes[] = {{1, "external"}, {2, "internal"}, {3, "hidden"}};
constexpr attribute_text kOnOff[] = {{1, "on"}, {2, "off"}};
constexpr attribute_text kReserveStates[] = {{1, "reserved"}, {2, "unreserved"}};
constexpr attribute_text kFlowControlModes[] = {{1, "on"}, {2, "on"}, {4, "desired"}, {8, "desired"}};
constexpr attribute_text kRateModes[] = {{1, "dedicated"}, {2, "shared"}, {3, "default"}};
constexpr attribute_text kIgnoreParams[] = {{1, "bit error on"}, {2, "bit error off"}};
constexpr attribute_text kTrunkingModes[] = {{1, "off"}, {2, "on"}, {3, "auto"}};  // 1 is off here, on purpose
constexpr attribute_text kEncapsulations[] = {{1, "normal"}, {2, "eisl"}, {3, "internal"}};
constexpr attribute_text kTrackModes[] = {{0, "operationally-bound"}, {1, "force_shut"}};
constexpr attribute_text kDownOnLinkFailure[] = {{3, "enabled"}, {4, "disabled"}};
constexpr attribute_text kDelayedTrapStates[] = {{2, "FX"}, {1, "disabled"}};  // "FX" is intended

// Spelled so.
constexpr attribute_text kPromiscuousModes[] = {{1, "promiscuos mode on"}, {2, "promiscuos mode off"}};
constexpr attribute_text kAutoNegotiation[] = {{1, "auto-negotiate on"}, {2, "auto-negotiate off"}};

// Mbit/s, with the special codes, as Gbit/s. All other speeds are divided.
constexpr attribute_text kSpeeds[] = {
    {0, "auto"},       {1, "auto max 2"}, {10, "0.01"}, {100, "0.1"},
    {1000, "1"},       {2000, "2"},       {4000, "4"},  {0xFFFFFFFF, "--"},  // not known
    {2, "auto max 4"},
};

const char* text_or(attribute_texts texts, uint32 value, const char* fallback) {
  for (const attribute_text& entry : texts)
    if (entry.value == value) return entry.text;
  return fallback;
}

const char* text_or_unknown(attribute_texts texts, uint32 value) {
  if (const char* const text = text_or(texts, value, nullptr)) return text;
  std::memset(local_temp_string_buffer, 0, sizeof local_temp_string_buffer);
  std::snprintf(local_temp_string_buffer, 75, "Unknown(%d)", static_cast<int32>(value));
  return local_temp_string_buffer;
}

// A number, or "default" for the value that means it.
char* number_or_default(uint32 number, uint32 default_value, char* buf, size_t size) {
  if (number == default_value)
    std::snprintf(buf, size, "%s", "default");
  else
    std::snprintf(buf, size, "%d", static_cast<int32>(number));
  return buf;
}

// Flags of receive credits: the port mode they are meant for.
constexpr uint32 kCreditModeE = 0x40000000;
constexpr uint32 kCreditModeFx = 0x80000000;

}  // namespace

const char* port_mode_string(pm_port_mode_t port_mode) { return text_or_unknown(kPortModes, port_mode); }

const char* port_service_state_string(pm_port_service_state_t service_state) {
  return text_or_unknown(kServiceStates, service_state);
}

const char* port_type_string(pm_port_type_t port_type) { return text_or_unknown(kPortTypes, port_type); }

const char* port_beacon_mode_string(pm_port_beacon_mode_t beacon_mode) { return text_or_unknown(kOnOff, beacon_mode); }

const char* port_bb_scn_cfg_string(pm_port_bb_scn_cfg_t bb_scn_cfg) { return text_or_unknown(kOnOff, bb_scn_cfg); }

const char* port_promiscuous_string(pm_port_promiscuous_mode_t promiscuous_mode) {
  return text_or_unknown(kOnOff, promiscuous_mode);
}

const char* port_auto_neg_string(pm_gige_auto_negotiate_t auto_negotiate) {
  return text_or_unknown(kOnOff, auto_negotiate);
}

const char* port_snmp_trap_string(pm_port_snmp_trap_state_t trap_state) { return text_or_unknown(kOnOff, trap_state); }

const char* port_reserve_state_string(pm_port_reserve_state_t reserve_state) {
  return text_or_unknown(kReserveStates, reserve_state);
}

const char* port_flowctrl_mode_string(port_flow_ctrl_t flow) { return text_or(kFlowControlModes, flow, "off"); }

const char* port_rate_mode_string(pm_port_rate_mode_t rate_mode) { return text_or_unknown(kRateModes, rate_mode); }

const char* port_ignore_param_string(pm_port_ignore_t ignore) { return text_or_unknown(kIgnoreParams, ignore); }

const char* port_trunking_mode_string(pm_port_trunking_mode_t trunking_mode) {
  return text_or_unknown(kTrunkingModes, trunking_mode);
}

const char* port_encap_string(pm_port_encap_t encap) { return text_or(kEncapsulations, encap, "unknown"); }

const char* port_track_mode_string(pm_port_track_mode_t track_mode) { return text_or(kTrackModes, track_mode, ""); }

const char* port_down_on_link_failure_string(pm_port_sticky_down_link_failure_t setting) {
  return text_or_unknown(kDownOnLinkFailure, setting);
}

const char* pm_delayed_trap_state_string(pm_delayed_trap_state_t trap_state) {
  return text_or(kDelayedTrapStates, trap_state, "unknown");
}

char* port_bb_credit_string(pm_b2b_credit_t port_bb_credit, char* buf) {
  constexpr size_t kSize = 80;
  if ((port_bb_credit & kCreditModeE) != 0)
    std::snprintf(buf, kSize, "%d (mode E)", static_cast<int32>(port_bb_credit & ~kCreditModeE));
  else if ((port_bb_credit & kCreditModeFx) != 0)
    std::snprintf(buf, kSize, "%d (mode Fx)", static_cast<int32>(port_bb_credit & ~kCreditModeFx));
  else
    number_or_default(port_bb_credit, 0, buf, kSize);
  return buf;
}

char* port_bb_credit_multiplier_string(pm_b2b_credit_multiplier_t multiplier, char* buf) {
  return number_or_default(multiplier, 0xFFFFFFFF, buf, 20);
}

char* port_bb_credit_performance_buf_string(pm_b2b_performance_buffer_t performance_buffers, char* buf) {
  return number_or_default(performance_buffers, 0, buf, 20);
}

char* port_ec_bb_credit_string(pm_b2b_credit_t port_bb_credit, char* buf) {
  return number_or_default(port_bb_credit, 0, buf, 40);
}

char* port_rxbufsize_string(pm_b2b_recv_data_fld_size_t rxbufsize, char* buf) {
  std::snprintf(buf, 20, "%d", rxbufsize);
  return buf;
}

char* port_speed_string_gbps(pm_port_speed_t port_speed, char* buf) {
  if (const char* const text = text_or(kSpeeds, port_speed, nullptr))
    std::snprintf(buf, 80, "%s", text);
  else
    std::snprintf(buf, 80, "%d", static_cast<int32>(port_speed) / 1000);
  return buf;
}

char* port_promiscuous_mode_string(pm_port_promiscuous_mode_t promiscuous_mode, char* buf) {
  std::snprintf(buf, 50, "%s", text_or(kPromiscuousModes, promiscuous_mode, "promiscuos mode unknown"));
  return buf;
}

char* port_auto_negotiate_string(pm_gige_auto_negotiate_t auto_negotiate, char* buf) {
  std::snprintf(buf, 50, "%s", text_or(kAutoNegotiation, auto_negotiate, "auto-negotiate unknown"));
  return buf;
}
