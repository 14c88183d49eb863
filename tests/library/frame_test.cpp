// The rule for buffer sizes and the module entry.
#include <gtest/gtest.h>
#include <tavkit.h>

#include "support/entry.h"
#include "support/guarded.h"

namespace {

TEST(BufferSize, IsComparedUnsignedAndUncheckedCoversAll) {
  // In the order of their size.
  const DWORD sizes[] = {0, 1, 4, 5, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, UT_SIZE_UNCHECKED};
  test::GuardedBuffer buffer(0);  // the first byte of it must not be touched
  for (const auto& cbBuffer : sizes) {
    for (const auto& cbNeeded : sizes) {
      SCOPED_TRACE(testing::Message() << cbBuffer << " for " << cbNeeded);
      const BOOL covers = &cbBuffer >= &cbNeeded;
      EXPECT_EQ(utIsBufferSize(cbBuffer, cbNeeded), covers);
      EXPECT_EQ(utIsBuffer(buffer.data(), cbBuffer, cbNeeded), covers);
      EXPECT_EQ(utIsBuffer(nullptr, cbBuffer, cbNeeded), 0);
    }
  }
}

TEST(ModuleEntry, StoresTheHandleAtProcessAttachOnlyAndNeverRefuses) {
  const HMODULE before = test::StoredModuleHandle();
  const auto attached = reinterpret_cast<HMODULE>(0x12340000);
  const auto other = reinterpret_cast<HMODULE>(0x56780000);
  EXPECT_EQ(test::CallModuleEntry(attached, DLL_PROCESS_ATTACH), 1);
  EXPECT_EQ(test::StoredModuleHandle(), attached);
  const DWORD reasons[] = {DLL_PROCESS_DETACH,           DLL_THREAD_ATTACH, DLL_THREAD_DETACH, 99,
                           0x10000 | DLL_PROCESS_ATTACH, 0xFFFFFFFF};
  for (const DWORD reason : reasons) {
    EXPECT_EQ(test::CallModuleEntry(other, reason), 1) << reason;
    EXPECT_EQ(test::StoredModuleHandle(), attached) << reason;
  }
  test::CallModuleEntry(before, DLL_PROCESS_ATTACH);
}

}  // namespace
