// Where a switch comes from, and what it does beyond its model.
//
// The bodies here are those of a switch that is its model alone: all of it is known and as it stands, and a change is
// made once the model has it. A source overrides what it does otherwise.
#pragma once

#include <memory>
#include <string_view>

#include "switch/model.h"

namespace host {

// What a source may leave out of an interface until a service needs it.
enum class detail : uint8 {
  link_fault,   // state_reason of a port that is up and has no link
  driver,       // capabilities.model
  module,       // module_in_port with its identity page, capabilities.transceiver
  diagnostics,  // of the module: needs it
  counters      // of stats, once these are up to date: those that not every device has
};

class switch_source {
 public:
  switch_source() = default;
  virtual ~switch_source() = default;
  switch_source(const switch_source&) = delete;
  switch_source& operator=(const switch_source&) = delete;

  // ---- Values

  // Completes a detail of an interface, if it was left out; again and again is as once.
  virtual void complete(interface& port, detail needed);

  // Whether the source cannot supply a field of an interface, by the field's name in the structured form; with
  // interface 0, whether that may be so for some interface.
  virtual bool is_unknown(if_index_t if_index, std::string_view field);

  // Whether is_unknown() is false whatever it is asked: displays then do not ask.
  virtual bool knows_all_fields() const;

  // ---- Statistics

  // Brings the statistics of an interface up to a moment (seconds since 1970). False when the source has none for it.
  virtual bool update_statistics(interface& port, uint32 now_sec);

  // Lets the counters that the source gives start from 0 at a moment. The caller sets those of the model to 0.
  virtual void clear_counters(interface& port, uint32 now_sec);
};

// The source of the_machine(). It is set together with that, and owned here; until then it has the bodies above.
switch_source& the_source();
void set_source(std::unique_ptr<switch_source> source = std::make_unique<switch_source>());

}  // namespace host
