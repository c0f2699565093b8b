// The interface manager.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/interface_manager.h"

namespace pmcli_test {

struct recorded_interface_manager {
  std::map<if_index_t, uint32> layers;                // without an entry: IF_LAYER_2
  std::map<if_index_t, uint16> native_vlans;          // without an entry: 1
  std::map<if_index_t, uint16> access_vlans;          // without an entry: 1
  int32 interface_manager_status = 0;                 // the status in each answered record
  std::map<std::string, int32> record_statuses;       // the same by function, in its place
  std::map<if_index_t, int32> layer_statuses;         // the same by interface, of the layer query
  std::vector<if_index_t> layers_asked;               // of im_get_ifindex_layermode_list(), in order
  std::vector<std::string> interface_manager_starts;  // arguments of im_ext_sbcr_init(), as "262 0 clish"
};

}  // namespace pmcli_test
