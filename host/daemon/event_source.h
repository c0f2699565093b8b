// Sources of the event loop, released by their scope.
#pragma once

#include <systemd/sd-event.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace host {

struct release_event_source {
  void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
};
using event_source = std::unique_ptr<sd_event_source, release_event_source>;

struct release_event {
  void operator()(sd_event* loop) const { sd_event_unref(loop); }
};
using event_loop = std::unique_ptr<sd_event, release_event>;

// Throws when a function of the loop fails: `result` is a negative errno.
void check_event(int result, const char* what);

}  // namespace host
