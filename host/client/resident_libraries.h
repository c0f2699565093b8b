// The client libraries that displays open by name for each request (libstatcl.so and others).
#pragma once

#include <string>

namespace host {

// Loads the libraries that are present in `directory` and keeps them, so that opening one by name costs next to
// nothing. A missing one stays missing: whoever opens it gets the loader's error.
void keep_libraries_resident(const std::string& directory);

}  // namespace host
