// Stands in for the shell's output channel: the host's parts are tested without a shell.
#pragma once

#include <string>

// What was printed since the last call.
std::string take_captured_output();
