// Names of files.
#include <cstdio>

#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

int32 uri_map_targetfs_path_get(const char* uri, char* path, uint32 size) {
  RecordingPlatform& platform = platform_for("uri_map_targetfs_path_get");
  if (const int32 error = platform.failure_of("uri_map_targetfs_path_get"); error != 0) return error;
  const auto found = platform.paths.find(uri);
  if (found == platform.paths.end()) return 1;
  std::snprintf(path, size, "%s", found->second.c_str());
  return 0;
}

}  // extern "C"
