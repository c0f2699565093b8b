// What is stored of an interface: everything that commands changed, so that the last image of an interface is all that
// is needed of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "messages/fields.h"
#include "settings/settings.h"
#include "switch/model.h"

namespace host {

// The value of a setting that differs from another record of settings.
struct stored_value {
  const setting* of = nullptr;
  setting_value value;

  bool operator==(const stored_value&) const = default;
};

struct interface_image {
  if_index_t if_index = 0;
  bool is_present = false;   // otherwise it was deleted, and only the next two count
  bool was_deleted = false;  // now or earlier: other interfaces do not track it any more
  bool is_listed = false;    // in machine::deleted
  bool is_created = false;   // by a command

  std::vector<stored_value> at_start;  // of a created one: what differs from new settings
  std::vector<stored_value> settings;  // that differ from those at the start
  if_index_t channel = 0;
  bool is_edge = false;

  uint8 oper_state = 0;
  uint8 state_reason = 0;
  std::optional<interface::link> link_before_shutdown;
  std::optional<uint32> oper_mode;
  std::optional<uint32> oper_speed_mbps;
  std::optional<uint8> oper_duplex;
  std::optional<uint16> oper_flow_control;
  std::optional<uint32> partner_speed_mbps;
  std::optional<uint32> link_change_sec;
  uint32 num_known_changes = 0;                      // of the link, of an earlier image
  std::vector<interface::link_change> link_changes;  // after these

  std::optional<uint32> cleared_sec;  // when its counters were set to 0, since 1970

  bool operator==(const interface_image&) const = default;
};

// Whether a management port counts what a device of the kernel counts. The baseline of its clear is the process's own,
// and is not stored.
bool is_counted_by_device(const machine& of, const interface& port);

// The image of an interface of a machine. With `before`, an interface as it was when its last image was taken, link
// changes are those after it.
interface_image image_of(const machine& of, if_index_t if_index, const interface* before = nullptr);

// A later image of the same interface, that holds for both.
void add_image(interface_image& to, interface_image later);

// Makes an interface of a machine as the image says; the machine is as its switch file describes it, apart from other
// images. False when it has no interface that the image requires.
bool put_image(machine& to, const interface_image& image);

void write_image(field_writer& to, const interface_image& image);

// Nothing when the fields are not those of an image.
std::optional<interface_image> read_image(field_reader& from);

}  // namespace host
