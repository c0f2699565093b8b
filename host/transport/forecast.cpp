#include "transport/forecast.h"

#include <algorithm>
#include <cstring>

#include "platform/wire.h"

namespace host {
namespace {

constexpr std::size_t kInterfacesAhead = 64;        // of a kind
constexpr std::size_t kLongestForeseenBytes = 256;  // of a request's payload

uint32 word_at(std::span<const std::byte> payload, std::size_t at) {
  be32 word;
  std::memcpy(&word, payload.data() + at, sizeof word);
  return word;
}

}  // namespace

bool forecast::is_short(std::span<const std::byte> payload) { return payload.size() <= kLongestForeseenBytes; }

uint32 forecast::interface_of(std::span<const std::byte> payload) const {
  for (std::size_t at = 0; at + sizeof(be32) <= payload.size(); ++at)
    if (const uint32 word = word_at(payload, at); places_.contains(word)) return word;
  return 0;
}

void forecast::begin(std::string_view display, std::span<const uint32> interfaces) {
  end();
  if (interfaces.size() < 2) return;
  display_ = display;
  if (const auto earlier = learned_.find(display); earlier != learned_.end()) patterns_ = std::move(earlier->second);
  for (pattern& it : patterns_) it.since = it.until = it.num_used = 0;
  for (const uint32 it : interfaces) {
    const auto of = static_cast<kind>(it >> 26);
    std::vector<uint32>& same = interfaces_[of];
    if (places_.try_emplace(it, place{of, same.size()}).second) same.push_back(it);
  }
}

// Patterns that the display hardly needed are learned again.
void forecast::end() {
  if (places_.empty()) return;
  std::erase_if(patterns_, [this](const pattern& it) {
    const auto known = interfaces_.find(it.of);
    return known != interfaces_.end() && !it.is_usual(std::min(it.until, known->second.size()));
  });
  learned_[display_] = std::move(patterns_);
  patterns_.clear();
  places_.clear();
  interfaces_.clear();
}

forecast::pattern forecast::pattern_of(uint32 if_index, const mts_addr_t& to, mts_opc_t opcode,
                                       std::span<const std::byte> payload) const {
  pattern found{
      .request = {to, opcode, {payload.begin(), payload.end()}}, .offsets = {}, .of = places_.at(if_index).of};
  for (std::size_t at = 0; at + sizeof(be32) <= payload.size();) {
    const bool is_it = word_at(payload, at) == if_index;
    if (is_it) found.offsets.push_back(at);
    at += is_it ? sizeof(be32) : 1;
  }
  for (const std::size_t at : found.offsets) std::memset(found.request.payload.data() + at, 0, sizeof(be32));
  return found;
}

forecast::pattern* forecast::find(const pattern& what) {
  const auto found = std::find_if(patterns_.begin(), patterns_.end(), [&what](const pattern& it) {
    return it.of == what.of && it.request.opcode == what.request.opcode && it.request.to.sap == what.request.to.sap &&
           it.request.to.node == what.request.to.node && it.offsets == what.offsets &&
           it.request.payload == what.request.payload;
  });
  return found == patterns_.end() ? nullptr : &*found;
}

std::size_t forecast::end_of(kind of, std::size_t at) const {
  return std::min(at + kInterfacesAhead, interfaces_.at(of).size());
}

void forecast::foresee(pattern& what, std::size_t until, std::vector<foreseen_request>& ahead) {
  const std::vector<uint32>& interfaces = interfaces_.at(what.of);
  for (; what.until < until; ++what.until) {
    foreseen_request& added = ahead.emplace_back(what.request);
    const be32 if_index = interfaces[what.until];
    for (const std::size_t at : what.offsets) std::memcpy(added.payload.data() + at, &if_index, sizeof if_index);
  }
}

// The requests for the first interface of a kind are learned. The first one for the next interface has them all
// foreseen; a request that only some interfaces need is foreseen as far as the others are.
std::vector<foreseen_request> forecast::note_new(uint32 if_index, const mts_addr_t& to, mts_opc_t opcode,
                                                 std::span<const std::byte> payload) {
  std::vector<foreseen_request> ahead;
  pattern found = pattern_of(if_index, to, opcode, payload);
  const auto [of, at] = places_.at(if_index);
  pattern* const known = find(found);
  if (known == nullptr) {
    std::size_t until = 0;
    for (const pattern& it : patterns_)
      if (it.of == of && it.is_usual(at)) until = std::max(until, it.until);
    pattern& learned = patterns_.emplace_back(std::move(found));
    learned.since = learned.until = at + 1;
    foresee(learned, until, ahead);
    return ahead;
  }
  if (known->until > at || !known->is_usual(at)) return ahead;
  known->until = at + 1;
  for (pattern& it : patterns_) {
    if (it.of != of || !it.is_usual(at)) continue;
    it.until = std::max(it.until, at);
    foresee(it, end_of(of, at), ahead);
  }
  return ahead;
}

// The next ones are foreseen while half of these are left, so that their answers are there in time.
std::vector<foreseen_request> forecast::note_foreseen(uint32 if_index, const mts_addr_t& to, mts_opc_t opcode,
                                                      std::span<const std::byte> payload) {
  std::vector<foreseen_request> ahead;
  pattern* const used = find(pattern_of(if_index, to, opcode, payload));
  if (used == nullptr) return ahead;
  ++used->num_used;
  const auto [of, at] = places_.at(if_index);
  if (used->until > at + kInterfacesAhead / 2) return ahead;
  for (pattern& it : patterns_)
    if (it.of == of && it.is_usual(at) && it.until > at) foresee(it, end_of(of, at + kInterfacesAhead / 2), ahead);
  return ahead;
}

}  // namespace host
