#include "source/kernel/stored_names.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/digits.h"
#include "base/replace_file.h"
#include "source/kernel/own_file.h"
#include "switch/interface_range.h"

namespace host {
namespace {

constexpr std::size_t kNone = SIZE_MAX;
constexpr char kGone[] = "gone:";  // begins the key of an entry that no device can have

// The single interface that a text names; 0 for another text.
if_index_t interface_of(std::string_view text) {
  std::vector<interface_span> spans;
  if (parse_interface_range(text, spans) || spans.size() != 1 || spans[0].low != spans[0].high) return 0;
  return index_of(spans[0].word->kinds.front(), spans[0].low);
}

std::string text_of(if_index_t if_index) {
  const interface_word* const word = word_of(decode_index(if_index).type);
  return word == nullptr ? std::string() : interface_text(*word, number_of(if_index));
}

// Locks a file, waiting up to a second for another process. Returns the reason of a failure.
std::string lock(int descriptor) {
  constexpr int kTries = 100;
  constexpr useconds_t kPauseUsec = 10'000;
  for (int i = 0; i < kTries; ++i) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return {};
    if (errno != EWOULDBLOCK && errno != EINTR) return std::strerror(errno);
    usleep(kPauseUsec);
  }
  return "another process holds it";
}

bool is_storable(name_reason reason) {
  return reason == name_reason::default_route || reason == name_reason::bond || reason == name_reason::device_index;
}

}  // namespace

// ---- The file -------------------------------------------------------------------------------------------------------

// "KEY NUMBER MAC INTERFACE"
std::optional<stored_names::entry> stored_names::read_entry(std::string_view line) {
  entry it;
  it.key = take_until(' ', line);
  if (!it.key.starts_with("address:") && !it.key.starts_with("name:") && !it.key.starts_with(kGone))
    return std::nullopt;
  if (!read_number(take_until(' ', line), it.number) || !read_hex(take_until(' ', line), it.mac)) return std::nullopt;
  it.if_index = interface_of(line);
  return it.if_index == 0 ? std::nullopt : std::optional(it);
}

std::string stored_names::written(const entry& it) {
  return it.key + " " + std::to_string(it.number) + " " + hex_of(it.mac) + " " + text_of(it.if_index) + "\n";
}

// A key and an interface are used once: the first line counts. Entries of this process are kept.
void stored_names::read() {
  std::string fault;
  const std::string text = read_own_file(path_, fault);
  if (!fault.empty()) return give_up("read", fault);
  std::string_view rest = text;
  entries stored;
  std::unordered_set<std::string> keys;
  std::unordered_set<if_index_t> interfaces;
  const auto add = [&](entry it) {
    if (keys.contains(it.key) || interfaces.contains(it.if_index)) return;
    keys.insert(it.key);
    interfaces.insert(it.if_index);
    stored.push_back(std::move(it));
  };
  if (take_until('\n', rest) == head_)
    while (!rest.empty()) {
      // The last line ends with a newline, unless it is cut.
      const bool is_whole = rest.find('\n') != std::string_view::npos;
      if (auto it = read_entry(take_until('\n', rest)); it && is_whole) add(std::move(*it));
    }
  std::map<std::string_view, const entry*> mine;
  for (const entry& it : entries_) mine[it.key] = &it;
  for (entry& it : stored)
    if (const auto own = mine.find(it.key); own != mine.end() && own->second->if_index == it.if_index)
      it.reason = own->second->reason;
  for (const entry& it : entries_) add(it);
  entries_ = std::move(stored);
}

void stored_names::write() {
  std::string text = head_ + "\n";
  for (const entry& it : entries_) text += written(it);
  if (const int error = replace_file(path_, text, nullptr); error != 0) give_up("write", std::strerror(error));
}

void stored_names::give_up(const char* failed, const std::string& reason) {
  fault_ =
      std::string("the interfaces of devices are not stored: cannot ") + failed + " '" + path_ + "': " + reason + ".";
  path_.clear();
}

void stored_names::keep_in(const std::string& path) {
  path_ = path;
  if (path_.empty()) return;
  head_ = line_of_namespace();
}

// ---- Devices --------------------------------------------------------------------------------------------------------

std::vector<std::string> stored_names::keys_of(const std::vector<kernel_link>& links) {
  std::map<std::array<uint8, 6>, uint32> count;
  for (const kernel_link& link : links)
    if (link.permanent_mac) ++count[*link.permanent_mac];
  std::vector<std::string> keys;
  keys.reserve(links.size());
  for (const kernel_link& link : links) {
    const bool has_address = link.permanent_mac && count[*link.permanent_mac] == 1;
    const bool is_word = link.name.find_first_of(" \n") == std::string::npos;
    keys.push_back(has_address ? "address:" + hex_of(*link.permanent_mac)
                   : is_word   ? "name:" + link.name
                               : std::string());
  }
  return keys;
}

stored_names::matches stored_names::match(const std::vector<kernel_link>& links) const {
  std::unordered_map<uint32, std::size_t> by_number;
  std::unordered_map<std::string_view, std::size_t> by_key;
  by_number.reserve(entries_.size());
  by_key.reserve(entries_.size());
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    by_number[entries_[i].number] = i;  // a number is that of the last device that had it
    by_key.try_emplace(entries_[i].key, i);
  }
  matches found{keys_of(links), std::vector<std::size_t>(links.size(), kNone)};
  std::vector<bool> is_taken(entries_.size());
  const auto take = [&](std::size_t device, std::size_t place) {
    found.places[device] = place;
    is_taken[place] = true;
  };
  for (std::size_t i = 0; i < links.size(); ++i) {
    const auto it = by_number.find(links[i].number);
    const bool is_same =
        it != by_number.end() && links[i].mac != std::array<uint8, 6>{} && entries_[it->second].mac == links[i].mac;
    if (is_same) take(i, it->second);
  }
  for (std::size_t i = 0; i < links.size(); ++i) {
    const auto it = by_key.find(found.keys[i]);
    if (found.places[i] == kNone && it != by_key.end() && !is_taken[it->second]) take(i, it->second);
  }
  return found;
}

known_interfaces stored_names::known_of(const std::vector<kernel_link>& links, const matches& found) const {
  known_interfaces known;
  std::vector<bool> is_present(entries_.size());
  for (std::size_t i = 0; i < links.size(); ++i) {
    if (found.places[i] == kNone) continue;
    const entry& it = entries_[found.places[i]];
    if (may_be_known_as(links[i], it.if_index)) known.of_devices[links[i].number] = {it.if_index, it.reason};
    is_present[found.places[i]] = true;
  }
  for (std::size_t i = 0; i < entries_.size(); ++i)
    if (!is_present[i]) known.of_others.insert(entries_[i].if_index);
  return known;
}

// Gives an entry a key, which the entry of a device that is gone may have.
void stored_names::set_key(entry& of, std::string key) {
  if (of.key == key) return;
  const auto other = std::find_if(entries_.begin(), entries_.end(), [&](const entry& it) { return it.key == key; });
  if (other != entries_.end()) other->key = kGone + std::to_string(other->if_index);
  of.key = std::move(key);
}

// Whether there is something to store.
bool stored_names::add_new(const std::vector<kernel_link>& links, const matches& found,
                           const std::vector<mapped_device>& mapped) {
  bool is_changed = false;
  std::size_t i = 0;
  for_each_mapped(links, mapped, [&](const mapped_device& it, const kernel_link& link) {
    while (links[i].number != link.number) ++i;
    const std::string& key = found.keys[i];
    const if_index_t if_index = switched_index(it.if_index);
    entry* const old = found.places[i] == kNone ? nullptr : &entries_[found.places[i]];
    const bool holds = old != nullptr && may_be_known_as(link, old->if_index);
    if (key.empty() || (!holds && !(is_storable(it.reason) && may_be_known_as(link, if_index)))) return;
    if (holds && old->key == key && old->number == link.number && old->mac == link.mac) return;
    is_changed = true;
    if (old == nullptr) {
      entries_.push_back({key, link.number, link.mac, if_index, it.reason});
      return;
    }
    set_key(*old, key);
    old->number = link.number;
    old->mac = link.mac;
    if (holds) return;
    old->if_index = if_index;
    old->reason = it.reason;
  });
  return is_changed;
}

std::vector<mapped_device> stored_names::map(const std::vector<kernel_link>& links, uint32 management,
                                             const requested_interfaces& requested) {
  if (!path_.empty() && !std::exchange(is_read_, true)) read();
  if (path_.empty() && entries_.empty()) return map_devices(links, management, requested);
  matches found = match(links);
  std::vector<mapped_device> mapped = map_devices(links, management, requested, known_of(links, found));
  if (path_.empty()) return mapped;
  entries before = entries_;
  if (!add_new(links, found, mapped)) return mapped;
  const open_file lock_file(
      open((path_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW, 0600));
  if (const std::string fault = lock_file.descriptor < 0 ? std::strerror(errno) : lock(lock_file.descriptor);
      !fault.empty()) {
    give_up("lock", fault);
    return mapped;
  }
  entries_ = std::move(before);
  read();
  found = match(links);
  mapped = map_devices(links, management, requested, known_of(links, found));
  if (add_new(links, found, mapped) && !path_.empty()) write();
  return mapped;
}

}  // namespace host
