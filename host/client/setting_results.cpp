#include "client/setting_results.h"

#include <utility>

namespace host {
namespace {

setting_results noted;
syserr_t creation_error = 0;

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

void note_creation(syserr_t error) { creation_error = error; }

syserr_t take_creation_error() { return std::exchange(creation_error, 0); }

}  // namespace host
