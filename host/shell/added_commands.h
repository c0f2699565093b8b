// Commands of other libraries: their tables are read, checked, and added to the grammar, the views and the schema.
#pragma once

#include <string>

namespace host {

// Loads a command library for the rest of the process and adds the commands of its table (pmsh/commands.h). Throws
// library_error, one line that names the file and what is wrong with it; then the shell must not be used. Call it
// before the first command.
void add_commands_of(const std::string& file);

// The same of all command libraries in a directory, by name. A directory that does not exist has none.
void add_commands_in(const std::string& directory);

}  // namespace host
