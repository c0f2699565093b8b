#include "host/shell/output/captured_command.h"

#include <sys/mman.h>
#include <unistd.h>

#include "platform/cmd_channel.h"

namespace session {

captured_command::captured_command(host::output_settings settings) : file_(memfd_create("output", 0)) {
  settings.descriptor = file_;
  output_.emplace(settings, filters_);
}

captured_command::~captured_command() {
  output_.reset();
  close(file_);
}

cmd_rx_handle_t* captured_command::channel() const {
  paraminfo_t block{};
  return cmd_paraminfo_to_rxhandle(&block);
}

std::string captured_command::finish() {
  output_.reset();
  std::string text;
  char part[4096];
  lseek(file_, 0, SEEK_SET);
  for (ssize_t size = 0; (size = read(file_, part, sizeof part)) > 0;)
    text.append(part, static_cast<std::size_t>(size));
  return text;
}

}  // namespace session
