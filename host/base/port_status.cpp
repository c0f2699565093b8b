#include "base/port_status.h"

#include <algorithm>
#include <deque>

#include "platform/syserr.h"

namespace host {
namespace {

constexpr uint32 kFirst = 0x40F10000;
constexpr std::size_t kMostTexts = 0xFFFF;

std::deque<std::string> texts;  // those there stay where they are

}  // namespace

uint32 status_of_text(const std::string& text) {
  const auto found = std::find(texts.begin(), texts.end(), text);
  const auto place = static_cast<uint32>(found - texts.begin());
  if (found != texts.end()) return kFirst + place;
  if (texts.size() == kMostTexts) return PM_ERR_GENERAL;
  texts.push_back(text);
  return kFirst + place;
}

bool is_status_of_text(uint32 status) { return status >= kFirst && status - kFirst < kMostTexts; }

const char* text_of_port_status(uint32 status) {
  if (status == kPortStatusNoRight) return "not permitted: the right CAP_NET_ADMIN is missing";
  if (status == kPortStatusLookOnly) return "not permitted: this session may only look at the switch";
  return is_status_of_text(status) && status - kFirst < texts.size() ? texts[status - kFirst].c_str() : nullptr;
}

}  // namespace host
