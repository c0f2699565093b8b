// The events of the switch, which clients follow under cursors.
#pragma once

#include <span>

#include "messages/fields.h"
#include "transport/transport.h"

namespace host {

// The answers to SWITCH_OPC_OPEN_EVENTS, SWITCH_OPC_READ_EVENTS and SWITCH_OPC_CLOSE_EVENTS.
reply answer_open_events();
reply answer_events(field_reader& request);
reply answer_close_events(field_reader& request);

}  // namespace host
