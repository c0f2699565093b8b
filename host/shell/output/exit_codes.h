// How a command ended, for scripts.
#pragma once

namespace host {

enum exit_code {
  kDone = 0,
  kUsage = 1,
  kServiceFailed = 2,
  kSomeInterfacesFailed = 3,
  kNoSuchInterface = 4,  // or module
  kNotPermitted = 5,
  kInterrupted = 130,  // as in shells, for a program that SIGINT ended
};

}  // namespace host
