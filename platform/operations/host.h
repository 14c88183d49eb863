// Controls of the platform layer, for tests: which call fails, what was called, and the way back to
// the state at program start. They are for one thread at a time; while none is in use, the
// operations themselves may run on several threads.
#ifndef PLATFORM_OPERATIONS_HOST_H
#define PLATFORM_OPERATIONS_HOST_H

#include <win32.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace host {

// One call from the library: the operation and its arguments, pointers as their addresses.
struct Call {
  std::string operation;
  std::vector<std::uintptr_t> arguments;

  friend bool operator==(const Call&, const Call&) = default;
};

// Puts the whole platform layer back to its state at program start.
void Reset();

// The part of it that is in this header.
void ResetControls();

// From here on every call is recorded, until TakeJournal() hands the record over.
void StartJournal();
std::vector<Call> TakeJournal();

// Has every call shown to `look` before it does its work, until the next Reset().
void ShowCalls(std::function<void(const Call&)> look);

// Lets the n-th call from here on fail (1 is the next one), counting those operations only that can
// fail, or only `operation` if one is named. `code` is the error of an operation that returns one.
void FailCall(unsigned n, DWORD code = 0, const char* operation = nullptr);

// Whether the call that FailCall() named has come.
bool FailureCame();

// The code to fail with.
DWORD FailureCode();

namespace detail {
extern bool watching;
bool Enter(const char* operation, std::vector<std::uintptr_t> arguments, bool canFail);

template <class T>
std::uintptr_t Word(T value) {
  if constexpr (sizeof(T) < sizeof(std::uintptr_t)) {
    return static_cast<std::uintptr_t>(value);
  } else {
    return (std::uintptr_t)value;  // a pointer, a handle or a number, whichever it is
  }
}
}  // namespace detail

// Opens an operation that cannot fail.
template <class... Arguments>
void Enter(const char* operation, Arguments... arguments) {
  if (detail::watching) detail::Enter(operation, {detail::Word(arguments)...}, false);
}

// Opens an operation that can fail: true if this call has to.
template <class... Arguments>
bool Fails(const char* operation, Arguments... arguments) {
  return detail::watching && detail::Enter(operation, {detail::Word(arguments)...}, true);
}

}  // namespace host

#endif  // PLATFORM_OPERATIONS_HOST_H
