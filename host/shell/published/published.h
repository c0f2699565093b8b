// The published documents, generated from the shell's tables: docs/commands.md and docs/schema.json.
#pragma once

#include <string>

namespace host {

// Every command with its words, in Markdown.
std::string command_reference();

// The JSON Schema (draft 2020-12) of the structured form: the envelope, and the record of each display.
std::string json_schema();

}  // namespace host
