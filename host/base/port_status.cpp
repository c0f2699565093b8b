#include "base/port_status.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>

#include "platform/syserr.h"

namespace host {
namespace {

constexpr uint32 kFirst = 0x40F10000;
constexpr std::size_t kMostTexts = 0xFFFF;

std::deque<std::string> texts;  // those there stay where they are

constexpr uint32 kFirstPassing = 0x40F20000;
constexpr uint32 kMostPassingTexts = 4096;

std::array<std::string, kMostPassingTexts> passing_texts;
std::uint64_t num_passing_texts = 0;  // that were made

bool is_known_passing(uint32 status) {
  return status >= kFirstPassing &&
         status - kFirstPassing < std::min<std::uint64_t>(num_passing_texts, kMostPassingTexts);
}

}  // namespace

uint32 status_of_text(const std::string& text) {
  const auto found = std::find(texts.begin(), texts.end(), text);
  const auto place = static_cast<uint32>(found - texts.begin());
  if (found != texts.end()) return kFirst + place;
  if (texts.size() == kMostTexts) return PM_ERR_GENERAL;
  texts.push_back(text);
  return kFirst + place;
}

// The ports of a range that are refused for the same few reasons share their statuses.
uint32 status_of_passing_text(const std::string& text) {
  constexpr std::uint64_t kSearched = 64;
  const std::uint64_t oldest = num_passing_texts - std::min(num_passing_texts, kSearched);
  std::uint64_t at = num_passing_texts;
  while (at > oldest && passing_texts[(at - 1) % kMostPassingTexts] != text) --at;
  if (at == oldest) {
    at = ++num_passing_texts;
    passing_texts[(at - 1) % kMostPassingTexts] = text;
  }
  return kFirstPassing + static_cast<uint32>((at - 1) % kMostPassingTexts);
}

bool is_status_of_text(uint32 status) {
  return (status >= kFirst && status - kFirst < kMostTexts) ||
         (status >= kFirstPassing && status - kFirstPassing < kMostPassingTexts);
}

const char* text_of_port_status(uint32 status) {
  if (status == kPortStatusNoRight) return "not permitted: the right CAP_NET_ADMIN is missing";
  if (status == kPortStatusLookOnly) return "not permitted: this session may only look at the switch";
  if (is_known_passing(status)) return passing_texts[status - kFirstPassing].c_str();
  return is_status_of_text(status) && status - kFirst < texts.size() ? texts[status - kFirst].c_str() : nullptr;
}

}  // namespace host
