// The kernel's devices, files, and the command interpreter.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/types.h"

namespace pmcli_test {

struct recorded_kernel {
  struct kernel_interface {
    std::vector<uint8> hardware_address;  // six bytes
    int mtu_bytes = 1500;
    bool is_up = true;
  };
  std::map<std::string, kernel_interface> kernel_interfaces;  // by device name; others are unknown to the kernel
  std::set<std::string> silent_requests;                      // interface requests that fail, as "SIOCGIFMTU"
  // "socket 1", "SIOCGIFMTU eth1", "close 1", in order; a socket that fails is "no socket".
  std::vector<std::string> kernel_events;
  std::set<std::string> files;              // that open() finds
  std::vector<std::string> shell_commands;  // of system(), which runs nothing
};

}  // namespace pmcli_test
