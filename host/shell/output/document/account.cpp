#include "shell/output/document/account.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <vector>

#include "base/port_status.h"
#include "platform/syserr.h"

namespace host {
namespace {

std::string text_of(const failure& failed) {
  switch (failed.what) {
    case fault::unreachable: return "is not running";
    case fault::unanswered: return "did not answer in time";
    case fault::rejected: return "refused a request";
    case fault::damaged: return "answered with less than it promised";
    case fault::disconnected: break;
    case fault::error: {
      const char* const text = syserr2str(failed.error);
      return fmt::format("answered with an error: {}", text == nullptr ? std::to_string(failed.error) : text);
    }
    case fault::not_opened: return "cannot be opened";
    case fault::without_function: return fmt::format("has no function {}", failed.function);
  }
  return "failed";
}

bool is_library(const failure& failed) {
  return failed.what == fault::not_opened || failed.what == fault::without_function;
}

// The first failure of each service and library.
void take_each(std::span<const failure> noted, const account::sentence_taker& take) {
  std::vector<std::string_view> named;
  for (const failure& it : noted) {
    if (std::find(named.begin(), named.end(), it.source) != named.end()) continue;
    named.push_back(it.source);
    take(sentence_of(it));
  }
}

}  // namespace

std::string sentence_of(const failure& failed) {
  if (failed.what == fault::disconnected) return std::string(failed.source);
  return fmt::format("the {} '{}' {}.", is_library(failed) ? "library" : "service", failed.source, text_of(failed));
}

bool account::has_lost_switch() const {
  const std::span<const failure> noted = noted_failures();
  return std::any_of(noted.begin(), noted.end(), [](const failure& it) { return it.what == fault::disconnected; });
}

bool account::has_missing_right() const {
  const std::span<const failure> noted = noted_failures();
  return std::any_of(noted.begin(), noted.end(), [](const failure& it) {
    return it.what == fault::error && is_missing_right(static_cast<uint32>(it.error));
  });
}

void account::take_new(const sentence_taker& take) {
  if (!has_new()) return;
  const std::size_t first = taken_;
  taken_ = noted_failures().size();
  take_each(noted_failures().subspan(first), take);
}

void account::take_all(const sentence_taker& take) const { take_each(noted_failures(), take); }

}  // namespace host
