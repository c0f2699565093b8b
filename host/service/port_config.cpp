#include "service/port_config.h"

#include <cstring>

#include "messages/port_manager_messages.h"
#include "platform/port_config.h"
#include "service/answers.h"
#include "service/change_settings.h"
#include "settings/settings.h"
#include "settings/wire.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

using octets = std::span<const std::byte>;

uint32 set_port(interface& port, const setting& of, const setting_value& value) {
  return change_settings(port, [&](interface& it) { return set_value(of, it, value); });
}

// Members take all settings of their channel that they support: others may have followed from the one that was set.
void hand_to_members(const interface& channel) {
  for (const if_index_t member : the_machine().members_of(channel.if_index))
    change_settings(*the_machine().find(member), [&](interface& it) -> uint32 {
      take_over_settings(channel, it);
      return 0;
    });
}

uint32 apply_to(interface& port, const setting& of, octets bytes) {
  if (port.refusal != 0) return port.refusal;
  if (port.is_locked) return PM_ERR_PORT_LOCKED;
  if (!of.has_it(decode_index(port.if_index).type)) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (is_of_channel(of) && port.settings.channel != 0) return PM_ERR_PORT_IN_CHANNEL;
  const auto value = value_of_octets(of, bytes, port);
  if (!value) return PM_ERR_VALUE_OUT_OF_RANGE;
  if (const uint32 status = set_port(port, of, *value); status != 0) return status;
  if (is_of_channel(of)) hand_to_members(port);
  return 0;
}

}  // namespace

reply configure_ports(octets bytes) {
  setting_request head;
  if (bytes.size() < sizeof head) return reject();
  std::memcpy(&head, bytes.data(), sizeof head);
  bytes = bytes.subspan(sizeof head);
  if (bytes.size() < head.cfg_length) return reject();
  const octets value = bytes.first(head.cfg_length);
  const octets ranges = bytes.subspan(head.cfg_length);
  if (ranges.size() != head.num_ranges * sizeof(range_request)) return reject();

  const setting* const of = find_setting(head.cfg_type);
  if (of == nullptr) return answer_error(PM_ERR_UNKNOWN_TLV);
  if (of->num_bytes != head.cfg_length) return reject();
  return answer_statuses(ranges, [&](interface& port) { return apply_to(port, *of, value); });
}

}  // namespace host
