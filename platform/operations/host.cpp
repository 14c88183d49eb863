#include "host.h"

#include <cstring>
#include <utility>

#include "state.h"

namespace host {
namespace {

// The quick question of every operation, told apart from the state it follows from.
void Watch() {
  const Controls& controls = state->controls;
  detail::watching = controls.recording || controls.observer || controls.callsToFailure != 0;
}

}  // namespace

std::optional<State> state(std::in_place);

bool detail::watching;

bool detail::Enter(const char* operation, std::vector<std::uintptr_t> arguments, bool canFail) {
  Controls& controls = state->controls;
  if (controls.observer) controls.observer({operation, arguments});
  if (controls.recording) controls.journal.push_back({operation, std::move(arguments)});
  if (!canFail || controls.callsToFailure == 0) return false;
  const char* const failing = controls.failingOperation;
  if (failing != nullptr && std::strcmp(operation, failing) != 0) return false;
  if (--controls.callsToFailure != 0) return false;
  controls.failureCame = true;
  Watch();
  return true;
}

void Reset() {
  state.emplace();
  Watch();
}

void StartJournal() {
  state->controls.recording = true;
  state->controls.journal.clear();
  Watch();
}

std::vector<Call> TakeJournal() {
  state->controls.recording = false;
  Watch();
  return std::exchange(state->controls.journal, {});
}

void ShowCalls(std::function<void(const Call&)> look) {
  state->controls.observer = std::move(look);
  Watch();
}

void FailCall(unsigned n, DWORD code, const char* operation) {
  Controls& controls = state->controls;
  controls.callsToFailure = n;
  controls.failingOperation = operation;
  controls.failureCode = code;
  controls.failureCame = false;
  Watch();
}

bool FailureCame() { return state->controls.failureCame; }

DWORD FailureCode() { return state->controls.failureCode; }

}  // namespace host
