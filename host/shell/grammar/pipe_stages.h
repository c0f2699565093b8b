// The parts of a line after "|".
#pragma once

#include <span>
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

// Reads the parts of a line that are pipes. Returns the first error, or an empty text.
std::string read_pipes(std::span<const line_part> parts, std::vector<pipe_stage>& pipes);

// Whether one of the pipes of a line is "| json", also when the line cannot be parsed.
bool asks_for_document(const cut_line& line);

}  // namespace host
