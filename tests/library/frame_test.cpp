// The rule for buffer sizes and the module entry.
#include <gtest/gtest.h>
#include <tavkit.h>

#include "support/entry.h"
#include "support/guarded.h"

namespace {

TEST(BufferSize, IsComparedUnsignedAndUncheckedCoversAll) {
  const struct {
    DWORD cbBuffer, cbNeeded;
    BOOL covers;
  } rows[] = {
      {0, 0, 1},
      {0, 1, 0},
      {1, 1, 1},
      {5, 4, 1},
      {4, 5, 0},
      {0x80000000, 0x7FFFFFFF, 1},
      {0x7FFFFFFF, 0x80000000, 0},
      {0xFFFFFFFE, 0xFFFFFFFE, 1},
      {0xFFFFFFFE, UT_SIZE_UNCHECKED, 0},
      {UT_SIZE_UNCHECKED, UT_SIZE_UNCHECKED, 1},
      {UT_SIZE_UNCHECKED, 1, 1},
  };
  test::GuardedBuffer buffer(0);  // the first byte of it must not be touched
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.cbBuffer << " for " << row.cbNeeded);
    EXPECT_EQ(utIsBufferSize(row.cbBuffer, row.cbNeeded), row.covers);
    EXPECT_EQ(utIsBuffer(buffer.data(), row.cbBuffer, row.cbNeeded), row.covers);
    EXPECT_EQ(utIsBuffer(nullptr, row.cbBuffer, row.cbNeeded), 0);
  }
}

TEST(ModuleEntry, StoresTheHandleAtProcessAttachOnlyAndNeverRefuses) {
  const HMODULE before = test::StoredModuleHandle();
  const auto attached = reinterpret_cast<HMODULE>(0x12340000);
  const auto other = reinterpret_cast<HMODULE>(0x56780000);
  EXPECT_EQ(test::CallModuleEntry(attached, DLL_PROCESS_ATTACH), 1);
  EXPECT_EQ(test::StoredModuleHandle(), attached);
  for (const DWORD reason : {0u, 2u, 3u, 99u, 0x10001u, 0xFFFFFFFFu}) {
    EXPECT_EQ(test::CallModuleEntry(other, reason), 1) << reason;
    EXPECT_EQ(test::StoredModuleHandle(), attached) << reason;
  }
  test::CallModuleEntry(before, DLL_PROCESS_ATTACH);
}

}  // namespace
