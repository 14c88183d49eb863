// XBuf beside a model that is checked after every step.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>
#include <win32.h>

#include "support/choices.h"
#include "support/forms.h"
#include "support/guarded.h"
#include "support/journal.h"

namespace {

using test::CallWithWords;
using test::GuardedBuffer;
using test::Line;

constexpr DWORD kObject = sizeof(void*) == 4 ? 32 : 48;  // bytes

// What an XBuf has to be, from nothing but its buffer and what is in use; and its buffer's bytes.
struct Model {
  BYTE* pBuffer = nullptr;
  DWORD cbBuffer = 0, cbFront = 0, cbBack = 0, owns = 0;
  std::vector<BYTE> bytes = {};

  DWORD Free() const { return cbBuffer - cbFront - cbBack; }

  // The block that a reservation gives; NULL, and nothing changed, if there is none.
  BYTE* Take(WORD side, DWORD cb) {
    if (cb == 0 || cb > Free() || side > UT_XBUF_BACK) return nullptr;
    (side == UT_XBUF_FRONT ? cbFront : cbBack) += cb;
    return pBuffer + (side == UT_XBUF_FRONT ? cbFront - cb : cbBuffer - cbBack);
  }
  void Check(HXBUF hXBuf) const {
    BYTE* const pFree = Free() ? pBuffer + cbFront : nullptr;
    BYTE* const pBack = cbBack ? pBuffer + cbBuffer - cbBack : nullptr;
    const BYTE* blocks[] = {pBuffer, cbFront ? pBuffer : nullptr, pBack, pFree, nullptr};
    const DWORD sizes[] = {cbBuffer, cbFront, cbBack, Free(), 0};
    for (DWORD i = 0; i < 5; ++i) {
      EXPECT_EQ(CallWithWords(utXBufGetBlock, hXBuf, 0x00010000u | i), blocks[i]) << i;
      EXPECT_EQ(CallWithWords(utXBufGetBlockSize, hXBuf, 0x00010000u | i), sizes[i]) << i;
    }
    EXPECT_EQ(utXBufGetSpaceUsed(hXBuf), cbFront + cbBack);
    const std::uintptr_t fields[] = {UT_XBUF_SIGNATURE,
                                     std::uintptr_t(pBuffer),
                                     cbBuffer,
                                     std::uintptr_t(pFree),
                                     Free(),
                                     cbFront,
                                     cbBack,
                                     owns};
    if (sizeof(void*) == sizeof(DWORD)) EXPECT_EQ(std::memcmp(hXBuf, fields, sizeof fields), 0);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), pBuffer));
  }
};

// One XBuf, its model, and steps that do the same to both.
class XBufWalk {
 public:
  // It begins with an XBuf that got no buffer: of no size, at any address, or of no memory.
  explicit XBufWalk(test::Choices& choices) : choices_(choices) {
    const unsigned kind = choices.Below(3);
    host::FailCall(kind == 2 ? 2 : 0, 0, "LocalAlloc");
    hXBuf_ = utXBufCreate(kind == 2 ? 8 : 0, kind == 1 ? this : nullptr);
    host::FailCall(0);
    model_.Check(hXBuf_);
  }
  ~XBufWalk() {
    utXBufDestroy(hXBuf_);
    for (void* block : own_) LocalFree(block);
  }
  void Step() {
    const unsigned kind = choices_.Below(16);
    kind == 0 ? UseBuffer() : kind == 1 ? SetOwner() : kind < 4 ? SetSpaceUsed() : Place();
    model_.Check(hXBuf_);
  }

 private:
  DWORD AnySize() {
    return choices_.Of<DWORD>({0, 1, choices_.Below(24), model_.Free(), model_.Free() + 1, ~15u});
  }
  void UseBuffer() {
    const DWORD cb = choices_.Below(8) == 0 ? 0 : 1 + choices_.Below(70);
    BYTE* block = nullptr;
    if (choices_.Below(2) != 0) own_.push_back(block = static_cast<BYTE*>(LocalAlloc(0, cb)));
    const bool isOwned = block == nullptr;
    const bool works = cb != 0 && !(isOwned && choices_.Below(4) == 0);
    host::FailCall(works ? 0 : 1, 0, "LocalAlloc");
    EXPECT_EQ(utXBufUseBuffer(hXBuf_, cb, block), works);
    host::FailCall(0);
    if (isOwned) block = static_cast<BYTE*>(utXBufGetBlock(hXBuf_, UT_XBUF_BLOCK_BUFFER));
    model_ = {};
    if (works) model_ = {block, cb, 0, 0, isOwned, std::vector<BYTE>(cb, isOwned ? 0 : 0xA5)};
  }
  void SetOwner() {
    const DWORD owner = choices_.Of<DWORD>({0, 1, 0x80000000u});
    utXBufSetOwner(hXBuf_, owner);
    if (model_.pBuffer == nullptr) return;
    std::erase(own_, model_.pBuffer);
    if (owner == 0) own_.push_back(model_.pBuffer);
    model_.owns = owner;
  }
  void SetSpaceUsed() {
    const DWORD front = AnySize(), back = choices_.Below(3) ? AnySize() : model_.cbBuffer - front;
    const bool fits = std::uint64_t{front} + back <= model_.cbBuffer;
    EXPECT_EQ(utXBufSetSpaceUsed(hXBuf_, front, back), fits);
    if (fits) model_.cbFront = front, model_.cbBack = back;
  }
  // A reservation, or one of the three copies, with garbage above the side's 16 bits.
  void Place() {
    const DWORD kind = choices_.Below(4);
    const DWORD cb = kind < 2 ? AnySize() : (1 + choices_.Below(9)) * (kind - 1);
    const DWORD side = choices_.Below(2) * 0x10000u + choices_.Of<DWORD>({0, 0, 1, 1, 2, 0x100});
    GuardedBuffer source(cb < 100 ? cb : 0);
    if (kind >= 2) std::memset(source.data() + cb - (kind - 1), 0, kind - 1);
    void* from = kind != 0 && choices_.Below(8) == 0 ? nullptr : source.data();
    BYTE* expected = from ? model_.Take(static_cast<WORD>(side), cb) : nullptr;
    if (expected && kind != 0) std::memcpy(&model_.bytes[expected - model_.pBuffer], from, cb);
    LPVOID block = this;
    LPVOID* ppBlock = choices_.Below(8) != 0 ? &block : nullptr;
    const BOOL result = kind == 0   ? CallWithWords(utXBufReserveBlock, hXBuf_, side, cb, ppBlock)
                        : kind == 1 ? CallWithWords(utXBufCopyTo, hXBuf_, side, from, cb, ppBlock)
                        : kind == 2
                            ? CallWithWords(utXBufCopyStringTo, hXBuf_, side, from, ppBlock)
                            : CallWithWords(utXBufCopyWideStringTo, hXBuf_, side, from, ppBlock);
    EXPECT_EQ(result, from == nullptr || cb == 0 || expected != nullptr);
    EXPECT_EQ(block, ppBlock ? expected : static_cast<LPVOID>(this));
  }

  test::Choices& choices_;
  HXBUF hXBuf_;
  Model model_;
  std::vector<void*> own_;  // blocks that the XBuf must not free
};

PROPERTY(XBuf, AgreesWithTheModelAfterEveryStep, 80) {
  XBufWalk walk(choices);
  for (int step = 0; choices.More() && !testing::Test::HasFailure(); ++step) {
    SCOPED_TRACE(testing::Message() << "step " << step);
    walk.Step();
  }
}

TEST(XBuf, AllocatesAndFreesInOrder) {
  host::FailCall(1, 0, "LocalAlloc");
  EXPECT_EQ(utXBufCreate(0, nullptr), nullptr);
  host::StartJournal();
  const HXBUF hXBuf = utXBufCreate(9, nullptr);
  void* const first = utXBufGetBlock(hXBuf, UT_XBUF_BLOCK_BUFFER);
  utXBufUseBuffer(hXBuf, 8, nullptr);
  void* const second = utXBufGetBlock(hXBuf, UT_XBUF_BLOCK_BUFFER);
  utXBufDestroy(hXBuf);
  EXPECT_EQ(test::Text(host::TakeJournal()),
            Line("LocalAlloc", 0x40, kObject) + Line("LocalAlloc", 0x40, 9) +
                Line("LocalFree", first) + Line("LocalAlloc", 0x40, 8) + Line("LocalFree", second) +
                Line("LocalFree", hXBuf));
}

TEST(XBuf, RefusesWhatIsNoLivingObject) {
  const HXBUF destroyed = utXBufCreate(8, nullptr);
  utXBufDestroy(destroyed);  // its bytes stay readable here
  GuardedBuffer odd(5);      // at an odd address, with nothing behind that may be read
  const DWORD wrong = UT_XBUF_SIGNATURE ^ 0x80000000u;
  std::memcpy(odd.data(), &wrong, sizeof wrong);
  host::StartJournal();
  for (const HXBUF hXBuf : {HXBUF{}, destroyed, odd.As<HXBUF__>()}) {
    SCOPED_TRACE(hXBuf);
    utXBufDestroy(hXBuf);
    utXBufSetOwner(hXBuf, 1);
    EXPECT_EQ(utXBufUseBuffer(hXBuf, 8, nullptr), 0);
    EXPECT_EQ(utXBufSetSpaceUsed(hXBuf, 0, 0), 0);
    EXPECT_EQ(utXBufGetSpaceUsed(hXBuf), 0u);
    EXPECT_EQ(utXBufGetBlock(hXBuf, UT_XBUF_BLOCK_BUFFER), nullptr);
    EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_BUFFER), 0u);
    for (const bool isData : {false, true}) {
      LPVOID blocks[] = {&odd, &odd, &odd, &odd, &odd};
      EXPECT_EQ(utXBufReserveBlock(hXBuf, UT_XBUF_BACK, isData, &blocks[0]), 0);
      EXPECT_EQ(utXBufCopyTo(hXBuf, UT_XBUF_BACK, "a", isData, &blocks[1]), !isData);
      EXPECT_EQ(utXBufCopyTo(hXBuf, 2, isData ? "a" : nullptr, 1, &blocks[2]), !isData);
      EXPECT_EQ(utXBufCopyStringTo(hXBuf, 2, isData ? "" : nullptr, &blocks[3]), !isData);
      EXPECT_EQ(utXBufCopyWideStringTo(hXBuf, 2, isData ? u"" : nullptr, &blocks[4]), !isData);
      EXPECT_THAT(blocks, testing::ElementsAre(&odd, nullptr, nullptr, nullptr, nullptr));
    }
  }
  for (const auto& call : host::TakeJournal()) EXPECT_EQ(call.operation, "lstrlenA");
}

}  // namespace
