#include "settings/running_config.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "base/text_argument.h"
#include "platform/if_index.h"
#include "settings/settings.h"
#include "settings/written_settings.h"
#include "switch/if_index_layout.h"
#include "switch/range_text.h"

namespace host {
namespace {

// The settings that a configuration must contain, in the order of their table.
class named_settings {
 public:
  explicit named_settings(const interface& now) : now_(now) {
    for (const setting& of : all_settings())
      if (of.get(now.settings) && has_setting_of_its_own(now, of)) own_.push_back(&of);
    interface at_start = now;
    at_start.settings = now.at_start;
    for (const setting* const of : own_)
      if (!is_usual(*of, now) || !is_usual(*of, at_start) || is_inherited(*of)) named_.push_back(of);
    interface fresh = now;
    fresh.settings = default_settings(now);
    while (add_what_differs_on(at_start) || add_what_differs_on(fresh)) {
    }
    std::sort(named_.begin(), named_.end());
  }

  const std::vector<const setting*>& all() const { return named_; }

 private:
  // The settings that a created port gets from its parent depend on the parent.
  bool is_inherited(const setting& of) const {
    return of.traits.of_parent && now_.is_created && if_index_is_sub_intf(now_.if_index) != 0;
  }

  bool is_named(const setting* of) const { return std::find(named_.begin(), named_.end(), of) != named_.end(); }

  // Loads the listed settings on a port with these initial ones, and lists those that then differ: settings may follow
  // from others.
  bool add_what_differs_on(interface loaded) {
    for (const setting* const of : own_) {
      if (of->type == HOST_CFG_CHANNEL || !is_named(of)) continue;
      of->put(loaded, *of->get(now_.settings));
      if (of->traits.follow != nullptr) of->traits.follow(loaded);
    }
    const std::size_t count = named_.size();
    for (const setting* const of : own_)
      if (of->type != HOST_CFG_CHANNEL && !is_equal(*of, loaded.settings, now_.settings) && !is_named(of))
        named_.push_back(of);
    return named_.size() != count;
  }

  const interface& now_;
  std::vector<const setting*> own_;
  std::vector<const setting*> named_;
};

// Values that cannot be set on this kind of interface, as comments.
std::string fixed_settings_of(const interface& it) {
  std::string lines;
  for (const setting& of : all_settings()) {
    const auto value = of.get(it.settings);
    if (!value || of.has_it(decode_index(it.if_index).type) || is_usual(of, it)) continue;
    for (const std::string& command : commands_for(of, *value))
      lines += fmt::format("  ! cannot be set: {}\n", command);
  }
  return lines;
}

std::string lines_of(const interface& it) { return settings_of(it) + fixed_settings_of(it); }

}  // namespace

std::string settings_of(const interface& it) {
  std::string lines;
  if (it.settings.is_edge) lines += "  switchport host\n";
  // Before it takes its own settings, or joins another port-channel.
  const bool leaves_channel = it.at_start.channel != 0 && it.settings.channel != it.at_start.channel;
  if (leaves_channel) lines += "  no channel-group\n";
  const named_settings named(it);
  for (const setting* const of : named.all()) {
    if (leaves_channel && of->type == HOST_CFG_CHANNEL && it.settings.channel == 0) continue;
    for (const std::string& command : commands_for(*of, *of->get(it.settings))) lines += "  " + command + "\n";
  }
  return lines;
}

std::string running_config(const machine& of, std::span<const if_index_t> interfaces,
                           std::span<const if_index_t> deleted) {
  std::string text = fmt::format("! Settings of {}\nconfigure\n", text_argument(of.name));
  if (!deleted.empty()) text += fmt::format("no interface {}\n", range_text(deleted));
  for (std::size_t first = 0; first < interfaces.size();) {
    const interface* const it = of.find(interfaces[first]);
    const std::string lines = it != nullptr ? lines_of(*it) : std::string();
    const bool is_created = it != nullptr && it->is_created;
    const auto is_like_first = [&](const interface* other) {
      return other != nullptr && other->is_created == is_created && lines_of(*other) == lines;
    };
    std::size_t end = first + 1;
    while (end < interfaces.size() && is_next(interfaces[end - 1], interfaces[end]) &&
           is_like_first(of.find(interfaces[end])))
      ++end;
    if (is_created || !lines.empty())
      text += fmt::format("interface {}\n{}", range_text(interfaces.subspan(first, end - first)), lines);
    first = end;
  }
  return text + "end\n";
}

}  // namespace host
