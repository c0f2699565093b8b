#include "shell/output/terminal/locale.h"

#include <cctype>
#include <cstdlib>
#include <string>
#include <string_view>

namespace host {

bool has_utf8_locale() {
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || value[0] == '\0') continue;
    std::string plain;
    for (const char character : std::string_view(value))
      if (character != '-') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return plain.find("utf8") != std::string::npos;
  }
  return false;
}

}  // namespace host
