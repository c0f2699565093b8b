// What the port manager makes of interface ranges that a command names: may they be used, created or deleted.
#pragma once

#include <span>

#include "switch/model.h"
#include "transport/transport.h"

namespace host {

// Most sub-interfaces and loopbacks of a switch.
enum { MAX_SUB_INTERFACES = 1000, MAX_LOOPBACKS = 1024 };

// Each takes a verification (see port_manager_messages.h) and rejects one of another size than it says.
//
// Verification answers with a bare status: PM_ERR_INVALID_RANGE for ends that span no range, PM_ERR_NO_SUCH_INTERFACE
// for an end that does not exist. Of sub-interfaces that are to be created every one has to exist; what speaks against
// the creation is answered first.
reply answer_verification(std::span<const std::byte> request);

// Creates the interfaces of the ranges that are missing, or deletes those that exist. Nothing changes unless all of it
// can be done.
reply configure_sub_interfaces(std::span<const std::byte> request);
reply configure_loopbacks(std::span<const std::byte> request);

}  // namespace host
