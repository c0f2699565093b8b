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

  // Whether the connection to the switch was lost: no interface is at fault, whatever the command has shown of it.
  bool has_lost_switch() const;

  // Whether a service refused a request that the session may not send.
  bool has_missing_right() const;

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
