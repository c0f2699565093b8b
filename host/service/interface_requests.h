// Requests of the port manager for interface ranges: verification, creation and deletion.
#pragma once

#include <span>

#include "switch/model.h"
#include "transport/transport.h"

namespace host {

// Most sub-interfaces and loopbacks of a switch.
enum { kMaxSubInterfaces = 1000, kMaxLoopbacks = 1024 };

// Each takes a verification (see port_manager_messages.h) and rejects one whose size is wrong.
//
// Verification answers with a bare status: PM_ERR_INVALID_RANGE for ends that span no range, PM_ERR_NO_SUCH_INTERFACE
// for an end that does not exist. To create sub-interfaces or loopbacks every one of the range has to exist; a reason
// against the creation of sub-interfaces is answered first. To delete, sub-interfaces are accepted. Loopbacks get
// PM_ERR_NO_SUCH_INTERFACE, on which the caller sends configure_loopbacks(); any other kind gets
// PM_ERR_NOT_ALLOWED_ON_INTERFACE.
reply answer_verification(std::span<const std::byte> request);

// Creates the interfaces of the ranges that are missing, or deletes those that exist, in the source or else in the
// model. All or nothing is done.
reply configure_sub_interfaces(std::span<const std::byte> request);
reply configure_loopbacks(std::span<const std::byte> request);

}  // namespace host
