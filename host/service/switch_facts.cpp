// What the switch is as a whole: its source, its users, its interfaces.
#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/files.h"
#include "messages/switch_messages.h"
#include "platform/interface_manager.h"
#include "service/answers.h"
#include "service/services.h"
#include "service/switch_events.h"
#include "settings/session.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"
#include "switch/kernel_device.h"

namespace host {
namespace {

uint64 nanoseconds_in(double seconds) { return static_cast<uint64>(seconds * 1e9); }

// ---- The source -----------------------------------------------------------------------------------------------------

std::string& the_switch_file() {
  static std::string file;
  return file;
}

// The time of the last refresh, in seconds since 1970.
double refreshed_at_sec = 0;

void write_clock(field_writer& to) {
  const clock_course course = clock_course_now();
  to.flag(course.is_stopped);
  to.u64(static_cast<uint64>(course.seconds));
}

reply answer_refresh(std::string_view reason) {
  return answer_fields([reason](field_writer& to) {
    to.text(reason);
    write_clock(to);
  });
}

reply refresh_switch(field_reader& request) {
  const auto part = static_cast<switch_part>(request.u8());
  const bool is_known = part == switch_part::everything || part == switch_part::counters;
  if (!request.is_complete() || !is_known) return reject();
  try {
    if (part == switch_part::everything || !the_source().refresh_counters(the_machine()))
      the_source().refresh(the_machine());
  } catch (const std::runtime_error& why) {
    return answer_refresh(why.what());
  }
  refreshed_at_sec = clock_now_exactly();
  // Devices change by themselves, and their values are read while they are shown.
  if (the_source().knows_all_fields()) the_session().view().begin();
  return answer_refresh({});
}

reply advance_clock(field_reader& request) {
  const uint32 seconds = request.u32();
  if (!request.is_complete()) return reject();
  clock_advance(seconds);
  return answer_fields(write_clock);
}

reply answer_facts() {
  const auto kernel = the_source().system();
  return answer_fields([&](field_writer& to) {
    to.text(the_machine().name);
    to.text(the_switch_file());
    to.text(kernel ? kernel->name : std::string());
    to.text(kernel ? kernel->release : std::string());
    to.flag(the_source().devices().has_value());
    to.flag(the_source().counts_at_refresh());
  });
}

reply answer_rate_time() {
  const double seconds = the_source().rate_seconds().value_or(0);
  return answer_fields([=](field_writer& to) { to.u64(nanoseconds_in(seconds)); });
}

// ---- Users ----------------------------------------------------------------------------------------------------------

struct chosen_user {
  const user* found;
  std::string refusal;
};

// A shell of another process has the user of the switch that is named as its own. Only some may be others.
chosen_user choose_user(std::string_view name) {
  const std::vector<user>& all = the_machine().users;
  switch_session& session = the_session();
  const bool may_be_any = session.rights().may_be_any_user;
  const std::string own = session.is_of_client() ? shown_name(session.owner()) : std::string();
  const user* const of_own_name = the_machine().find_user(own);
  if (all.empty()) return {nullptr, {}};
  if (!name.empty()) {
    const user* const found = the_machine().find_user(name);
    if (may_be_any || found == nullptr || found == of_own_name) return {found, {}};
    return {nullptr,
            fmt::format("the user '{}' of this machine may not use the switch as '{}': omit --user", own, name)};
  }
  if (of_own_name != nullptr) return {of_own_name, {}};
  if (may_be_any) return {&all.front(), {}};
  return {nullptr, fmt::format("the switch has no user '{}': ask its owner to add one with this name", own)};
}

reply answer_user(field_reader& request) {
  const std::string_view name = request.text();
  if (!request.is_complete()) return reject();
  const std::vector<user>& all = the_machine().users;
  const auto [found, refusal] = choose_user(name);
  return answer_fields([&, found = found, &refusal = refusal](field_writer& to) {
    std::vector<std::string_view> names;
    for (const user& it : all) names.push_back(it.name);
    to.texts(names);
    to.flag(found != nullptr);
    const user shown = found != nullptr ? *found : user();
    to.text(shown.name);
    to.flag(shown.vsans.has_value());
    const std::vector<uint16> vsans = shown.vsans.value_or(std::vector<uint16>());
    to.numbers(std::vector<uint32>(vsans.begin(), vsans.end()));
    to.flag(shown.sees_counters);
    to.flag(shown.may_clear_inband);
    to.text(refusal);
  });
}

// ---- Interfaces and modules -----------------------------------------------------------------------------------------

reply answer_numbers(const std::vector<uint32>& numbers) {
  return answer_fields([&](field_writer& to) { to.numbers(numbers); });
}

reply answer_interfaces() {
  std::vector<if_index_t> all;
  for (const interface& it : the_machine().interfaces) all.push_back(it.if_index);
  return answer_numbers(all);
}

reply answer_existence(field_reader& request) {
  const std::vector<if_index_t> asked = request.numbers();
  if (!request.is_complete()) return reject();
  return answer_fields([&](field_writer& to) {
    for (const if_index_t it : asked) to.flag(std::as_const(the_machine()).find(it) != nullptr);
  });
}

reply answer_interfaces_towards(field_reader& request) {
  const std::string address(request.text());
  return request.is_complete() ? answer_numbers(the_source().interfaces_towards(address)) : reject();
}

reply answer_modules() {
  std::vector<uint32> numbers;
  for (const card& it : the_machine().cards) numbers.push_back(it.slot + 1);
  return answer_numbers(numbers);
}

// ---- Devices of the kernel ------------------------------------------------------------------------------------------

reply answer_may_have_device(field_reader& request) {
  const std::string_view name = request.text();
  if (!request.is_complete()) return reject();
  const bool may_exist = the_source().may_have_device(name);
  return answer_fields([=](field_writer& to) { to.flag(may_exist); });
}

std::string reason_of(const kernel_device& it) {
  switch (it.reason) {
    case name_reason::map_file: return "map file";
    case name_reason::stored: return "stored";
    case name_reason::default_route: return "default route";
    case name_reason::loopback: return "loopback";
    case name_reason::bond: return "bond";
    case name_reason::vlan: return fmt::format("vlan of {}", it.parent);
    case name_reason::device_index: return "device index";
  }
  return {};
}

reply answer_devices() {
  const auto devices = the_source().devices();
  return answer_fields([&](field_writer& to) {
    to.flag(devices.has_value());
    to.u32(devices ? static_cast<uint32>(devices->size()) : 0);
    if (!devices) return;
    for (const kernel_device& it : *devices) {
      to.text(it.name);
      to.u32(it.if_index);
      to.text(reason_of(it));
    }
  });
}

// ---- Counters -------------------------------------------------------------------------------------------------------

reply store_baselines() {
  const std::optional<std::string> file = the_source().baseline_file();
  int error = 0;
  if (file && !file->empty()) {
    make_directories_of(*file);
    error = the_source().write_baselines();
  }
  return answer_fields([&](field_writer& to) {
    to.flag(file.has_value());
    to.text(file.value_or(std::string()));
    to.u32(static_cast<uint32>(error));
  });
}

// Devices count all the time; the traffic of a switch file grows by whole seconds of the clock.
bool is_counted_by_kernel(const interface& port) {
  return decode_index(port.if_index).type == IF_TYPE_MGMT &&
         kernel_counters(management_device(the_machine(), port.if_index)).has_value();
}

// The moment of an interface's counters, which are up to date then; nothing for one without counters. Those of a source
// that reads them itself are of its last refresh; others are read again until they and the time are of the same second.
std::optional<double> count_traffic(interface& port) {
  const bool is_of_device = is_counted_by_kernel(port);
  double at_sec = 0;
  do {
    at_sec = static_cast<double>(clock_now());
    if (!refresh_statistics(port)) return std::nullopt;
    if (is_of_device) return clock_now_exactly();
    if (the_source().counts_at_refresh()) return refreshed_at_sec;
  } while (static_cast<double>(clock_now()) != at_sec);
  return at_sec;
}

// The in-band interface is no part of the model: the library reads its device.
reply answer_traffic(field_reader& request) {
  const if_index_t if_index = request.u32();
  if (!request.is_complete()) return reject();
  interface* const port = decode_index(if_index).type == IF_TYPE_INBAND ? nullptr : the_machine().find(if_index);
  const std::optional<double> at_sec = port == nullptr ? std::nullopt : count_traffic(*port);
  const statistics stats = at_sec ? port->stats : statistics();
  return answer_fields([&](field_writer& to) {
    to.flag(at_sec.has_value());
    to.u64(nanoseconds_in(at_sec.value_or(0)));
    to.u64(stats.in.bytes.value_or(0));
    to.u64(stats.in.packets.value_or(0));
    to.u64(stats.out.bytes.value_or(0));
    to.u64(stats.out.packets.value_or(0));
    to.u32(stats.last_clear_sec);
  });
}

// ---- Requests -------------------------------------------------------------------------------------------------------

// A request without fields.
reply answer_nothing_asked(std::span<const std::byte> request, reply (*answer)()) {
  return request.empty() ? answer() : reject();
}

}  // namespace

void set_switch_file(std::string file) { the_switch_file() = std::move(file); }

reply serve_switch(mts_opc_t opcode, std::span<const std::byte> request) {
  field_reader fields(request);
  switch (opcode) {
    case SWITCH_OPC_INTERFACES: return answer_nothing_asked(request, answer_interfaces);
    case SWITCH_OPC_EXIST: return answer_existence(fields);
    case SWITCH_OPC_TOWARDS: return answer_interfaces_towards(fields);
    case SWITCH_OPC_REFRESH: return refresh_switch(fields);
    case SWITCH_OPC_ADVANCE_CLOCK: return advance_clock(fields);
    case SWITCH_OPC_FACTS: return answer_nothing_asked(request, answer_facts);
    case SWITCH_OPC_RATE_TIME: return answer_nothing_asked(request, answer_rate_time);
    case SWITCH_OPC_USER: return answer_user(fields);
    case SWITCH_OPC_DEVICE: return answer_may_have_device(fields);
    case SWITCH_OPC_MODULES: return answer_nothing_asked(request, answer_modules);
    case SWITCH_OPC_DEVICES: return answer_nothing_asked(request, answer_devices);
    case SWITCH_OPC_BASELINES: return answer_nothing_asked(request, store_baselines);
    case SWITCH_OPC_TRAFFIC: return answer_traffic(fields);
    case SWITCH_OPC_OPEN_EVENTS: return answer_nothing_asked(request, answer_open_events);
    case SWITCH_OPC_READ_EVENTS: return answer_events(fields);
    case SWITCH_OPC_CLOSE_EVENTS: return answer_close_events(fields);
    default: return reject_opcode();
  }
}

}  // namespace host
