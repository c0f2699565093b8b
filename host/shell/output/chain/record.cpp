#include "shell/output/chain/record.h"

#include <string_view>

namespace host {

void recording_sink::take(const text_line& it) {
  if (it.is_bound || it.text.find_first_not_of(" \t") == std::string_view::npos) return;
  const bool is_layout = drops_layout_ && it.is_of_channel && !it.has_failed;
  if (!is_layout && !document_.add_message(it.text)) has_lost_ = true;
}

void recording_sink::end() {
  document_.end(exit_code_);
  hand_on();
  line_link::end();
}

void recording_sink::hand_on() {
  std::string_view text = document_.ready();
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    next().take({text.substr(0, end)});
    text.remove_prefix(end + 1);
  }
  document_.ready().erase(0, document_.ready().size() - text.size());
}

}  // namespace host
