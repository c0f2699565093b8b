// Functions that C calls, which no exception may leave.
#pragma once

namespace host {

// Returns what `body` returns, or `failure` if it throws: the result that the function's contract has for failures.
template <typename Result, typename Body>
Result no_throw(Result failure, Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

}  // namespace host
