// The parts of a line after "|".
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/grammar/cut_line.h"
#include "shell/output/pipes.h"

namespace host {

// The pipe that a word names or abbreviates; null when it is none or more than one.
const pipe_word* find_pipe(std::string_view written);

// The error of a word that names none.
std::string unknown_pipe(std::string_view written);

// Reads the part of a line after a "|". Returns the error, or an empty text.
std::string read_pipe(const line_part& part, std::vector<pipe_stage>& pipes);

}  // namespace host
