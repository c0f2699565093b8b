// The resources of modules.
#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

int32 pm_get_module_resources(mts_q_handle_t q, uint32 count, const pm_mod_resource_category_t* category, uint32 types,
                              uint32 module_key, mts_msg_ref_t* answer) {
  RecordingPlatform& platform = platform_for("pm_get_module_resources");
  platform.resource_queries.push_back({q, count, category->category, category->id, types, module_key});
  if (const int32 error = platform.failure_of("pm_get_module_resources"); error != 0) return error;
  *answer = receive_message(platform, "the resources of a module", {platform.resources});
  return 0;
}

}  // extern "C"
