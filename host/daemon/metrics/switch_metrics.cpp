#include "daemon/metrics/switch_metrics.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>

#include "daemon/metrics/request_times.h"
#include "messages/fields.h"
#include "messages/interface_values.h"
#include "messages/messages.h"
#include "messages/property_fields.h"
#include "messages/switch_messages.h"
#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "service/services.h"
#include "switch/clock.h"
#include "switch/optics.h"
#include "switch/source.h"

namespace host {
namespace {

// ---- Names and units ------------------------------------------------------------------------------------------------

// The unit at the end of a field's key, and the one of metrics for it.
struct unit_conversion {
  std::string_view of_key;
  std::string_view of_metric;
  uint64 factor = 1;
};
constexpr unit_conversion kUnits[] = {
    {"mbps", "bytes_per_second", 125'000},
    {"c", "celsius"},
    {"v", "volts"},
    {"ma", "amperes"},
    {"dbm", "dbm"},
    {"bytes", "bytes"},
    {"packets", "packets"},
    {"frames", "frames"},
};
constexpr unit_conversion kNoUnit = {{}, {}};

const unit_conversion& unit_of_key(std::string_view key) {
  const std::string_view last = key.substr(key.rfind('_') + 1);
  const auto* const found =
      std::find_if(std::begin(kUnits), std::end(kUnits), [last](const auto& it) { return it.of_key == last; });
  return found == std::end(kUnits) ? kNoUnit : *found;
}

// What a field says about absent values is not for metrics, which have none.
std::string_view help_of(const field& of) { return of.description.substr(0, of.description.find("; null")); }

// The family of a field. `word` follows its name, before the unit.
metric_family family_of(std::string_view prefix, const field& of, metric_type type, std::string_view word = {}) {
  const unit_conversion& unit = unit_of_key(of.name);
  metric_family made{std::string(prefix), type, std::string(unit.of_metric), std::string(help_of(of))};
  made.name += of.name.substr(0, of.name.size() - unit.of_key.size());
  if (made.name.ends_with('_')) made.name.pop_back();
  if (!word.empty()) made.name.append("_").append(word);
  if (!made.unit.empty()) made.name.append("_").append(made.unit);
  return made;
}

constexpr std::string_view kOfInterfaces = "pmshd_interface_";
constexpr std::string_view kOfTransceivers = "pmshd_transceiver_";

// ---- Interfaces -----------------------------------------------------------------------------------------------------

// A value of each interface: that of its property, or of a member of the model that is no property.
struct interface_metric {
  property of = property::none;
  metric_type type = metric_type::counter;
  counter (*read)(const interface& port) = nullptr;  // null: the service of interface values does
  std::string_view name = {};                        // empty: name and help are those of the field
  std::string_view help = {};
};

counter is_enabled(const interface& port) { return port.settings.admin_state == PM_PORT_STATE_UP ? 1 : 0; }
counter is_up(const interface& port) { return port.oper_state == PM_PORT_STATE_UP ? 1 : 0; }

// Simulated switches have the changes themselves.
counter count_link_changes(const interface& port) {
  if (port.num_link_changes) return *port.num_link_changes;
  return the_source().knows_all_fields() ? counter(port.link_changes.size()) : counter();
}

constexpr auto kGauge = metric_type::gauge;
constexpr auto kCounter = metric_type::counter;

constexpr interface_metric kInterfaceMetrics[] = {
    {property::none, kGauge, is_enabled, "admin_up", "Whether the interface is enabled: 1, or shut down: 0"},
    {property::none, kGauge, is_up, "oper_up", "Whether the interface is up: 1, or not: 0"},
    {property::none, kCounter, count_link_changes, "link_changes", "How often the link came up or went down"},
    {property::last_link_flapped, kGauge},
    {property::last_counters_cleared, kGauge},
    {property::speed_mbps, kGauge},
    {property::mtu_bytes, kGauge},

    {property::input_bytes},
    {property::input_packets},
    {property::input_unicast_packets},
    {property::input_multicast_packets},
    {property::input_broadcast_packets},
    {property::output_bytes},
    {property::output_packets},
    {property::output_unicast_packets},
    {property::output_multicast_packets},
    {property::output_broadcast_packets},
    {property::input_pause_frames},
    {property::output_pause_frames},

    {property::input_errors},
    {property::output_errors},
    {property::input_discards},
    {property::output_discards},
    {property::input_crc_errors},
    {property::output_crc_errors},
    {property::runts},
    {property::giants},
    {property::jabbers},
    {property::short_frames},
    {property::ecc_errors},
    {property::ignored_errors},
    {property::no_buffer_errors},
    {property::input_overruns},
    {property::output_underruns},
    {property::input_fifo_errors},
    {property::output_fifo_errors},
    {property::bad_ethertype_drops},
    {property::bad_protocol_drops},
    {property::interface_down_drops},
    {property::bad_encapsulation_errors},
    {property::dribble_errors},
    {property::watchdog_errors},
    {property::symbol_errors},
    {property::storm_suppressed_packets},
    {property::collisions},
    {property::excessive_collisions},
    {property::late_collisions},
    {property::deferred},
    {property::carrier_errors},
    {property::babble_errors},
    {property::output_bpdu_lost},

    {property::tx_fault, kGauge},
    {property::rx_loss, kGauge},
};
constexpr std::size_t kNumColumns = std::size(kInterfaceMetrics);

metric_family family_of(const interface_metric& metric) {
  if (metric.read != nullptr)
    return {std::string(kOfInterfaces).append(metric.name), metric.type, {}, std::string(metric.help)};
  const field& of = field_of(metric.of);
  metric_family made = family_of(metric.of >= property::presence ? kOfTransceivers : kOfInterfaces, of, metric.type);
  if (of.type != field_type::time) return made;
  made.name += "_timestamp_seconds";
  made.unit = "seconds";
  made.help += ", in seconds since 1970";
  return made;
}

struct interface_column {
  metric_family family;
  uint64 factor;  // of a value in the unit of the key
};

const std::array<interface_column, kNumColumns>& interface_columns() {
  static const auto columns = [] {
    std::array<interface_column, kNumColumns> made;
    std::transform(
        std::begin(kInterfaceMetrics), std::end(kInterfaceMetrics), made.begin(), [](const interface_metric& metric) {
          const bool has_field = metric.of != property::none;
          return interface_column{family_of(metric), has_field ? unit_of_key(field_of(metric.of).name).factor : 1};
        });
    return made;
  }();
  return columns;
}

// The columns of properties, which one request asks for in their order.
constexpr bool is_asked(const interface_metric& metric) { return metric.read == nullptr; }

// The request for the values of an interface, whose index is in its head.
std::vector<std::byte>& values_request_bytes() {
  static std::vector<std::byte> request = [] {
    std::vector<property> asked;
    for (const interface_metric& metric : kInterfaceMetrics)
      if (is_asked(metric)) asked.push_back(metric.of);
    return values_request_for(0, asked, false);
  }();
  return request;
}

// ---- Transceivers ---------------------------------------------------------------------------------------------------

struct quantity {
  property of;
  uint32 digits;  // of the model's unit below that of the metric; power is shown in dBm
  bool is_power = false;
};
// The first two are of modules, the others of lanes.
constexpr quantity kQuantities[] = {
    {property::temperature_c, 3},      {property::voltage_v, 6},          {property::current_ma, 6},
    {property::tx_power_dbm, 0, true}, {property::rx_power_dbm, 0, true},
};
constexpr std::size_t kNumOfModule = 2;

// In the order of optical_limits.
constexpr std::string_view kLimitLabels[] = {"limit=\"high_alarm\"", "limit=\"low_alarm\"", "limit=\"high_warning\"",
                                             "limit=\"low_warning\""};

metric_family family_of_limits(const field& of) {
  metric_family made = family_of(kOfTransceivers, of, kGauge, "limit");
  made.help = std::string(of.title).append(": limits of alarms and warnings");
  return made;
}

// Limits that are never exceeded, because the high one is not above the low one, are none.
template <typename Number>
std::array<std::optional<int64_t>, 4> valid_limits(const optical_limits<Number>& limits) {
  std::array<std::optional<int64_t>, 4> valid;
  for (std::size_t high = 0; high < limits.size(); high += 2) {
    if (limits[high] <= limits[high + 1]) continue;
    valid[high] = limits[high];
    valid[high + 1] = limits[high + 1];
  }
  return valid;
}

// What follows the head of an answer.
std::span<const std::byte> body_of(const reply& answer) {
  return std::span(answer.payload).subspan(std::min(answer.payload.size(), sizeof(reply_head)));
}

// Without light there is no power in dBm.
void write_quantity(const quantity& of, std::string_view labels, int64_t value, std::string_view more_labels,
                    exposition& to) {
  if (!of.is_power) return to.decimal(labels, value, of.digits, more_labels);
  const std::string power = in_dbm(static_cast<uint32>(value));
  if (!power.empty()) to.text(labels, power, more_labels);
}

}  // namespace

std::string refresh_for_metrics() {
  const std::byte everything[] = {static_cast<std::byte>(switch_part::everything)};
  const reply answer = serve_switch(SWITCH_OPC_REFRESH, everything);
  field_reader fields(body_of(answer));
  const std::string_view fault = fields.text();
  return std::string(fields.has_failed() ? "its service refused" : fault);
}

void switch_metrics::write(const daemon_facts& facts, exposition_format format, std::string& to) {
  switch_label_.clear();
  append_label(switch_label_, "switch", facts.switch_name);
  read(the_machine());

  constexpr std::size_t kSampleBytes = 100;  // mostly less
  to.clear();
  to.reserve(values_.size() * kSampleBytes);
  exposition text(format, to);
  write_daemon(facts, text);
  write_interfaces(text);
  write_modules(text);
  text.finish();
}

void switch_metrics::read(machine& of) {
  labels_.clear();
  label_ends_.clear();
  modules_.clear();
  lanes_.clear();
  values_.assign(of.interfaces.size() * kNumColumns, counter());
  for (std::size_t place = 0; place < of.interfaces.size(); ++place) {
    interface& port = of.interfaces[place];
    char name[64] = "";
    snprintf_if_index(name, sizeof name, port.if_index);
    std::string own = switch_label_;
    append_label(own, "interface", name);
    labels_ += own;
    label_ends_.push_back(labels_.size());
    read_interface(place, port);
    read_module(place, port);
  }
}

// Also updates the statistics of the interface and its module.
void switch_metrics::read_interface(std::size_t place, interface& port) {
  const be32 if_index = port.if_index;
  std::vector<std::byte>& request = values_request_bytes();
  std::memcpy(request.data() + offsetof(values_request, if_index), &if_index, sizeof if_index);
  const reply answer = serve_interface_values(VALUES_OPC_INTERFACE, request);
  const auto values = read_values(body_of(answer)).value_or(std::vector<interface_value>());
  std::size_t next = 0;
  for (std::size_t column = 0; column < kNumColumns; ++column) {
    const interface_metric& metric = kInterfaceMetrics[column];
    counter& to = values_[place * kNumColumns + column];
    if (!is_asked(metric)) {
      to = metric.read(port);
    } else if (next < values.size()) {
      const interface_value& value = values[next++];
      if (value.kind != value_kind::absent) to = value.number() * interface_columns()[column].factor;
    }
  }
}

void switch_metrics::read_module(std::size_t place, const interface& port) {
  const optical_diagnostics* const module = reported_diagnostics(port);
  if (module == nullptr) return;
  const optical_reading reading = read_optics(port, static_cast<uint32>(clock_now()));
  module_values& values = modules_.emplace_back();
  values.port = place;
  values.measured = {reading.temperature_mc, reading.voltage_uv};
  values.limits = {valid_limits(module->temperature_limits_mc), valid_limits(module->voltage_limits_uv),
                   valid_limits(module->bias_limits_ua), valid_limits(module->tx_limits_uw),
                   valid_limits(module->rx_limits_uw)};
  values.first_lane = lanes_.size();
  if (module->lanes.empty()) lanes_.push_back({reading.bias_ua, reading.tx_uw, reading.rx_uw});
  for (const optical_lane& lane : module->lanes) lanes_.push_back({lane.bias_ua, lane.tx_uw, lane.rx_uw});
  values.num_lanes = lanes_.size() - values.first_lane;
}

void switch_metrics::write_daemon(const daemon_facts& facts, exposition& to) const {
  static const metric_family kBuild = {"pmshd_build", metric_type::info, {}, "Version of the daemon"};
  static const metric_family kSessions = {"pmshd_sessions", kGauge, {}, "Shells that are connected"};
  static const metric_family kClock = {"pmshd_clock_timestamp_seconds", kGauge, "seconds",
                                       "Time of the switch's clock, in seconds since 1970"};
  std::string version;
  append_label(version, "version", facts.program_version);
  to.begin(kBuild);
  to.number(switch_label_, 1, version);
  to.begin(kSessions);
  to.number(switch_label_, facts.num_sessions);
  to.begin(kClock);
  to.number(switch_label_, static_cast<uint64>(clock_now()));
  the_request_times().write(switch_label_, to);
}

void switch_metrics::write_interfaces(exposition& to) const {
  for (std::size_t column = 0; column < kNumColumns; ++column) {
    to.begin(interface_columns()[column].family);
    for (std::size_t place = 0; place < label_ends_.size(); ++place)
      if (const counter value = values_[place * kNumColumns + column]) to.number(labels_of(place), *value);
  }
}

void switch_metrics::write_modules(exposition& to) const {
  for (std::size_t i = 0; i < std::size(kQuantities); ++i) {
    const quantity& of = kQuantities[i];
    const field& meaning = field_of(of.of);
    const metric_family measured = family_of(kOfTransceivers, meaning, kGauge);
    to.begin(measured);
    for (const module_values& module : modules_) {
      const std::string_view labels = labels_of(module.port);
      if (i < kNumOfModule) write_quantity(of, labels, module.measured[i], {}, to);
      for (std::size_t lane = 0; i >= kNumOfModule && lane < module.num_lanes; ++lane) {
        std::string number;
        append_label(number, "lane", std::to_string(lane + 1));
        write_quantity(of, labels, lanes_[module.first_lane + lane][i - kNumOfModule], number, to);
      }
    }
    const metric_family limits = family_of_limits(meaning);
    to.begin(limits);
    for (const module_values& module : modules_)
      for (std::size_t limit = 0; limit < std::size(kLimitLabels); ++limit)
        if (module.limits[i][limit])
          write_quantity(of, labels_of(module.port), *module.limits[i][limit], kLimitLabels[limit], to);
  }
}

std::string_view switch_metrics::labels_of(std::size_t place) const {
  const std::size_t begin = place == 0 ? 0 : label_ends_[place - 1];
  return std::string_view(labels_).substr(begin, label_ends_[place] - begin);
}

}  // namespace host
