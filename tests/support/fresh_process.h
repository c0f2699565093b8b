// What the library keeps for the life of the process, tested from the start.
#pragma once

#include <functional>

namespace pmcli_test {

// Runs the body in a process of its own, which inherits what the library keeps by now and gives nothing back. The
// body's failures, and its end by a signal, fail the test.
void in_fresh_process(const std::function<void()>& body);

}  // namespace pmcli_test
