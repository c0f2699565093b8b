// The capture of all frames that the daemon exchanges with its shells, if its owner asked for one.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "transport/frame_capture.h"

namespace host {

// Frames are stored in this file from now on. Throws frame_capture_error.
void begin_frame_capture(const std::string& path);

// Stores a correct frame, if a capture was begun. One that cannot be stored ends the capture with a line in the log.
void capture_frame(frame_sender sender, uint64 client, std::span<const std::byte> head,
                   std::span<const std::byte> payload);

}  // namespace host
