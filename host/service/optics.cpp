#include "service/optics.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "messages/port_manager_messages.h"
#include "platform/misc_info.h"
#include "platform/port_manager.h"
#include "service/answers.h"
#include "service/services.h"
#include "switch/clock.h"

namespace host {
namespace {

// ---- Diagnostics ----------------------------------------------------------------------------------------------------

using diagnostics_t = mts_get_sfp_diag_info_t;

void fill_limits(const optical_diagnostics& module, diagnostics_t& to) {
  const auto put = [](const auto& limits, auto& high_alarm, auto& low_alarm, auto& high_warning, auto& low_warning) {
    high_alarm = limits[0];
    low_alarm = limits[1];
    high_warning = limits[2];
    low_warning = limits[3];
  };
  put(module.temperature_limits_mc, to.temp_hi_alarm, to.temp_lo_alarm, to.temp_hi_warn, to.temp_lo_warn);
  put(module.voltage_limits_uv, to.volt_hi_alarm, to.volt_lo_alarm, to.volt_hi_warn, to.volt_lo_warn);
  put(module.bias_limits_ua, to.current_hi_alarm, to.current_lo_alarm, to.current_hi_warn, to.current_lo_warn);
  put(module.tx_limits_uw, to.tx_pwr_hi_alarm, to.tx_pwr_lo_alarm, to.tx_pwr_hi_warn, to.tx_pwr_lo_warn);
  put(module.rx_limits_uw, to.rx_pwr_hi_alarm, to.rx_pwr_lo_alarm, to.rx_pwr_hi_warn, to.rx_pwr_lo_warn);
}

void fill_constants(const optical_constants& constants, diagnostics_t& to) {
  to.calib_temp_slope = constants.temperature_slope;
  to.calib_temp_offset = constants.temperature_offset;
  to.calib_volt_slope = constants.voltage_slope;
  to.calib_volt_offset = constants.voltage_offset;
  to.calib_current_slope = constants.bias_slope;
  to.calib_current_offset = constants.bias_offset;
  to.calib_tx_pwr_slope = constants.tx_slope;
  to.calib_tx_pwr_offset = constants.tx_offset;
  to.calib_rx_pwr_4 = constants.rx[0];
  to.calib_rx_pwr_3 = constants.rx[1];
  to.calib_rx_pwr_2 = constants.rx[2];
  to.calib_rx_pwr_1 = constants.rx[3];
  to.calib_rx_pwr_0 = constants.rx[4];
}

void fill_reading(const optical_reading& reading, diagnostics_t& to) {
  to.temp = reading.temperature_mc;
  to.volt = reading.voltage_uv;
  to.curr = reading.bias_ua;
  to.tx_pwr = reading.tx_uw;
  to.rx_pwr = reading.rx_uw;
  to.alarm_flags = reading.alarms;
  to.warn_flags = reading.warnings;
}

// ---- Run-time state -------------------------------------------------------------------------------------------------

// Whether the byte at `at` is the sum of those from `from` up to it. Missing bytes are 0.
uint8 is_sum_right(const std::vector<uint8>& page, std::size_t from, std::size_t at) {
  const auto byte = [&page](std::size_t place) { return place < page.size() ? page[place] : uint8{0}; };
  uint8 sum = 0;
  for (std::size_t place = from; place < at; ++place) sum = static_cast<uint8>(sum + byte(place));
  return sum == byte(at) ? 1 : 0;
}

// One port, one entry: the state. Its layout is the line card's own.
reply answer_misc_info(std::span<const std::byte> bytes) {
  const auto request = read_request<port_misc_info_req_t>(bytes);
  if (!request || request->num_ports != 1 || request->num_type != 1) return reject();
  interface* const port = the_machine().find(request->if_index);
  if (port != nullptr) the_source().complete(*port, detail::diagnostics);
  const bool is_known = port != nullptr && request->type_list[0] == MISC_INFO_TRANSCEIVER_STATE;
  reply answer;
  append_bytes(answer, port_misc_info_rsp_t{request->port_misc_info_fsm_flag, 1});
  append_bytes(answer, port_misc_info_port_t{request->if_index, port != nullptr ? 0 : int32{PM_ERR_NO_SUCH_INTERFACE},
                                             static_cast<uint16>(is_known ? 1 : 0)});
  if (!is_known) return answer;
  append_bytes(answer, port_misc_info_entry_t{MISC_INFO_TRANSCEIVER_STATE, sizeof(port_xcvr_info_t)});
  append_bytes(answer, transceiver_state(*port));
  return answer;
}

}  // namespace

port_xcvr_info_t transceiver_state(const interface& port) {
  constexpr std::size_t kMonitoringType = 92;
  port_xcvr_info_t state{};
  if (!port.module_in_port) {
    state.op_status = 1;
    return state;
  }
  const transceiver& module = *port.module_in_port;
  const bool has_link = port.oper_state == PM_PORT_STATE_UP;
  const bool is_sfp = module.type != FCOT_TYPE_X2;
  state.xcvr_present = 1;
  state.rx_loss = module.has_rx_loss.value_or(!has_link) ? 1 : 0;
  state.tx_fault = module.has_tx_fault ? 1 : 0;
  state.sync_state = has_link ? 1 : 0;
  state.read_ok = 1;
  state.csum_base_ok = is_sfp ? is_sum_right(module.eeprom, 0, 63) : uint8{1};
  state.csum_ext_ok = is_sfp ? is_sum_right(module.eeprom, 64, 95) : uint8{1};
  state.diag_mon_type = is_sfp && module.eeprom.size() > kMonitoringType ? module.eeprom[kMonitoringType] : uint8{0};
  return state;
}

reply answer_diagnostics(interface& port) {
  the_source().complete(port, detail::diagnostics);
  if (!port.module_in_port) return answer_error(PM_ERR_SFP_NOT_PRESENT);
  const transceiver& module = *port.module_in_port;
  if (module.diagnostics.calibration == 0) return answer_error(PM_ERR_SFP_NO_DIAGNOSTICS);
  if (module.is_initializing || module.diagnostics.is_silent) return answer_error(PM_ERR_SFP_NO_INFORMATION);
  sfp_diagnostics record{};
  record.values.if_index = port.if_index;
  record.values.calib_type = module.diagnostics.calibration;
  fill_reading(read_optics(port, static_cast<uint32>(clock_now())), record.values);
  fill_limits(module.diagnostics, record.values);
  fill_constants(module.diagnostics.constants, record.values);
  record.has_lanes = module.diagnostics.lanes.empty() ? 0 : 1;
  return answer_record(record);
}

namespace {

struct measured_quantity {
  const char* name;
  uint32 high;  // the bit of its high limit
  const char* unit;
};
constexpr measured_quantity kTemperatureQuantity = {"Temperature", kTemperatureHigh, "C"};
constexpr measured_quantity kVoltageQuantity = {"Voltage", kVoltageHigh, "V"};
constexpr measured_quantity kCurrentQuantity = {"Current", kBiasHigh, "mA"};
constexpr measured_quantity kTxQuantity = {"Tx Power", kTxHigh, "dBm"};
constexpr measured_quantity kRxQuantity = {"Rx Power", kRxHigh, "dBm"};

// Appends the violations of a module or a lane.
class violation_writer {
 public:
  violation_writer(row_device device, std::optional<uint32> lane, uint32 alarms, uint32 warnings,
                   std::vector<table_row>& rows)
      : device_(std::move(device)), lane_(lane), alarms_(alarms), warnings_(warnings), rows_(rows) {}

  template <typename Number>
  void add(const measured_quantity& quantity, Number value, const optical_limits<Number>& limits,
           std::string (*text)(Number)) {
    constexpr std::size_t kLimitOfMark[] = {0, 0, 2, 3, 1};
    const uint32 mark = mark_of_bits(alarms_, warnings_, quantity.high);
    if (mark == 0) return;
    rows_.emplace_back(violation_row{device_, lane_, quantity.name, text(value), text(limits[kLimitOfMark[mark]]),
                                     quantity.unit, mark});
  }

 private:
  row_device device_;
  std::optional<uint32> lane_;
  uint32 alarms_, warnings_;
  std::vector<table_row>& rows_;
};

row_device device_of_port(if_index_t if_index) {
  const auto device = the_source().find_device(if_index);
  return device ? row_device{if_index, device->name, device->number} : row_device{if_index, {}, 0};
}

void add_lane(const optical_lane& lane, const optical_diagnostics& module, violation_writer to) {
  to.add(kCurrentQuantity, lane.bias_ua, module.bias_limits_ua, in_milliamperes);
  to.add(kTxQuantity, lane.tx_uw, module.tx_limits_uw, in_dbm);
  to.add(kRxQuantity, lane.rx_uw, module.rx_limits_uw, in_dbm);
}

void add_violations(interface& port, std::vector<table_row>& rows) {
  the_source().complete(port, detail::diagnostics);
  const optical_diagnostics* const reported = reported_diagnostics(port);
  if (reported == nullptr) return;
  const optical_diagnostics& module = *reported;
  const auto now = static_cast<uint32>(clock_now());
  the_source().update_statistics(port, now);
  const optical_reading reading = read_optics(port, now);
  const row_device device = device_of_port(port.if_index);
  violation_writer to(device, std::nullopt, reading.alarms, reading.warnings, rows);
  to.add(kTemperatureQuantity, reading.temperature_mc, module.temperature_limits_mc, in_degrees);
  to.add(kVoltageQuantity, reading.voltage_uv, module.voltage_limits_uv, in_volts);
  if (module.lanes.empty()) return add_lane({reading.bias_ua, reading.tx_uw, reading.rx_uw}, module, to);
  for (std::size_t i = 0; i < module.lanes.size(); ++i) {
    const auto [alarms, warnings] = exceeded_by(module.lanes[i], module);
    add_lane(module.lanes[i], module, {device, static_cast<uint32>(i + 1), alarms, warnings, rows});
  }
}

class violation_reader final : public table_reader {
 public:
  explicit violation_reader(std::vector<if_index_t> interfaces) : interfaces_(std::move(interfaces)) {}

  bool next(std::vector<table_row>& rows) override {
    interface* const port = next_ < interfaces_.size() ? the_machine().find(interfaces_[next_]) : nullptr;
    if (port != nullptr) add_violations(*port, rows);
    return ++next_ < interfaces_.size();
  }

 private:
  std::vector<if_index_t> interfaces_;
  std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<table_reader> read_violations(std::vector<if_index_t> interfaces) {
  if (interfaces.empty())
    for (const interface& port : the_machine().interfaces) interfaces.push_back(port.if_index);
  return std::make_unique<violation_reader>(std::move(interfaces));
}

bool is_whole_line_card_answer(std::span<const std::byte> answer) {
  port_misc_info_port_t port;
  port_misc_info_entry_t entry;
  constexpr std::size_t kHead = sizeof(port_misc_info_rsp_t) + sizeof port;
  if (answer.size() < kHead) return false;
  std::memcpy(&port, answer.data() + sizeof(port_misc_info_rsp_t), sizeof port);
  if (port.num_info == 0) return true;
  if (answer.size() < kHead + sizeof entry) return false;
  std::memcpy(&entry, answer.data() + kHead, sizeof entry);
  return answer.size() >= kHead + sizeof entry + entry.miscinfo_length;
}

reply serve_line_card(mts_opc_t opcode, std::span<const std::byte> request) {
  return opcode == MTS_OPC_PORT_MISC_INFO ? answer_misc_info(request) : reject_opcode();
}

}  // namespace host
