#include "daemon/frame_log.h"

#include <fmt/format.h>

#include <csignal>
#include <cstring>
#include <memory>

#include "daemon/log.h"

namespace host {
namespace {

std::unique_ptr<capture_file> the_capture;

}  // namespace

// A file that grows beyond the limit of the process is a write that fails, and not a signal.
void begin_frame_capture(const std::string& path) {
  std::signal(SIGXFSZ, SIG_IGN);
  the_capture = std::make_unique<capture_file>(path);
}

void capture_frame(frame_sender sender, uint64 client, std::span<const std::byte> head,
                   std::span<const std::byte> payload) {
  if (the_capture == nullptr) return;
  const int error = the_capture->write(sender, client, head, payload);
  if (error == 0) return;
  the_capture.reset();
  log_line(log_level::error, fmt::format("the capture ended, the switch is served on: {}.", std::strerror(error)));
}

}  // namespace host
