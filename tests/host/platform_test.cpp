// The platform layer's journal, planned failures and account of memory.
#include <codepage.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>

#include <string>
#include <vector>

namespace {

class Platform : public testing::Test {
 protected:
  void SetUp() override { host::Reset(); }
};

TEST_F(Platform, RecordsCallsAndFailsThePlannedOne) {
  char text[8] = "xab";
  CharNextA(text);  // before the journal
  host::StartJournal();
  lstrlenA(text);
  lstrcpyA(text, text + 1);
  const auto at = reinterpret_cast<std::uintptr_t>(text);
  const std::vector<host::Call> expected = {{"lstrlenA", {at}}, {"lstrcpyA", {at, at + 1}}};
  EXPECT_EQ(host::TakeJournal(), expected);
  EXPECT_TRUE(host::TakeJournal().empty());

  lstrcpyA(text, "ab");
  host::FailCall(2, 5);
  CharNextA(text);  // can't fail and doesn't count
  EXPECT_EQ(lstrlenA(text), 2);
  EXPECT_FALSE(host::FailureCame());
  EXPECT_EQ(lstrcatA(text, "c"), nullptr);
  EXPECT_TRUE(host::FailureCame());
  EXPECT_EQ(host::FailureCode(), 5u);
  EXPECT_EQ(lstrlenA(text), 2);

  host::FailCall(1, 0, "lstrcatA");
  EXPECT_EQ(lstrlenA(text), 2);
  EXPECT_EQ(lstrcatA(text, "c"), nullptr);
  EXPECT_TRUE(host::SetCodePage(932));
  EXPECT_FALSE(host::SetCodePage(437));
  EXPECT_EQ(host::CodePage(), 932u);
  host::Reset();
  EXPECT_EQ(host::CodePage(), 1252u);
}

TEST_F(Platform, KeepsAccountOfMemory) {
  auto* zero = static_cast<char*>(LocalAlloc(LMEM_ZEROINIT, 64));
  EXPECT_NE(*static_cast<char*>(LocalAlloc(0, 1)), 0);
  EXPECT_EQ(LocalAlloc(0, 0xFFFFFFF0u), nullptr);
  LocalFree(zero);
  LocalFree(nullptr);
  EXPECT_EQ(host::LivingBlocks(), 1u);
  EXPECT_EQ(host::HeapError(), "");
  zero[63] = 1;
  EXPECT_EQ(host::HeapError(), "block written after it was freed");
  EXPECT_EQ(LocalFree(zero), zero);
  EXPECT_EQ(host::HeapError(), "block freed twice");
  host::Reset();
  EXPECT_EQ(host::LivingBlocks(), 0u);
  EXPECT_EQ(LocalFree(this), this);
  EXPECT_EQ(host::HeapError(), "free of no allocated block");
}

}  // namespace
