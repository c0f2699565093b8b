// The failed requests of the running command, in sentences.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "transport/failures.h"

namespace host {

// "the service 'ip' is not running."
std::string sentence_of(const failure& failed);

// Begins empty.
class account {
 public:
  account() { forget_failures(); }

  bool is_empty() const { return noted_failures().empty(); }

  // True when something was noted since the last call of take_new(): the command, or the interface that is being shown,
  // has failed.
  bool has_new() const { return noted_failures().size() > taken_; }

  using sentence_taker = std::function<void(std::string_view)>;

  // A sentence for each service and library that failed since the last call.
  void take_new(const sentence_taker& take);

  // The same for all failures.
  void take_all(const sentence_taker& take) const;

 private:
  std::size_t taken_ = 0;
};

}  // namespace host
