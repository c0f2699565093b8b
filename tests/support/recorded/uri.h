// Names of files.
#pragma once

#include <map>
#include <string>

#include "platform/uri.h"

namespace pmcli_test {

struct recorded_uri {
  std::map<std::string, std::string> paths;  // of uri_map_targetfs_path_get(), by name
};

}  // namespace pmcli_test
