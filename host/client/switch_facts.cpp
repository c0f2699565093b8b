#include "messages/calls/switch_facts.h"

#include <limits>

#include "client/request.h"

namespace host {
namespace {

constexpr double kNanoseconds = 1e9;  // in a second

call to_switch(mts_opc_t opcode) { return {client_queue(), SAP_SWITCH, opcode}; }

std::vector<std::byte> field_of(std::string_view text) {
  return fields_of([text](field_writer& to) { to.text(text); });
}

switch_clock read_clock(field_reader& fields) {
  switch_clock clock;
  clock.is_stopped = fields.flag();
  clock.seconds = static_cast<std::int64_t>(fields.u64());
  return clock;
}
std::vector<uint32> read_numbers(field_reader& fields) { return fields.numbers(); }

// VSANs and their like have 16 bits; greater numbers are left out.
std::vector<uint16> read_short_numbers(field_reader& fields) {
  std::vector<uint16> numbers;
  for (const uint32 it : fields.numbers())
    if (it <= std::numeric_limits<uint16>::max()) numbers.push_back(static_cast<uint16>(it));
  return numbers;
}

user_answer read_user(field_reader& fields) {
  user_answer answer;
  answer.names = fields.texts<std::string>();
  const bool exists = fields.flag();
  session_user user;
  user.name = fields.text();
  const bool is_restricted = fields.flag();
  std::vector<uint16> vsans = read_short_numbers(fields);
  if (is_restricted) user.vsans = std::move(vsans);
  user.sees_counters = fields.flag();
  user.may_clear_inband = fields.flag();
  answer.refusal = fields.text();
  if (exists) answer.user = std::move(user);
  return answer;
}

devices_answer read_devices(field_reader& fields) {
  constexpr std::size_t kLeastBytes = 12;  // of a device: two sizes of texts, and its interface
  devices_answer answer;
  answer.is_kernel = fields.flag();
  answer.devices.resize(fields.count(kLeastBytes));
  for (device_interface& it : answer.devices) {
    it.name = fields.text();
    it.if_index = fields.u32();
    it.reason = fields.text();
  }
  return answer;
}

}  // namespace

std::optional<refresh_answer> ask_refresh(switch_part part) {
  const auto request = fields_of([part](field_writer& to) { to.u8(static_cast<uint8>(part)); });
  return ask_fields(to_switch(SWITCH_OPC_REFRESH), request, [](field_reader& fields) {
    refresh_answer answer;
    answer.reason = fields.text();
    answer.clock = read_clock(fields);
    return answer;
  });
}

std::optional<switch_clock> ask_to_advance_clock(uint32 seconds) {
  const auto request = fields_of([seconds](field_writer& to) { to.u32(seconds); });
  return ask_fields(to_switch(SWITCH_OPC_ADVANCE_CLOCK), request, read_clock);
}

std::optional<switch_facts> ask_switch_facts() {
  return ask_fields(to_switch(SWITCH_OPC_FACTS), {}, [](field_reader& fields) {
    switch_facts facts;
    facts.name = fields.text();
    facts.file = fields.text();
    facts.kernel_name = fields.text();
    facts.kernel_release = fields.text();
    facts.has_devices = fields.flag();
    facts.counts_at_refresh = fields.flag();
    return facts;
  });
}

std::optional<double> ask_rate_seconds() {
  return ask_fields(to_switch(SWITCH_OPC_RATE_TIME), {},
                    [](field_reader& fields) { return static_cast<double>(fields.u64()) / kNanoseconds; });
}

std::optional<user_answer> ask_user(std::string_view name) {
  return ask_fields(to_switch(SWITCH_OPC_USER), field_of(name), read_user);
}

std::optional<std::vector<if_index_t>> ask_every_interface() {
  return ask_fields(to_switch(SWITCH_OPC_INTERFACES), {}, read_numbers);
}

std::optional<std::vector<bool>> ask_which_exist(std::span<const if_index_t> interfaces) {
  const auto request = fields_of([=](field_writer& to) { to.numbers(interfaces); });
  return ask_fields(to_switch(SWITCH_OPC_EXIST), request, [=](field_reader& fields) {
    std::vector<bool> exist(interfaces.size());
    for (std::size_t i = 0; i < exist.size(); ++i) exist[i] = fields.flag();
    return exist;
  });
}

std::optional<std::vector<if_index_t>> ask_interfaces_towards(std::string_view address) {
  return ask_fields(to_switch(SWITCH_OPC_TOWARDS), field_of(address), read_numbers);
}

std::optional<std::vector<uint32>> ask_modules() { return ask_fields(to_switch(SWITCH_OPC_MODULES), {}, read_numbers); }

std::optional<bool> ask_may_have_device(std::string_view name) {
  return ask_fields(to_switch(SWITCH_OPC_DEVICE), field_of(name), [](field_reader& fields) { return fields.flag(); });
}

std::optional<devices_answer> ask_devices() { return ask_fields(to_switch(SWITCH_OPC_DEVICES), {}, read_devices); }

std::optional<baselines_answer> ask_to_store_baselines() {
  return ask_fields(to_switch(SWITCH_OPC_BASELINES), {}, [](field_reader& fields) {
    baselines_answer answer;
    answer.are_kept = fields.flag();
    answer.file = fields.text();
    answer.error = static_cast<int32>(fields.u32());
    return answer;
  });
}

std::optional<traffic_count> ask_traffic(if_index_t if_index) {
  const auto request = fields_of([=](field_writer& to) { to.u32(if_index); });
  const auto answer = ask_fields(to_switch(SWITCH_OPC_TRAFFIC), request, [](field_reader& fields) {
    const bool has_counters = fields.flag();
    traffic_count count;
    count.at_sec = static_cast<double>(fields.u64()) / kNanoseconds;
    count.in_bytes = fields.u64();
    count.in_packets = fields.u64();
    count.out_bytes = fields.u64();
    count.out_packets = fields.u64();
    count.last_clear_sec = fields.u32();
    return has_counters ? std::optional(count) : std::nullopt;
  });
  return answer.value_or(std::nullopt);
}

}  // namespace host
