#include "settings/change_feed.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <deque>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/session.h"
#include "settings/settings.h"
#include "settings/written_settings.h"
#include "switch/clock.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr std::size_t kMostUnread = 1024;

// ---- Readers

class change_reader;

std::vector<change_reader*>& all_readers() {
  static std::vector<change_reader*> all;
  return all;
}

class change_reader final : public event_reader {
 public:
  explicit change_reader(std::unique_ptr<event_reader> of_source)
      : of_source_(std::move(of_source)), news_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (news_ < 0) throw std::runtime_error(std::string("events cannot be followed: ") + std::strerror(errno));
    all_readers().push_back(this);
  }
  ~change_reader() override {
    std::erase(all_readers(), this);
    close(news_);
  }

  std::vector<int> descriptors() const override {
    std::vector<int> all = of_source_ != nullptr ? of_source_->descriptors() : std::vector<int>();
    all.push_back(news_);
    return all;
  }

  bool read(std::vector<switch_event>& events) override {
    const bool is_complete = of_source_ == nullptr || of_source_->read(events);
    eventfd_t ignored = 0;
    eventfd_read(news_, &ignored);
    events.insert(events.end(), std::make_move_iterator(unread_.begin()), std::make_move_iterator(unread_.end()));
    unread_.clear();
    num_reported_ = std::exchange(num_lost_, 0);
    return is_complete;
  }

  uint32 num_lost_changes() const override { return num_reported_; }

  void add(const switch_event& event) {
    if (unread_.size() == kMostUnread) {
      unread_.pop_front();
      ++num_lost_;
    }
    unread_.push_back(event);
    eventfd_write(news_, 1);
  }

 private:
  std::unique_ptr<event_reader> of_source_;
  int news_;  // readable while there are changes
  std::deque<switch_event> unread_;
  uint32 num_lost_ = 0;
  uint32 num_reported_ = 0;  // by the last reading
};

// ---- Events

switch_event event_of_session(event_kind kind, if_index_t if_index, std::string_view change) {
  switch_event event;
  event.at_sec = static_cast<uint32>(clock_now());
  event.kind = kind;
  event.device.if_index = if_index;
  if (const auto device = the_source().find_device(if_index)) {
    event.device.name = device->name;
    event.device.number = device->number;
  }
  event.change = change;
  const session_owner& owner = the_session().owner();
  event.user = shown_name(owner);
  event.terminal = owner.terminal;
  return event;
}

void publish(const switch_event& event) {
  for (change_reader* const it : all_readers()) it->add(event);
}

void publish_each(event_kind kind, std::span<const if_index_t> interfaces, std::string_view change) {
  if (all_readers().empty()) return;
  for (const if_index_t it : interfaces) publish(event_of_session(kind, it, change));
}

// The words of a command after those of its setting: "9000" of "switchport mtu 9000". The whole command when there are
// none.
std::string_view value_in(std::string_view command, std::string_view setting) {
  const bool has_value = command.starts_with(setting) && command.size() > setting.size();
  return has_value ? command.substr(setting.size() + 1) : command;
}

std::string joined_values(const std::vector<std::string>& commands, std::string_view setting) {
  constexpr std::string_view kAdds = "add ";
  std::string text;
  for (const std::string& it : commands) {
    std::string_view value = value_in(it, setting);
    if (value.starts_with(kAdds)) value.remove_prefix(kAdds.size());
    text.append(text.empty() ? "" : ",").append(value);
  }
  return text;
}

event_value value_of(const setting& of, const port_settings& settings) {
  const auto value = of.get(settings);
  if (!value) return {};
  if (const auto* const text = std::get_if<std::string>(&*value)) return text->empty() ? event_value() : *text;
  if (of.command.empty()) return std::to_string(std::get<uint32>(*value));
  return joined_values(commands_for(of, *value), of.command);
}

std::string_view name_of(const setting& it) { return it.command.empty() ? it.traits.key : it.command; }

}  // namespace

std::unique_ptr<event_reader> open_change_feed(std::unique_ptr<event_reader> of_source) {
  return std::make_unique<change_reader>(std::move(of_source));
}

void publish_settings(const interface& port, const port_settings& before) {
  if (all_readers().empty() || port.settings == before) return;
  for (const setting& it : all_settings()) {
    if (name_of(it).empty() || is_equal(it, before, port.settings)) continue;
    switch_event event = event_of_session(event_kind::setting, port.if_index, name_of(it));
    event.old_value = value_of(it, before);
    event.new_value = value_of(it, port.settings);
    publish(event);
  }
  if (before.is_edge == port.settings.is_edge) return;
  switch_event event = event_of_session(event_kind::setting, port.if_index, "switchport host");
  event.old_value = std::string(before.is_edge ? "on" : "off");
  event.new_value = std::string(port.settings.is_edge ? "on" : "off");
  publish(event);
}

void publish_created(std::span<const if_index_t> interfaces) {
  publish_each(event_kind::interface, interfaces, "created");
}

void publish_deleted(std::span<const if_index_t> interfaces) {
  publish_each(event_kind::interface, interfaces, "deleted");
}

void publish_cleared(if_index_t if_index) { publish_each(event_kind::counters, {&if_index, 1}, "cleared"); }

changes_elsewhere::changes_elsewhere(std::span<const if_index_t> interfaces) {
  if (all_readers().empty()) return;
  for (const if_index_t it : interfaces) {
    const interface* const port = std::as_const(the_machine()).find(it);
    before_.emplace(it, port == nullptr ? std::nullopt : std::optional(port->settings));
  }
}

void changes_elsewhere::publish() const {
  for (const auto& [if_index, before] : before_) {
    const interface* const port = std::as_const(the_machine()).find(if_index);
    if (port != nullptr && before)
      publish_settings(*port, *before);
    else if (port != nullptr)
      publish_created({&if_index, 1});
    else if (before)
      publish_deleted({&if_index, 1});
  }
}

}  // namespace host
