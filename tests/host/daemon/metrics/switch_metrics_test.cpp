// The metrics of a switch of two ports.
#include "daemon/metrics/switch_metrics.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

#include "host/switch/stopped_clock.h"
#include "platform/transceiver.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr uint32 kNow = 1'700'000'000;

// Most counters are unknown.
interface busy_port() {
  interface port;
  port.if_index = ethernet_index(IF_TYPE_ETHERNET, 0, 0);
  port.settings.mtu_bytes = 9216;
  port.oper_state = 1;
  port.oper_speed_mbps = 10'000;
  port.link_change_sec = 1'600'000'000;
  port.link_changes = {{1, 1}, {2, 2}, {1'600'000'000, 1}};
  port.stats.in.bytes = 1000;
  port.stats.in.packets = 0;
  port.stats.out.bytes = UINT64_MAX;
  port.stats.errors.crc = 7;
  port.module_in_port = transceiver{.type = FCOT_TYPE_SFP};
  optical_diagnostics& module = port.module_in_port->diagnostics;
  module.calibration = 1;
  module.is_measured = true;
  module.temperature_mc = 34'500;
  module.voltage_uv = 3'300'000;
  module.rx_limits_uw = {100, 200, 794, 63};  // alarms that nothing causes
  module.lanes = {{6'600, 1'000, 500}, {6'700, 2'000, 0}};
  return port;
}

interface shut_port() {
  interface port;
  port.if_index = ethernet_index(IF_TYPE_ETHERNET, 0, 1);
  port.settings.mtu_bytes = 1500;
  port.settings.admin_state = 2;
  return port;
}

class SwitchMetrics : public testing::Test {
 protected:
  SwitchMetrics() {
    the_machine() = machine();
    the_machine().interfaces = {busy_port(), shut_port()};
    set_source();
  }
  ~SwitchMetrics() override {
    the_machine() = machine();
    set_source();
  }

  // Without the times of requests, of which another test has the text.
  std::string text_in(exposition_format format, const daemon_facts& facts = {"lab", "1.2", 3}) {
    std::string text, shown;
    metrics_.write(facts, format, text);
    for (std::size_t at = 0; at < text.size();) {
      const std::string line = text.substr(at, text.find('\n', at) + 1 - at);
      if (line.find("request_duration") == std::string::npos) shown += line;
      at += line.size();
    }
    return shown;
  }

  stopped_clock clock_{kNow};
  switch_metrics metrics_;
};

constexpr char kExpected[] = R"(# HELP pmshd_build Version of the daemon
# TYPE pmshd_build info
pmshd_build_info{switch="lab",version="1.2"} 1
# HELP pmshd_sessions Shells that are connected
# TYPE pmshd_sessions gauge
pmshd_sessions{switch="lab"} 3
# HELP pmshd_clock_timestamp_seconds Time of the switch's clock, in seconds since 1970
# TYPE pmshd_clock_timestamp_seconds gauge
# UNIT pmshd_clock_timestamp_seconds seconds
pmshd_clock_timestamp_seconds{switch="lab"} 1700000000
# HELP pmshd_interface_admin_up Whether the interface is enabled: 1, or shut down: 0
# TYPE pmshd_interface_admin_up gauge
pmshd_interface_admin_up{switch="lab",interface="Ethernet1/1"} 1
pmshd_interface_admin_up{switch="lab",interface="Ethernet1/2"} 0
# HELP pmshd_interface_oper_up Whether the interface is up: 1, or not: 0
# TYPE pmshd_interface_oper_up gauge
pmshd_interface_oper_up{switch="lab",interface="Ethernet1/1"} 1
pmshd_interface_oper_up{switch="lab",interface="Ethernet1/2"} 0
# HELP pmshd_interface_link_changes How often the link came up or went down
# TYPE pmshd_interface_link_changes counter
pmshd_interface_link_changes_total{switch="lab",interface="Ethernet1/1"} 3
pmshd_interface_link_changes_total{switch="lab",interface="Ethernet1/2"} 0
# HELP pmshd_interface_last_link_flapped_timestamp_seconds When the link changed last, in seconds since 1970
# TYPE pmshd_interface_last_link_flapped_timestamp_seconds gauge
# UNIT pmshd_interface_last_link_flapped_timestamp_seconds seconds
pmshd_interface_last_link_flapped_timestamp_seconds{switch="lab",interface="Ethernet1/1"} 1600000000
# HELP pmshd_interface_speed_bytes_per_second Operational speed
# TYPE pmshd_interface_speed_bytes_per_second gauge
# UNIT pmshd_interface_speed_bytes_per_second bytes_per_second
pmshd_interface_speed_bytes_per_second{switch="lab",interface="Ethernet1/1"} 1250000000
# HELP pmshd_interface_mtu_bytes Size of the largest packet
# TYPE pmshd_interface_mtu_bytes gauge
# UNIT pmshd_interface_mtu_bytes bytes
pmshd_interface_mtu_bytes{switch="lab",interface="Ethernet1/1"} 9216
pmshd_interface_mtu_bytes{switch="lab",interface="Ethernet1/2"} 1500
# HELP pmshd_interface_input_bytes Bytes received
# TYPE pmshd_interface_input_bytes counter
# UNIT pmshd_interface_input_bytes bytes
pmshd_interface_input_bytes_total{switch="lab",interface="Ethernet1/1"} 1000
# HELP pmshd_interface_input_packets Packets received
# TYPE pmshd_interface_input_packets counter
# UNIT pmshd_interface_input_packets packets
pmshd_interface_input_packets_total{switch="lab",interface="Ethernet1/1"} 0
# HELP pmshd_interface_output_bytes Bytes sent
# TYPE pmshd_interface_output_bytes counter
# UNIT pmshd_interface_output_bytes bytes
pmshd_interface_output_bytes_total{switch="lab",interface="Ethernet1/1"} 18446744073709551615
# HELP pmshd_interface_input_crc_errors Received frames with a wrong checksum
# TYPE pmshd_interface_input_crc_errors counter
pmshd_interface_input_crc_errors_total{switch="lab",interface="Ethernet1/1"} 7
# HELP pmshd_transceiver_tx_fault Whether the transmitter reports a fault
# TYPE pmshd_transceiver_tx_fault gauge
pmshd_transceiver_tx_fault{switch="lab",interface="Ethernet1/1"} 0
# HELP pmshd_transceiver_rx_loss Whether the receiver has lost its signal
# TYPE pmshd_transceiver_rx_loss gauge
pmshd_transceiver_rx_loss{switch="lab",interface="Ethernet1/1"} 0
# HELP pmshd_transceiver_temperature_celsius Temperature now
# TYPE pmshd_transceiver_temperature_celsius gauge
# UNIT pmshd_transceiver_temperature_celsius celsius
pmshd_transceiver_temperature_celsius{switch="lab",interface="Ethernet1/1"} 34.5
# HELP pmshd_transceiver_temperature_limit_celsius Temperature: limits of alarms and warnings
# TYPE pmshd_transceiver_temperature_limit_celsius gauge
# UNIT pmshd_transceiver_temperature_limit_celsius celsius
pmshd_transceiver_temperature_limit_celsius{switch="lab",interface="Ethernet1/1",limit="high_alarm"} 75
pmshd_transceiver_temperature_limit_celsius{switch="lab",interface="Ethernet1/1",limit="low_alarm"} -5
pmshd_transceiver_temperature_limit_celsius{switch="lab",interface="Ethernet1/1",limit="high_warning"} 70
pmshd_transceiver_temperature_limit_celsius{switch="lab",interface="Ethernet1/1",limit="low_warning"} 0
# HELP pmshd_transceiver_voltage_volts Supply voltage now
# TYPE pmshd_transceiver_voltage_volts gauge
# UNIT pmshd_transceiver_voltage_volts volts
pmshd_transceiver_voltage_volts{switch="lab",interface="Ethernet1/1"} 3.3
# HELP pmshd_transceiver_voltage_limit_volts Supply voltage: limits of alarms and warnings
# TYPE pmshd_transceiver_voltage_limit_volts gauge
# UNIT pmshd_transceiver_voltage_limit_volts volts
pmshd_transceiver_voltage_limit_volts{switch="lab",interface="Ethernet1/1",limit="high_alarm"} 3.63
pmshd_transceiver_voltage_limit_volts{switch="lab",interface="Ethernet1/1",limit="low_alarm"} 2.97
pmshd_transceiver_voltage_limit_volts{switch="lab",interface="Ethernet1/1",limit="high_warning"} 3.465
pmshd_transceiver_voltage_limit_volts{switch="lab",interface="Ethernet1/1",limit="low_warning"} 3.135
# HELP pmshd_transceiver_current_amperes Laser current now
# TYPE pmshd_transceiver_current_amperes gauge
# UNIT pmshd_transceiver_current_amperes amperes
pmshd_transceiver_current_amperes{switch="lab",interface="Ethernet1/1",lane="1"} 0.0066
pmshd_transceiver_current_amperes{switch="lab",interface="Ethernet1/1",lane="2"} 0.0067
# HELP pmshd_transceiver_current_limit_amperes Laser current: limits of alarms and warnings
# TYPE pmshd_transceiver_current_limit_amperes gauge
# UNIT pmshd_transceiver_current_limit_amperes amperes
pmshd_transceiver_current_limit_amperes{switch="lab",interface="Ethernet1/1",limit="high_alarm"} 0.0118
pmshd_transceiver_current_limit_amperes{switch="lab",interface="Ethernet1/1",limit="low_alarm"} 0.004
pmshd_transceiver_current_limit_amperes{switch="lab",interface="Ethernet1/1",limit="high_warning"} 0.0108
pmshd_transceiver_current_limit_amperes{switch="lab",interface="Ethernet1/1",limit="low_warning"} 0.005
# HELP pmshd_transceiver_tx_power_dbm Transmit power now
# TYPE pmshd_transceiver_tx_power_dbm gauge
# UNIT pmshd_transceiver_tx_power_dbm dbm
pmshd_transceiver_tx_power_dbm{switch="lab",interface="Ethernet1/1",lane="1"} 0.00
pmshd_transceiver_tx_power_dbm{switch="lab",interface="Ethernet1/1",lane="2"} 3.01
# HELP pmshd_transceiver_tx_power_limit_dbm Transmit power: limits of alarms and warnings
# TYPE pmshd_transceiver_tx_power_limit_dbm gauge
# UNIT pmshd_transceiver_tx_power_limit_dbm dbm
pmshd_transceiver_tx_power_limit_dbm{switch="lab",interface="Ethernet1/1",limit="high_alarm"} 1.69
pmshd_transceiver_tx_power_limit_dbm{switch="lab",interface="Ethernet1/1",limit="low_alarm"} -9.31
pmshd_transceiver_tx_power_limit_dbm{switch="lab",interface="Ethernet1/1",limit="high_warning"} -1.30
pmshd_transceiver_tx_power_limit_dbm{switch="lab",interface="Ethernet1/1",limit="low_warning"} -7.30
# HELP pmshd_transceiver_rx_power_dbm Receive power now
# TYPE pmshd_transceiver_rx_power_dbm gauge
# UNIT pmshd_transceiver_rx_power_dbm dbm
pmshd_transceiver_rx_power_dbm{switch="lab",interface="Ethernet1/1",lane="1"} -3.01
# HELP pmshd_transceiver_rx_power_limit_dbm Receive power: limits of alarms and warnings
# TYPE pmshd_transceiver_rx_power_limit_dbm gauge
# UNIT pmshd_transceiver_rx_power_limit_dbm dbm
pmshd_transceiver_rx_power_limit_dbm{switch="lab",interface="Ethernet1/1",limit="high_warning"} -1.00
pmshd_transceiver_rx_power_limit_dbm{switch="lab",interface="Ethernet1/1",limit="low_warning"} -12.00
# EOF
)";

TEST_F(SwitchMetrics, HaveEveryKnownValueOfTheModel) { EXPECT_EQ(text_in(exposition_format::openmetrics), kExpected); }

TEST_F(SwitchMetrics, AreTheSameWhenTheyAreWrittenAgain) {
  text_in(exposition_format::prometheus);
  EXPECT_EQ(text_in(exposition_format::openmetrics), kExpected);
}

TEST_F(SwitchMetrics, OfASwitchWithoutInterfacesAreThoseOfTheDaemon) {
  the_machine().interfaces.clear();
  EXPECT_EQ(text_in(exposition_format::prometheus, {"a\"b", "1", 0}),
            "# HELP pmshd_build_info Version of the daemon\n"
            "# TYPE pmshd_build_info gauge\n"
            "pmshd_build_info{switch=\"a\\\"b\",version=\"1\"} 1\n"
            "# HELP pmshd_sessions Shells that are connected\n"
            "# TYPE pmshd_sessions gauge\n"
            "pmshd_sessions{switch=\"a\\\"b\"} 0\n"
            "# HELP pmshd_clock_timestamp_seconds Time of the switch's clock, in seconds since 1970\n"
            "# TYPE pmshd_clock_timestamp_seconds gauge\n"
            "pmshd_clock_timestamp_seconds{switch=\"a\\\"b\"} 1700000000\n");
}

// Without diagnostics, or while it does not report them.
TEST_F(SwitchMetrics, OfASilentModuleAreNotThere) {
  the_machine().interfaces[0].module_in_port->diagnostics.is_silent = true;
  const std::string text = text_in(exposition_format::openmetrics);
  EXPECT_EQ(text.find("temperature"), std::string::npos);
  EXPECT_NE(text.find("pmshd_transceiver_rx_loss{"), std::string::npos);
}

TEST_F(SwitchMetrics, OfADeviceWithoutACountOfLinkChangesHaveNone) {
  class unknowing_source : public switch_source {
    bool knows_all_fields() const override { return false; }
  };
  set_source(std::make_unique<unknowing_source>());
  the_machine().interfaces[1].num_link_changes = 12;
  const std::string text = text_in(exposition_format::openmetrics);
  EXPECT_EQ(text.find("link_changes_total{switch=\"lab\",interface=\"Ethernet1/1\"}"), std::string::npos);
  EXPECT_NE(text.find("link_changes_total{switch=\"lab\",interface=\"Ethernet1/2\"} 12\n"), std::string::npos);
}

TEST_F(SwitchMetrics, AreRefusedWithTheReasonOfTheSource) {
  class lost_source : public switch_source {
    void refresh(machine&) override { throw std::runtime_error("the devices are gone"); }
  };
  EXPECT_EQ(refresh_for_metrics(), "");
  set_source(std::make_unique<lost_source>());
  EXPECT_EQ(refresh_for_metrics(), "the devices are gone");
}

}  // namespace
}  // namespace host
