// Files that commands write for the user.
#pragma once

#include <string>

namespace host {

// Asks the user before a regular file is replaced. Returns an error, or an empty text when the file may be written.
std::string refuse_to_replace(const std::string& path);

// Why a file was not written: the sentence for an errno, or for the ENXIO of write_file(); empty for 0.
std::string write_fault(const std::string& path, int error);

// The sentence for a file that was written, as a line.
std::string written_sentence(const std::string& path);

}  // namespace host
