#include "service/switch_events.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <cstddef>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/digits.h"
#include "messages/switch_messages.h"
#include "messages/table_messages.h"
#include "service/answers.h"
#include "service/row_writer.h"
#include "service/services.h"
#include "settings/session.h"
#include "switch/events.h"

namespace host {
namespace {

// ---- Values of events -----------------------------------------------------------------------------------------------

constexpr std::string_view word_of(event_kind kind) {
  switch (kind) {
    case event_kind::link: return "link";
    case event_kind::address: return "address";
    case event_kind::neighbor: return "neighbor";
    case event_kind::module: return "module";
    case event_kind::setting: return "setting";
    case event_kind::counters: return "counters";
    case event_kind::interface: return "interface";
  }
  return {};
}

// "192.0.2.1/24"
std::string text_with_prefix(const ip_address& address) {
  char text[INET6_ADDRSTRLEN] = {};
  inet_ntop(address.is_ipv6 ? AF_INET6 : AF_INET, address.bytes.data(), text, sizeof text);
  return fmt::format("{}/{}", text, address.prefix_length);
}

// Empty for no value.
std::string text_of_value(const event_value& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return *text;
  if (const auto* const address = std::get_if<ip_address>(&value)) return text_with_prefix(*address);
  std::string text;
  if (const auto* const mac = std::get_if<mac_address>(&value)) append_dotted_hex(text, *mac);
  return text;
}

std::vector<std::byte> values_of(const switch_event& event) {
  std::vector<std::byte> bytes;
  value_writer values(bytes);
  row_writer to(values);
  to.device(event.device);
  if (event.address) {
    to.address(property::ip_address, event.address);
    to.number(property::prefix_length_bits, event.address->prefix_length);
  }
  if (event.mac) to.mac(property::mac, event.mac);
  values.time(property::event_time, event.at_sec);
  values.text(property::event_kind, word_of(event.kind));
  to.text(property::change, event.change);
  to.text(property::old_value, text_of_value(event.old_value));
  to.text(property::new_value, text_of_value(event.new_value));
  to.text(property::event_user, event.user);
  to.text(property::event_terminal, event.terminal);
  return bytes;
}

// ---- Open events ----------------------------------------------------------------------------------------------------

constexpr std::size_t kMostOpenEvents = 256;

struct open_events {
  std::unique_ptr<event_reader> reader;
  std::vector<switch_event> waiting = {};  // that were read, and not answered yet
  std::size_t next = 0;                    // of them
};

// By their cursors.
struct events_of_session {
  std::map<uint32, open_events> open;
};

std::map<uint32, open_events>& all_open_events() { return the_session().kept<events_of_session>().open; }

uint32 add_events(std::unique_ptr<event_reader> reader) {
  static uint32 last = 0;
  std::map<uint32, open_events>& all = all_open_events();
  do ++last;
  while (last == 0 || all.contains(last));
  all.emplace(last, open_events{std::move(reader)});
  return last;
}

reply answer_opened(events_state state, uint32 cursor, std::string_view reason) {
  return answer_fields([&](field_writer& to) {
    to.u8(static_cast<uint8>(state));
    to.u32(cursor);
    to.text(reason);
  });
}

reply answer_no_events(std::string_view reason) {
  return answer_fields([&](field_writer& to) {
    to.text(reason);
    to.flag(false);
    to.u32(0);
    to.flag(false);
    to.texts(std::vector<std::string_view>());
  });
}

// The values of waiting events, as many as an answer holds.
std::vector<std::string> take_waiting(open_events& from) {
  std::vector<std::string> texts;
  std::size_t size = 0;
  while (from.next < from.waiting.size() && texts.size() < kMostRowsOfAnswer && size < kMostBytesOfAnswer) {
    const std::vector<std::byte> values = values_of(from.waiting[from.next++]);
    size += values.size();
    texts.emplace_back(reinterpret_cast<const char*>(values.data()), values.size());
  }
  return texts;
}

}  // namespace

reply answer_open_events() {
  if (all_open_events().size() == kMostOpenEvents)
    return answer_opened(events_state::failed, 0, "too many clients follow the events of this switch");
  try {
    std::unique_ptr<event_reader> reader = the_source().open_events();
    if (reader == nullptr) return answer_opened(events_state::none, 0, {});
    return answer_opened(events_state::open, add_events(std::move(reader)), {});
  } catch (const std::runtime_error& why) {
    return answer_opened(events_state::failed, 0, why.what());
  }
}

reply answer_events(field_reader& request) {
  const uint32 cursor = request.u32();
  const auto found = all_open_events().find(cursor);
  if (!request.is_complete() || found == all_open_events().end()) return reject();
  open_events& events = found->second;
  bool has_lost = false;
  uint32 num_lost_changes = 0;
  if (events.next == events.waiting.size()) {
    events.waiting.clear();
    events.next = 0;
    try {
      has_lost = !events.reader->read(events.waiting);
      num_lost_changes = events.reader->num_lost_changes();
    } catch (const std::runtime_error& why) {
      return answer_no_events(why.what());
    }
  }
  const std::vector<std::string> texts = take_waiting(events);
  return answer_fields([&](field_writer& to) {
    to.text({});
    to.flag(has_lost);
    to.u32(num_lost_changes);
    to.flag(events.next != events.waiting.size());
    to.texts(texts);
  });
}

reply answer_close_events(field_reader& request) {
  const uint32 cursor = request.u32();
  if (!request.is_complete()) return reject();
  all_open_events().erase(cursor);
  return answer_fields([](field_writer&) {});
}

std::vector<int> descriptors_of_switch(uint32 cursor) {
  const auto found = all_open_events().find(cursor);
  return found == all_open_events().end() ? std::vector<int>() : found->second.reader->descriptors();
}

}  // namespace host
