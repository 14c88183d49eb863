#include "host.h"

#include <cstring>
#include <thread>
#include <utility>

namespace host {
namespace {

bool recording;
std::vector<Call> journal;

unsigned callsToFailure;  // 0: no failure is planned
const char* failingOperation;
DWORD failureCode;
bool failureCame;
bool interleaving;

void Watch() { detail::watching = recording || callsToFailure != 0 || interleaving; }

std::vector<void (*)()>& Resets() {
  static std::vector<void (*)()> resets;
  return resets;
}

}  // namespace

bool detail::watching;

bool detail::Enter(const char* operation, std::vector<std::uintptr_t> arguments, bool canFail) {
  if (interleaving) std::this_thread::yield();
  if (recording) journal.push_back({operation, std::move(arguments)});
  if (!canFail || callsToFailure == 0) return false;
  if (failingOperation != nullptr && std::strcmp(operation, failingOperation) != 0) return false;
  if (--callsToFailure != 0) return false;
  failureCame = true;
  Watch();
  return true;
}

void Reset() {
  recording = false;
  interleaving = false;
  journal.clear();
  FailCall(0);
  for (auto* reset : Resets()) reset();
}

bool OnReset(void (*reset)()) {
  Resets().push_back(reset);
  return true;
}

void StartJournal() {
  recording = true;
  journal.clear();
  Watch();
}

std::vector<Call> TakeJournal() {
  recording = false;
  Watch();
  return std::exchange(journal, {});
}

void FailCall(unsigned n, DWORD code, const char* operation) {
  callsToFailure = n;
  failureCode = code;
  failingOperation = operation;
  failureCame = false;
  Watch();
}

bool FailureCame() { return failureCame; }

void InterleaveThreads(bool on) {
  interleaving = on;
  Watch();
}

DWORD FailureCode() { return failureCode; }

}  // namespace host
