// Commands of other libraries: their tables are read, checked, and added to the grammar, the views and the schema.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "shell/library/command_library.h"

namespace host {

// A library of others that cannot be used: one line with the file and the fault.
struct added_library_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Loads a command library for the rest of the process and adds the commands of its table (pmsh/commands.h). Throws
// added_library_error; then the shell must not be used. Call it before the first command.
void add_commands_of(const std::string& file);

// Loads all command libraries of a directory, in the order of their names. A missing directory has none.
void add_commands_in(const std::string& directory);

// Loads the command library of a directory, the command libraries in its "pmsh" directory, and those that are named.
// Throws library_error for the first, added_library_error for the others.
command_library load_libraries(const std::filesystem::path& directory, const std::vector<std::string>& named);

}  // namespace host
