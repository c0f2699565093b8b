// The lines that users entered at the prompt, in a file that several shells share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace host {

enum { kHistoryLines = 1000 };

// The file; empty: there is no place for one.
std::string history_file();

// The last lines of the history, the oldest first; none when there is no file.
std::vector<std::string> read_history(const std::string& path);

// Appends a line in one write, so that lines of several shells do not mix. Returns 0 or an errno.
int append_to_history(const std::string& path, std::string_view line);

// Drops the oldest lines of a file that has many more than kHistoryLines. Lines that other shells append meanwhile
// stay.
void shorten_history(const std::string& path);

}  // namespace host
