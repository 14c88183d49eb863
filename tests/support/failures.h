// Runs a piece of work with its first platform call failing, then its second, and so on.
#ifndef TESTS_SUPPORT_FAILURES_H
#define TESTS_SUPPORT_FAILURES_H

#include <gtest/gtest.h>
#include <host.h>

#include <string>

namespace test {

// Calls work() for n = 1, 2, … with the n-th platform call failing with `code`, up to and including
// the first run in which no call fails. What it checks may depend on host::FailureCame(). Returns
// how many runs had a failure.
template <class Work>
unsigned ForEachFailure(DWORD code, Work work) {
  for (unsigned n = 1;; ++n) {
    SCOPED_TRACE("platform call " + std::to_string(n) + " fails");
    host::FailCall(n, code);
    work();
    const bool came = host::FailureCame();
    host::FailCall(0);
    if (!came) return n - 1;
  }
}

}  // namespace test

#endif  // TESTS_SUPPORT_FAILURES_H
