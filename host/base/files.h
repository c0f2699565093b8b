// Files that the user names: replaced as a whole, and read as a whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

// Writes a text to a file. Links are followed. A regular file is replaced as a whole: a reader sees all of the text or
// all of the old file, also when this process is killed; it keeps its mode and its owner. A device, a pipe, and the
// standard output under any of its names are written to. Returns 0 or an errno; ENXIO for a pipe that no process reads.
int write_file(const std::string& path, std::string_view text);

// Creates the parent directories of a path. Returns 0, or the errno of the first missing one that cannot be created.
int make_directories_of(const std::string& path);

// Whether there is something with this name, also when it cannot be read.
bool exists(const std::string& path);

// Whether there is a regular file with this name.
bool is_regular_file(const std::string& path);

// The text of a file that can be read to its end: lines of up to 64 KiB, without zero bytes. A pipe is read until its
// writers have closed it. Otherwise nothing, and `error` is one sentence that names the file, and the line of such a
// fault. Waiting for a writer ends when `is_cancelled`, if it is not null, returns true.
std::optional<std::string> read_file(const std::string& path, std::string& error, bool (*is_cancelled)() = nullptr);

}  // namespace host
