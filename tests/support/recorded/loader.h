// Libraries opened by name, and what the loader says.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace pmcli_test {

// A function behind a symbol. Null: dlsym() finds nothing and dlerror() says nothing.
struct library_function {
  library_function() = default;
  library_function(std::nullptr_t) {}
  template <typename Function>  // a function, or a lambda without captures
  requires std::is_pointer_v<decltype(+std::declval<Function>())> library_function(Function function)
      : address(reinterpret_cast<void*>(+function)) {}

  void* address = nullptr;
};
using library_symbols = std::map<std::string, library_function>;

// The statistics client, the IP statistics and the card configuration are there, answering from what is programmed for
// them; the VLAN manager is there without symbols.
struct recorded_loader {
  std::map<std::string, library_symbols> libraries;
  std::string loader_error = "undefined symbol";    // what dlerror() says of a symbol that is not there
  std::optional<std::string> earlier_loader_error;  // what dlerror() still has to say from before
  // "open libstatcl.so lazy" (or "now"), "find statcl_get_port_client_stats", "close libstatcl.so", in order; an open
  // that fails is "miss libstatcl.so lazy".
  std::vector<std::string> loader_events;
};

}  // namespace pmcli_test
