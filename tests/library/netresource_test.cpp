// NETRESOURCE records beside a byte-exact model of the flattened block.
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <array>
#include <deque>

#include "support/forms.h"
#include "support/guarded.h"
#include "support/journal.h"
#include "support/random.h"

namespace {

using test::GuardedBuffer;
using test::Line;
using Bytes = std::vector<unsigned char>;

// The eight fields of a record, as numbers.
struct Fields {
  DWORD numbers[4];
  std::uintptr_t strings[4];
};

// A source record, its strings each in front of an inaccessible page. What the mask leaves out has
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

  Source(test::Random& random, DWORD mask) {
    const std::size_t odd = random.Below(2);
    const auto place = [&](const Bytes& bytes) {
      auto& buffer = memory.emplace_back(bytes.size() + odd);
      buffer.Set(bytes);
      placed.push_back(buffer.Bytes());
      return buffer.data();
    };
    Fields fields;
    for (int i = 0; i < 4; ++i) {
      fields.numbers[i] = 0x12345678u + random.Below(1u << 30);
      if (mask & UT_NR_SCOPE << i) taken.numbers[i] = fields.numbers[i];
      fields.strings[i] = random.Below(2);
      if (!(mask & UT_NR_LOCALNAME << i)) continue;
      fields.strings[i] = 0;
      if (random.Below(4) == 0) continue;
      const std::vector<typename Form::Char> letters = {'a', '\\', 0x7F};
      strings[i] = test::BytesOf(random.Text(letters, 9 * random.Below(2)));
      fields.strings[i] = reinterpret_cast<std::uintptr_t>(place(strings[i]));
      needed += strings[i].size();
    }
    const auto* start = reinterpret_cast<const unsigned char*>(&fields);
    record = reinterpret_cast<const Record*>(place({start, start + sizeof fields}));
  }
  ~Source() {
    for (std::size_t i = 0; i < memory.size(); ++i) EXPECT_EQ(memory[i].Bytes(), placed[i]);
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

template <class>
struct NetResourceTest : testing::Test {};
TYPED_TEST_SUITE(NetResourceTest, test::Forms, test::FormNames);

TYPED_TEST(NetResourceTest, FlattenIntoBuffersAndXBufs) {
  constexpr auto copyXBuffer = [] {
    if constexpr (TypeParam::kIsWide) return &utCopyNETRESOURCEW_XBuffer;
    if constexpr (!TypeParam::kIsWide) return &utCopyNETRESOURCE_XBuffer;
  }();
  test::Random random(4);
  for (DWORD i = 0; i < 4 * 256 && !this->HasFailure(); ++i) {
    const DWORD mask = i % 256 | (i % 3 == 0 ? 0xABCDE100u : 0);  // higher bits have no effect
    const Source<TypeParam> source(random, mask);
    const auto* record = random.Below(16) != 0 ? source.record : nullptr;
    const DWORD strings = record ? source.needed - sizeof *record : 0,
                needed = record ? source.needed : 0;
    SCOPED_TRACE(testing::Message() << "mask " << mask << ", round " << i);
    EXPECT_EQ(TypeParam::VarSizeNETRESOURCE(record, mask), strings);
    EXPECT_EQ(TypeParam::SizeNETRESOURCE(record, mask), needed);
    const DWORD exact = source.needed;
    for (const DWORD size : {0u, exact - 1, exact, exact + 1 + random.Below(20)}) {
      const bool isXBuf = random.Below(2), isThere = random.Below(8), isMemory = random.Below(4);
      const DWORD front = isXBuf * random.Below(4), back = isXBuf * random.Below(4);
      GuardedBuffer buffer(front + size + back);
      const HXBUF hXBuf = isXBuf ? utXBufCreate(buffer.size(), buffer.data()) : nullptr;
      utXBufSetSpaceUsed(hXBuf, front, back);
      const bool fits = record && isThere && size >= needed;
      const bool copied = fits && (isXBuf || isMemory);  // an XBuf needs no memory
      const Bytes block = copied ? source.Flattened(buffer, front, back) : buffer.Bytes();
      DWORD stored = 7;
      DWORD* pcbNeeded = random.Below(4) != 0 ? &stored : nullptr;
      host::FailCall(isMemory ? 0 : 1, 0, "LocalAlloc");
      EXPECT_EQ(isXBuf ? copyXBuffer(record, isThere ? hXBuf : nullptr, mask, pcbNeeded)
                       : TypeParam::CopyNETRESOURCE(record, isThere ? buffer.data() : nullptr, size,
                                                    mask, pcbNeeded),
                copied);
      EXPECT_EQ(host::FailureCame(), fits && !copied);
      host::FailCall(0);
      EXPECT_EQ(stored, pcbNeeded ? needed : 7);
      EXPECT_EQ(buffer.Bytes(), block);
      if (!isXBuf) continue;
      EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_FRONT), front + sizeof *record * copied);
      EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_BACK), back + strings * copied);
      utXBufDestroy(hXBuf);
    }
  }
}

TEST(NetResource, ReadsEachStringTwiceAndAllocatesOnce) {
  char local[] = "L:", remote[] = "share", provider[] = "p";
  const NETRESOURCEA source = {1, 2, 3, 4, local, remote, nullptr, provider};
  char block[sizeof source + 11];
  host::StartJournal();
  ASSERT_EQ(utCopyNETRESOURCE(&source, block, sizeof block, UT_NR_ALL, nullptr), 1);
  const auto journal = host::TakeJournal();
  EXPECT_EQ(std::string(block + sizeof source, 11), std::string("p\0share\0L:", 11));
  const auto xbuf = sizeof(void*) == 4 ? 32 : 48;  // bytes of the object
  const auto read = Line("lstrlenA", local) + Line("lstrlenA", remote) + Line("lstrlenA", provider);
  EXPECT_EQ(test::Text(journal), read + Line("LocalAlloc", 0x40, xbuf) + read +
                                     Line("LocalFree", journal.back().arguments.at(0)));
}

}  // namespace
