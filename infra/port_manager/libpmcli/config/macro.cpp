// Configuration macros: several settings, each owned by another command library, by one command.

#include <dlfcn.h>

#include <cstdio>
#include <memory>
#include <span>

#include "config/conf_ranges.h"
#include "pmcli/command.h"
#include "pmcli/config.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

struct close_library {
  void operator()(void* library) const { dlclose(library); }
};
using open_library = std::unique_ptr<void, close_library>;

// The step's function, or null. A library that was opened for it is left in `library`.
pm_macro_step_t find_step(const _lib_api& step, open_library* library) {
  if (step.lib_name == nullptr) return step.api_info.function;
  void* handle = nullptr;
  const pm_library_function_t function = pm_get_function_from_library(step.lib_name, step.api_info.name, &handle);
  library->reset(handle);
  return reinterpret_cast<pm_macro_step_t>(function);
}

// False when the step cannot be found, which ends the macro. The texts of a step that is missing and of one that fails
// differ by the full stop; this is intended.
bool run_step(paraminfo_t* param, const _lib_api& step) {
  pm_port_cfg_status_t* results = nullptr;
  uint32 num_ports = 0;
  {
    open_library library;
    const pm_macro_step_t function = find_step(step, &library);
    if (function == nullptr) {
      std::puts("Command not successful");
      return false;
    }
    if (function(param, &results, &num_ports) != 0) std::puts("Command not successful.");
  }
  const heap_block<pm_port_cfg_status_t> block(results);
  print_cfg_status(step.api_desc, results, num_ports);
  return true;
}

}  // namespace

int32 pm_cli_run_macro(paraminfo_t* param, struct _lib_api* libapi, uint32 num_libs) {
  if (param == nullptr) return 1;
  if (param->ascii_gen != 0) return 0;
  if (find_conf_ranges(param) == nullptr) return 1;
  for (const _lib_api& step : std::span(libapi, num_libs))
    if (!run_step(param, step)) break;
  return 0;
}
