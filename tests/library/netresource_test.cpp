// NETRESOURCE records beside a byte-exact model of the flattened block.
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <array>
#include <deque>

#include "support/choices.h"
#include "support/forms.h"
#include "support/guarded.h"
#include "support/journal.h"

namespace {

using test::Bytes, test::GuardedBuffer, test::Line, test::SameBytes;

// The eight fields of a record, as numbers.
struct Fields {
  DWORD numbers[4];
  std::uintptr_t strings[4];
};

// A source record, its strings each followed by an inaccessible page. What the mask leaves out has
// an address that can't be read, and half of the sources stand at odd addresses.
template <class Form>
struct Source {
  using Record = std::conditional_t<Form::kIsWide, NETRESOURCEW, NETRESOURCEA>;

  Fields taken = {};             // the copy, but for the addresses of its strings
  std::array<Bytes, 4> strings;  // no bytes, not even a terminator: none is taken
  std::deque<GuardedBuffer> memory;
  std::vector<Bytes> placed;  // what the memory holds, before and after
  const Record* record;
  DWORD needed = sizeof(Record);

  Source(test::Choices& choices, DWORD mask) {
    const std::size_t odd = choices.Below(2);
    const auto place = [&](const Bytes& bytes) {
      auto& buffer = memory.emplace_back(bytes.size() + odd);
      buffer.Set(bytes);
      placed.push_back(buffer.Bytes());
      return buffer.data();
    };
    Fields fields;
    for (int i = 0; i < 4; ++i) {
      fields.numbers[i] = 0x12345678u + choices.Below(1u << 30);
      if (mask & UT_NR_SCOPE << i) taken.numbers[i] = fields.numbers[i];
      fields.strings[i] = choices.Below(2);
      if (!(mask & UT_NR_LOCALNAME << i)) continue;
      fields.strings[i] = 0;
      if (choices.Below(4) == 0) continue;
      const std::vector<typename Form::Char> letters = {
          'a', '\\', 0x7F, static_cast<typename Form::Char>(Form::kIsWide ? 0x100 : 0x81)};
      strings[i] = test::BytesOf(choices.Text(letters, 9 * choices.Below(2)));
      fields.strings[i] = reinterpret_cast<std::uintptr_t>(place(strings[i]));
      needed += strings[i].size();
    }
    const auto* start = reinterpret_cast<const unsigned char*>(&fields);
    record = reinterpret_cast<const Record*>(place({start, start + sizeof fields}));
  }
  void CheckUnchanged() {
    for (std::size_t i = 0; i < memory.size(); ++i) {
      EXPECT_TRUE(SameBytes(memory[i].Bytes(), placed[i])) << "source, or its string " << i;
    }
  }

  // What a block holds with the copy in it, between so many bytes in use at either end.
  Bytes Flattened(GuardedBuffer& buffer, std::size_t front, std::size_t back) const {
    Bytes block = buffer.Bytes();
    Fields fields = taken;
    auto at = block.size() - back;
    for (int i = 0; i < 4; ++i) {
      at -= strings[i].size();
      std::copy(strings[i].begin(), strings[i].end(), block.begin() + at);
      if (strings[i].empty()) continue;
      fields.strings[i] = reinterpret_cast<std::uintptr_t>(buffer.data() + at);
    }
    std::memcpy(&block[front], &fields, sizeof fields);
    return block;
  }
};

template <class Form>
void CheckFlattening(test::Choices& choices) {
  // Higher bits have no effect.
  const DWORD mask = choices.Below(256) | (choices.Below(3) == 0 ? 0xABCDE100u : 0);
  Source<Form> source(choices, mask);
  const auto* record = choices.Below(16) != 0 ? source.record : nullptr;
  const DWORD strings = record ? source.needed - sizeof *record : 0,
              needed = record ? source.needed : 0;
  EXPECT_EQ(Form::VarSizeNETRESOURCE(record, mask), strings);
  EXPECT_EQ(Form::SizeNETRESOURCE(record, mask), needed);
  const DWORD exact = source.needed;
  const DWORD more = choices.Below(8) == 0 ? 0x10000 : exact + 1 + choices.Below(20);
  for (const DWORD size : {DWORD{0}, exact - 1, exact, more}) {
    const bool isXBuf = choices.Below(2), isThere = choices.Below(8), isMemory = choices.Below(4);
    const DWORD front = isXBuf * choices.Below(4), back = isXBuf * choices.Below(4);
    GuardedBuffer buffer(front + size + back);
    const HXBUF hXBuf = isXBuf ? utXBufCreate(buffer.size(), buffer.data()) : nullptr;
    utXBufSetSpaceUsed(hXBuf, front, back);
    const bool fits = record && isThere && size >= needed;
    const bool copied = fits && (isXBuf || isMemory);  // an XBuf needs no memory
    const Bytes block = copied ? source.Flattened(buffer, front, back) : buffer.Bytes();
    DWORD stored = 7;
    DWORD* pcbNeeded = choices.Below(4) != 0 ? &stored : nullptr;
    host::FailCall(isMemory ? 0 : 1, 0, "LocalAlloc");
    EXPECT_EQ(
        isXBuf ? Form::CopyNETRESOURCE_XBuffer(record, isThere ? hXBuf : nullptr, mask, pcbNeeded)
               : Form::CopyNETRESOURCE(record, isThere ? buffer.data() : nullptr, size, mask,
                                       pcbNeeded),
        copied);
    EXPECT_EQ(host::FailureCame(), fits && !copied);
    host::FailCall(0);
    EXPECT_EQ(stored, pcbNeeded ? needed : 7);
    EXPECT_TRUE(SameBytes(buffer.Bytes(), block))
        << test::CallText<Form>(isXBuf ? "CopyNETRESOURCE_XBuffer" : "CopyNETRESOURCE", size, mask);
    if (!isXBuf) continue;
    EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_FRONT), front + sizeof *record * copied);
    EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_BACK), back + strings * copied);
    utXBufDestroy(hXBuf);
  }
  source.CheckUnchanged();
}

PROPERTY(NetResource, IsFlattenedIntoBuffersAndXBufs, 1600) {
  choices.Below(2) == 0 ? CheckFlattening<test::ByteForm>(choices)
                        : CheckFlattening<test::WideForm>(choices);
}

TEST(NetResource, MeasuresEachStringOnceAndAllocatesOnce) {
  char local[] = "L:", remote[] = "share", provider[] = "p";
  const NETRESOURCEA source = {1, 2, 3, 4, local, remote, nullptr, provider};
  char block[sizeof source + 11];
  host::StartJournal();
  ASSERT_EQ(utCopyNETRESOURCE(&source, block, sizeof block, UT_NR_ALL, nullptr), 1);
  const auto journal = host::TakeJournal();
  EXPECT_EQ(std::string(block + sizeof source, 11), std::string("p\0share\0L:", 11));
  const auto xbuf = sizeof(void*) == 4 ? 32 : 48;  // bytes of the object
  const auto measured =
      Line("lstrlenA", local) + Line("lstrlenA", remote) + Line("lstrlenA", provider);
  EXPECT_EQ(test::Text(journal), measured + Line("LocalAlloc", 0x40, xbuf) +
                                     Line("LocalFree", journal.back().arguments.at(0)));
}

}  // namespace
