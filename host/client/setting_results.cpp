#include "client/setting_results.h"

#include <utility>

namespace host {
namespace {

setting_results noted;

}  // namespace

void note_failed_request() {
  noted.was_asked = true;
  noted.has_failed = true;
}

void note_results(std::span<const pm_port_cfg_status_t> ports) {
  noted.was_asked = true;
  noted.ports.insert(noted.ports.end(), ports.begin(), ports.end());
}

const setting_results& noted_setting_results() { return noted; }

setting_results take_setting_results() { return std::exchange(noted, {}); }

}  // namespace host
