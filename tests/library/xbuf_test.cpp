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
    const BYTE* blocks[] = {pBuffer, cbFront ? pBuffer : nullptr, pBack, pFree};
    const DWORD sizes[] = {cbBuffer, cbFront, cbBack, Free()};
    for (const DWORD i : {0, 1, 2, 3, 4, 8, 0x100}) {
      const DWORD selector = 0x00010000u | i;
      EXPECT_EQ(CallWithWords(utXBufGetBlock, hXBuf, selector), i < 4 ? blocks[i] : nullptr) << i;
      EXPECT_EQ(CallWithWords(utXBufGetBlockSize, hXBuf, selector), i < 4 ? sizes[i] : 0) << i;
    }
    EXPECT_EQ(utXBufGetSpaceUsed(hXBuf), cbFront + cbBack);
    using Word = std::uintptr_t;
    const Word fields[] = {UT_XBUF_SIGNATURE, Word(pBuffer), cbBuffer, Word(pFree), Free(),
                           cbFront,           cbBack,        owns};
    if (sizeof(void*) == sizeof(DWORD)) EXPECT_EQ(std::memcmp(hXBuf, fields, sizeof fields), 0);
    EXPECT_TRUE(test::SameBytes({pBuffer, pBuffer + bytes.size()}, bytes));
  }
};

// What gives a block, and the size of its terminator.
enum class Source { kReservation, kBytes, kString, kWideString };
constexpr DWORD kTerminator[] = {0, 0, 1, 2};

// One XBuf, its model, and steps that do the same to both.
class XBufWalk {
 public:
  // It begins with an XBuf that got no buffer: of no size, at any address, or of no memory.
  explicit XBufWalk(test::Choices& choices) : choices_(choices) {
    const bool lacksMemory = choices.Below(3) == 0, hasAddress = choices.Below(2) != 0;
    host::FailCall(lacksMemory ? 2 : 0, 0, "LocalAlloc");
    hXBuf_ = utXBufCreate(lacksMemory ? 8 : 0, hasAddress && !lacksMemory ? this : nullptr);
    host::FailCall(0);
    model_.Check(hXBuf_);
  }
  ~XBufWalk() {
    utXBufDestroy(hXBuf_);
    for (void* block : own_) LocalFree(block);
  }
  void Step() {
    const unsigned step = choices_.Below(16);
    step == 0 ? UseBuffer() : step == 1 ? SetOwner() : step < 4 ? SetSpaceUsed() : Place();
    model_.Check(hXBuf_);
  }

 private:
  DWORD AnySize() {
    return choices_.Of<DWORD>({0, 1, choices_.Below(24), model_.Free(), model_.Free() + 1, ~15u});
  }
  void UseBuffer() {
    const DWORD cb =
        choices_.Below(8) == 0 ? 0 : 1 + choices_.Below(choices_.Of<DWORD>({70, 70, 70, 70'000}));
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
    const DWORD owner = choices_.Of<DWORD>({0, 1, 0x100, 0x10000, 0x80000000u});
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
    const auto kind = Source(choices_.Below(4));
    const DWORD terminator = kTerminator[int(kind)];
    const DWORD cb = terminator ? (1 + choices_.Below(9)) * terminator : AnySize();
    const DWORD side = choices_.Below(2) * 0x10000u + choices_.Of<DWORD>({0, 0, 1, 1, 2, 0x100});
    GuardedBuffer source(cb < 100'000 ? cb : 0);
    std::memset(source.data() + source.size() - terminator, 0, terminator);
    const bool copies = kind != Source::kReservation;
    const void* from = copies && choices_.Below(8) == 0 ? nullptr : source.data();
    BYTE* expected = from ? model_.Take(static_cast<WORD>(side), cb) : nullptr;
    if (expected && copies) std::memcpy(&model_.bytes[expected - model_.pBuffer], from, cb);
    LPVOID block = this;
    LPVOID* ppBlock = choices_.Below(8) != 0 ? &block : nullptr;
    BOOL result = -1;
    const auto call = [&](auto* function, auto... arguments) {
      result = CallWithWords(function, hXBuf_, side, arguments..., ppBlock);
    };
    if (kind == Source::kReservation) call(utXBufReserveBlock, cb);
    if (kind == Source::kBytes) call(utXBufCopyTo, from, cb);
    if (kind == Source::kString) call(utXBufCopyStringTo, from);
    if (kind == Source::kWideString) call(utXBufCopyWideStringTo, from);
    SCOPED_TRACE(testing::Message() << "source " << int(kind) << ", side " << side << ", " << cb);
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
  for (int step = 0; choices.More(); ++step) {
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

TEST(XBuf, FreesNoMissingBuffer) {
  const HXBUF hXBuf = utXBufCreate(0, nullptr);
  host::StartJournal();
  for (const bool isLast : {false, true}) {
    const DWORD owns = 1;
    std::memcpy(reinterpret_cast<BYTE*>(hXBuf) + kObject - sizeof owns, &owns, sizeof owns);
    isLast ? utXBufDestroy(hXBuf) : void(utXBufUseBuffer(hXBuf, 0, nullptr));
  }
  EXPECT_EQ(test::Text(host::TakeJournal()), Line("LocalFree", hXBuf));
}

void CheckRefused(HXBUF hXBuf) {
  SCOPED_TRACE(hXBuf);
  void* const mark = &hXBuf;
  const auto wide = test::Wide("");
  host::StartJournal();
  utXBufDestroy(hXBuf);
  utXBufSetOwner(hXBuf, 1);
  EXPECT_EQ(utXBufUseBuffer(hXBuf, 8, nullptr), 0);
  EXPECT_EQ(utXBufSetSpaceUsed(hXBuf, 0, 0), 0);
  EXPECT_EQ(utXBufGetSpaceUsed(hXBuf), 0u);
  EXPECT_EQ(utXBufGetBlock(hXBuf, UT_XBUF_BLOCK_BUFFER), nullptr);
  EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_BUFFER), 0u);
  for (const bool isData : {false, true}) {
    LPVOID blocks[] = {mark, mark, mark, mark, mark};
    EXPECT_EQ(utXBufReserveBlock(hXBuf, UT_XBUF_BACK, isData, &blocks[0]), 0);
    EXPECT_EQ(utXBufCopyTo(hXBuf, UT_XBUF_BACK, "a", isData, &blocks[1]), !isData);
    EXPECT_EQ(utXBufCopyTo(hXBuf, 2, isData ? "a" : nullptr, 1, &blocks[2]), !isData);
    EXPECT_EQ(utXBufCopyStringTo(hXBuf, 2, isData ? "" : nullptr, &blocks[3]), !isData);
    EXPECT_EQ(utXBufCopyWideStringTo(hXBuf, 2, isData ? wide.c_str() : nullptr, &blocks[4]),
              !isData);
    EXPECT_THAT(blocks, testing::ElementsAre(mark, nullptr, nullptr, nullptr, nullptr));
  }
  for (const auto& call : host::TakeJournal()) EXPECT_EQ(call.operation, "lstrlenA");
}

TEST(XBuf, RefusesWhatIsNoObject) {
  DWORD signature;
  for (const DWORD wrong : {0x80u, 0x8000u, 0x800000u, 0x80000000u, UT_XBUF_SIGNATURE + 0u}) {
    GuardedBuffer odd(5);  // at an odd address, and nothing that follows it may be read
    signature = UT_XBUF_SIGNATURE ^ wrong;
    std::memcpy(odd.data(), &signature, sizeof signature);
    CheckRefused(odd.As<HXBUF__>());
  }
  CheckRefused(nullptr);
}

TEST(XBuf, RefusesWhatWasDestroyed) {
  test::StayOnHostLayer("freed blocks that stay readable");
  const HXBUF hXBuf = utXBufCreate(8, nullptr);
  utXBufDestroy(hXBuf);
  DWORD signature = 1;
  std::memcpy(&signature, hXBuf, sizeof signature);
  EXPECT_EQ(signature, 0u);
  CheckRefused(hXBuf);
}

}  // namespace
