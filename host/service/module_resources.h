// How line cards share out buffers and bandwidth among their ports.
#pragma once

#include <span>

#include "transport/transport.h"

namespace host {

// Answers a module_request with the tree of platform/module_resources.h; an error in its head for a slot without a card
// that shares out resources.
reply answer_module_resources(std::span<const std::byte> request);

}  // namespace host
