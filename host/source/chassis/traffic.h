// Traffic of an interface as a switch file describes it, and the statistics that follow from it.
//
// Counters are a function of the traffic and of two times, the start of counting and now: nothing is accumulated.
// Bursts begin at whole multiples of their period on the clock.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "switch/model.h"

namespace host {

enum class rate_unit : uint8 {
  kbps,       // of the bytes that count
  packets,    // per second
  line_rate,  // thousandths of a percent of the line, with the 20 bytes between packets
};

struct traffic_rate {
  rate_unit unit = rate_unit::kbps;
  uint64 value = 0;
};

// Packets of one size, in thousandths of a percent of all.
struct packet_share {
  uint32 bytes;
  uint32 percent_thousandths;
};

// More traffic for `length_sec` out of every `period_sec`.
struct traffic_burst {
  traffic_rate rate;
  uint32 period_sec = 0;
  uint32 length_sec = 0;
};

// One direction: its rates, and totals at the start of the switch that replace those computed from the rates.
struct traffic_flow {
  traffic_rate rate;
  std::vector<packet_share> sizes = {{512, 100'000}};  // all of them together are 100 percent
  uint32 multicast_percent_thousandths = 0;
  uint32 broadcast_percent_thousandths = 0;
  std::optional<traffic_burst> burst;
  uint32 discards_per_million = 0;  // packets
  std::optional<uint64> bytes;
  std::optional<uint64> unicast_packets;
  std::optional<uint64> multicast_packets;
  std::optional<uint64> broadcast_packets;
  std::optional<uint64> errors;
  std::optional<uint64> discards;
};

// A counter such as errors: its value at the start of the switch, which replaces the one computed from the rate.
struct error_source {
  host::counter error_counters::*counter = nullptr;
  std::optional<uint64> start;
  uint32 per_million = 0;  // packets of the counter's direction
};

struct traffic_plan {
  std::optional<uint32> uptime_sec;  // how long the traffic has been flowing
  traffic_flow in;
  traffic_flow out;
  std::vector<error_source> errors;  // those that a file names
};

// Counters besides packets and bytes.
struct error_kind {
  std::string_view word;  // of switch files
  host::counter error_counters::*counter;
  bool is_sent;   // counted per packet sent, not per packet received
  bool is_error;  // adds to the errors of its direction
};

inline constexpr error_kind kErrorKinds[] = {
    {"crc", &error_counters::crc, false, true},
    {"runts", &error_counters::runts, false, true},
    {"giants", &error_counters::giants, false, true},
    {"jabber", &error_counters::jabber, false, true},
    {"overruns", &error_counters::overruns, false, true},
    {"short-frames", &error_counters::short_frames, false, true},
    {"no-buffer", &error_counters::no_buffer, false, true},
    {"ecc", &error_counters::ecc, false, true},
    {"ignored", &error_counters::ignored, false, true},
    {"dribble", &error_counters::dribble, false, true},
    {"watchdog", &error_counters::watchdog, false, true},
    {"symbol-errors", &error_counters::symbol, false, true},
    {"bad-encapsulation", &error_counters::bad_encapsulation, false, true},
    {"receive-fifo", &error_counters::receive_fifo, false, true},
    {"bad-ethertype", &error_counters::bad_ethertype, false, false},
    {"bad-protocol", &error_counters::bad_protocol, false, false},
    {"dropped-while-down", &error_counters::dropped_while_down, false, false},
    {"storm-suppressed", &error_counters::storm_suppressed, false, false},
    {"compressed", &error_counters::compressed, false, false},
    {"pause-received", &error_counters::pause_received, false, false},
    {"underruns", &error_counters::underruns, true, true},
    {"crc-sent", &error_counters::crc_sent, true, true},
    {"late-collisions", &error_counters::late_collisions, true, true},
    {"excessive-collisions", &error_counters::excessive_collisions, true, true},
    {"lost-carrier", &error_counters::lost_carrier, true, true},
    {"no-carrier", &error_counters::no_carrier, true, true},
    {"babble", &error_counters::babble, true, true},
    {"send-fifo", &error_counters::send_fifo, true, true},
    {"collisions", &error_counters::collisions, true, false},
    {"single-collisions", &error_counters::single_collisions, true, false},
    {"multiple-collisions", &error_counters::multiple_collisions, true, false},
    {"deferred", &error_counters::deferred, true, false},
    {"deferred-long", &error_counters::deferred_long, true, false},
    {"sqe-test", &error_counters::sqe_test, true, false},
    {"bpdu-lost", &error_counters::bpdu_lost, true, false},
    {"cos0-lost", &error_counters::cos0_lost, true, false},
    {"cos1-lost", &error_counters::cos1_lost, true, false},
    {"cos2-lost", &error_counters::cos2_lost, true, false},
    {"cos3-lost", &error_counters::cos3_lost, true, false},
    {"cos4-lost", &error_counters::cos4_lost, true, false},
    {"cos5-lost", &error_counters::cos5_lost, true, false},
    {"cos6-lost", &error_counters::cos6_lost, true, false},
    {"cos7-lost", &error_counters::cos7_lost, true, false},
    {"pause-sent", &error_counters::pause_sent, true, false},
};

// A plan on an interface.
struct traffic_source {
  std::shared_ptr<const traffic_plan> plan;
  uint64 line_kbps = 0;
  bool is_up = false;       // when the switch started; without a link nothing flows
  uint32 started_sec = 0;   // when the switch started: seconds since 1970
  uint32 counting_sec = 0;  // how long its counters had been counting then
};

// Updates the statistics of an interface to a time. False for a management port without its own traffic: its counters
// come from a device of the kernel.
bool follow_traffic(interface& port, uint32 now_sec);

}  // namespace host
