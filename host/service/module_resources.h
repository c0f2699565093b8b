// How the ports of line cards share buffers and bandwidth.
#pragma once

#include <span>

#include "transport/transport.h"

namespace host {

// Answers a module_request with the tree of platform/module_resources.h; an error in its head for a slot without a card
// with shared resources.
reply answer_module_resources(std::span<const std::byte> request);

}  // namespace host
