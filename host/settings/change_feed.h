// The changes that sessions make, as events.
#pragma once

#include <map>
#include <memory>
#include <span>

#include "switch/events.h"
#include "switch/model.h"

namespace host {

// A reader of the changes from now on, and of the events of `of_source`; null: the source has none. It keeps the last
// 1,024 changes that were not read. Throws std::runtime_error with the reason.
std::unique_ptr<event_reader> open_change_feed(std::unique_ptr<event_reader> of_source);

// Changes that the_session() has made: of settings, which were `before`; of interfaces that exist now, or do not any
// more; of counters that start from 0.
void publish_settings(const interface& port, const port_settings& before);
void publish_created(std::span<const if_index_t> interfaces);
void publish_deleted(std::span<const if_index_t> interfaces);
void publish_cleared(if_index_t if_index);

// Changes of some interfaces that another process makes for the_session(), such as the guardian of a commit: what
// differs between its beginning and publish() is published.
class changes_elsewhere {
 public:
  explicit changes_elsewhere(std::span<const if_index_t> interfaces);
  void publish() const;

 private:
  std::map<if_index_t, std::optional<port_settings>> before_;  // no settings: there was no such interface
};

}  // namespace host
