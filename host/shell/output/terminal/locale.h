// The locale of the user, as the environment names it.
#pragma once

namespace host {

// Whether the environment names a locale of UTF-8 for characters.
bool has_utf8_locale();

}  // namespace host
