// The kernel's report on one of its network devices.
#pragma once

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include "support/scope.h"
#include "support/text.h"

namespace pmcli {

class kernel_device {
 public:
  // `name` stays the caller's and outlives the device; at most 15 characters of it count.
  explicit kernel_device(const char* name) : socket_(::socket(AF_INET, SOCK_DGRAM, 0)), name_(name) {}

  // False when the kernel cannot be asked at all.
  bool is_open() const { return static_cast<bool>(socket_); }

  // Puts one interface request (SIOCGIF...). False when it fails, as it does for a device that is not there.
  bool ask(unsigned long request, ifreq* answer) const {
    *answer = {};
    copy_text(answer->ifr_name, sizeof answer->ifr_name, name_);
    return ::ioctl(socket_.get(), request, answer) == 0;
  }

 private:
  file_descriptor socket_;
  const char* name_;
};

}  // namespace pmcli
