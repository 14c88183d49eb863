// Starts the tests of the library: on the sources linked into this program, on the DLL that
// TAVKIT_DLL names, or on Windows (tests/windows/).
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

#include "support/choices.h"
#include "support/entry.h"
#include "support/guarded_buffer.h"

#ifdef TAVKIT_NATIVE

extern "C" BOOL UT_API DllMain(HMODULE hModule, DWORD dwReason, LPVOID pReserved);
namespace tavkit {
extern HMODULE g_hModule;
}

BOOL test::CallModuleEntry(HMODULE hModule, DWORD dwReason) {
  return DllMain(hModule, dwReason, nullptr);
}
HMODULE test::StoredModuleHandle() { return tavkit::g_hModule; }

bool test::Connect() { return true; }

#elif !defined(_WIN32)

#include <client.h>
#include <operation_table.h>
#include <signal.h>
#include <ucontext.h>

static std::unique_ptr<host::Module> module;

BOOL test::CallModuleEntry(HMODULE hModule, DWORD dwReason) {
  return module->CallEntry(hModule, dwReason);
}

HMODULE test::StoredModuleHandle() {
  const auto data = module->FindSection(".data");
  HMODULE hModule = nullptr;
  if (data.size() >= sizeof hModule) std::memcpy(&hModule, data.data(), sizeof hModule);
  return hModule;
}

// Says where in the DLL a test crashes. The program then ends of the same signal.
static void ReportCrash(int number, siginfo_t*, void* context) {
#ifdef __x86_64__
  constexpr int kPlace = REG_RIP;
#else
  constexpr int kPlace = REG_EIP;
#endif
  const auto place = static_cast<ucontext_t*>(context)->uc_mcontext.gregs[kPlace];
  const auto offset = static_cast<std::uintptr_t>(place) - std::uintptr_t(module->handle());
  std::printf("signal %d at TAVKIT.DLL+0x%zx\n", number, std::size_t{offset});
  std::fflush(stdout);
}

bool test::Connect() {
  struct sigaction action = {};
  action.sa_sigaction = ReportCrash;
  action.sa_flags = SA_SIGINFO | static_cast<int>(SA_RESETHAND);
  sigaction(SIGSEGV, &action, nullptr);
  const char* path = std::getenv("TAVKIT_DLL");
  try {
    const char* const shipped =
        sizeof path == 8 ? "dist/x64/bin/TAVKIT.DLL" : "dist/bin/TAVKIT.DLL";
    module = host::ConnectTavkit(path == nullptr ? shipped : path, host::FindPlatformOperation);
    return true;
  } catch (const host::ModuleError& error) {
    std::cerr << "the DLL under test can't be loaded: " << error.what() << '\n';
    return false;
  }
}

#endif

namespace {

// Every test begins with the platform layer as it is at program start, and leaves no memory and no
// open key behind. The first failure ends it: what follows one would mostly repeat it.
class FreshPlatform : public testing::EmptyTestEventListener {
 public:
  static inline bool mayThrow = false;

 private:
  void OnTestStart(const testing::TestInfo&) override {
    host::Reset();
    mayThrow = true;
  }
  void OnTestPartResult(const testing::TestPartResult& result) override {
    if (!result.failed() || !std::exchange(mayThrow, false)) return;
    throw testing::AssertionException(result);
  }
  void OnTestEnd(const testing::TestInfo& info) override {
    mayThrow = false;
    if (info.result()->Passed()) test::ExpectNothingLeft();
  }
};

// A destructor calls this, so it must not throw.
void ReportOverrun(const char* what) {
  const bool mayThrow = std::exchange(FreshPlatform::mayThrow, false);
  ADD_FAILURE() << what;
  FreshPlatform::mayThrow = mayThrow;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  test::GuardedBuffer::OnOverrun() = ReportOverrun;
  testing::UnitTest::GetInstance()->listeners().Append(new FreshPlatform);
  return test::Connect() ? RUN_ALL_TESTS() : 1;
}
