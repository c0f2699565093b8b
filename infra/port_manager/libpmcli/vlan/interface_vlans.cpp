// A port's layer and VLANs, from the interface manager.

#include "pmcli/vlan.h"
#include "support/interface_manager.h"
#include "support/lazily.h"

using namespace pmcli;

namespace {

constexpr interface_query kLayerMode = {
    lazily<im_get_ifindex_layermode_list>,
    "layermode query on if_idx 0x%x failed: \nstatus: 0x%x - %s\nif_info_status: 0x%x\n"};

constexpr interface_query kNativeVlan = {
    lazily<im_get_ifindex_native_vlan_list>,
    "im_get_ifindex_native_vlan_list failed for 0x%x \nstatus: 0x%x - %s\nif_vlan.status: 0x%x\n"};

constexpr interface_query kAccessVlan = {
    lazily<im_get_ifindex_access_vlan_list>,
    "im_get_ifindex_access_vlan_list failed for 0x%x \nstatus: 0x%x - %s\nif_info_status: 0x%x\n"};

}  // namespace

syserr_t pm_cli_get_native_vlan(if_index_t if_index, vlan_id_t* vlan_id) {
  syserr_t error = prepare_interface_manager();
  if (error != 0) return error;
  if_info_t answer;
  if (!ask_interface_manager(kNativeVlan, if_index, &answer, &error)) return error;
  *vlan_id = answer.val.vlan.vlan_id;
  return 0;
}

syserr_t pm_cli_get_layer_mode_access_vlan(if_index_t if_index, mts_q_handle_t, if_info_t* if_info,
                                           vlan_id_t* vlan_id) {
  syserr_t error = prepare_interface_manager();
  if (error != 0) return error;
  if (!ask_interface_manager(kLayerMode, if_index, if_info, &error)) return error;
  if (if_info->val.layer != IF_LAYER_2) return 0;
  if_info_t access;
  if (!ask_interface_manager(kAccessVlan, if_index, &access, &error)) return error;
  *vlan_id = access.val.vlan.vlan_id;
  return 0;
}
