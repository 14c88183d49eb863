#include "host.h"

#include <cstring>
#include <utility>

namespace host {
namespace {

struct Controls {
  bool recording = false;
  std::vector<Call> journal;
  std::function<void(const Call&)> observer;
  unsigned callsToFailure = 0;  // 0: no failure is planned
  const char* failingOperation = nullptr;
  DWORD failureCode = 0;
  bool failureCame = false;
};

Controls controls;

// The quick question of every operation, told apart from the state it follows from.
void Watch() {
  detail::watching = controls.recording || controls.observer || controls.callsToFailure != 0;
}

}  // namespace

bool detail::watching;

bool detail::Enter(const char* operation, std::vector<std::uintptr_t> arguments, bool canFail) {
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

void ResetControls() {
  controls = {};
  Watch();
}

void StartJournal() {
  controls.recording = true;
  controls.journal.clear();
  Watch();
}

std::vector<Call> TakeJournal() {
  controls.recording = false;
  Watch();
  return std::exchange(controls.journal, {});
}

void ShowCalls(std::function<void(const Call&)> look) {
  controls.observer = std::move(look);
  Watch();
}

void FailCall(unsigned n, DWORD code, const char* operation) {
  controls.callsToFailure = n;
  controls.failingOperation = operation;
  controls.failureCode = code;
  controls.failureCame = false;
  Watch();
}

bool FailureCame() { return controls.failureCame; }

DWORD FailureCode() { return controls.failureCode; }

}  // namespace host
