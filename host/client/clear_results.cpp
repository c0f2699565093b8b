#include "client/clear_results.h"

#include <utility>

#include "platform/port_manager.h"

namespace host {
namespace {

std::vector<clear_result> noted;

}  // namespace

void note_clear(uint32 sap, if_index_t low, if_index_t high, syserr_t error) {
  noted.push_back({low, high, sap == MTS_SAP_PORT_MANAGER ? "the port manager" : "the statistics service", error});
}

const std::vector<clear_result>& noted_clear_results() { return noted; }

std::vector<clear_result> take_clear_results() { return std::exchange(noted, {}); }

}  // namespace host
