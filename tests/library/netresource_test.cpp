// NETRESOURCE records beside a byte-exact model of the flattened block.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <array>
#include <memory>
#include <optional>

#include "support/forms.h"
#include "support/guarded.h"
#include "support/random.h"

namespace {

using test::GuardedBuffer;
using Bytes = std::vector<unsigned char>;

std::uintptr_t Address(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

// A source record, its strings each in front of an inaccessible page. What the mask leaves out has
// an address that can't be read, and half of the sources stand at odd addresses.
template <class Form>
struct Source {
  using Char = typename Form::Char;

  DWORD mask;
  std::array<std::uintptr_t, 8> expected = {};  // the copy, but for the addresses of its strings
  std::array<Bytes, 4> strings;                 // no bytes, not even a terminator: none is taken
  std::vector<std::unique_ptr<GuardedBuffer>> memory;
  std::conditional_t<Form::kIsWide, const NETRESOURCEW*, const NETRESOURCEA*> record;
  DWORD needed = 32;

  Source(test::Random& random, DWORD dwMask) : mask(dwMask) {
    const std::size_t odd = random.Below(2);
    const auto place = [&](const Bytes& bytes) {
      memory.push_back(std::make_unique<GuardedBuffer>(bytes.size() + odd));
      memory.back()->Set(bytes);
      return memory.back()->data();
    };
    std::array<std::uintptr_t, 8> fields;
    for (int i = 0; i < 4; ++i) {
      fields[i] = 0x12345678u + random.Below(1u << 30);
      if (mask & UT_NR_SCOPE << i) expected[i] = fields[i];
      fields[4 + i] = random.Below(2);
      if (!(mask & UT_NR_LOCALNAME << i)) continue;
      fields[4 + i] = 0;
      if (random.Below(4) == 0) continue;
      const std::vector<Char> letters = {'a', '\\', 0x7F};
      strings[i] = test::BytesOf(random.Text(letters, 9 * random.Below(2)));
      fields[4 + i] = Address(place(strings[i]));
      needed += strings[i].size();
    }
    const auto* start = reinterpret_cast<const unsigned char*>(fields.data());
    record = reinterpret_cast<decltype(record)>(place({start, start + sizeof fields}));
  }
};

// What a buffer has to hold, and how much of it is taken at either end.
struct Block {
  unsigned char* address;
  Bytes bytes;
  DWORD front = 0, back = 0;

  explicit Block(GuardedBuffer& buffer) : address(buffer.data()), bytes(buffer.Bytes()) {}

  DWORD Free() const { return static_cast<DWORD>(bytes.size()) - front - back; }
  template <class Form>
  void Add(const Source<Form>& source) {
    auto fields = source.expected;
    for (int i = 0; i < 4; ++i) {
      if (source.strings[i].empty()) continue;
      back += source.strings[i].size();
      const auto at = bytes.size() - back;
      std::copy(source.strings[i].begin(), source.strings[i].end(), bytes.begin() + at);
      fields[4 + i] = Address(address + at);
    }
    std::memcpy(&bytes[front], fields.data(), sizeof fields);
    front += sizeof fields;
  }
};

template <class Form>
struct NetResourceTest : testing::Test {
  static constexpr auto* CopyXBuffer = [] {
    if constexpr (Form::kIsWide) return &utCopyNETRESOURCEW_XBuffer;
    if constexpr (!Form::kIsWide) return &utCopyNETRESOURCE_XBuffer;
  }();
};
TYPED_TEST_SUITE(NetResourceTest, test::Forms, test::FormNames);

TYPED_TEST(NetResourceTest, FlattenSinglyUnderEveryMask) {
  test::Random random(4);
  for (DWORD i = 0; i < 4 * 256 && !this->HasFailure(); ++i) {
    const DWORD mask = i % 256 | (i % 3 == 0 ? 0xABCDE100u : 0);  // higher bits have no effect
    const Source<TypeParam> source(random, mask);
    const DWORD needed = source.needed;
    SCOPED_TRACE(testing::Message() << "mask " << mask << ", round " << i);
    EXPECT_EQ(TypeParam::VarSizeNETRESOURCE(source.record, mask), needed - 32);
    EXPECT_EQ(TypeParam::SizeNETRESOURCE(source.record, mask), needed);
    for (const DWORD size : {0u, needed - 1, needed, needed + 1 + random.Below(20)}) {
      GuardedBuffer buffer(size);
      Block block(buffer);
      void* target = random.Below(8) != 0 ? buffer.data() : nullptr;
      const bool memory = random.Below(8) != 0;
      const bool copied = size >= needed && target && memory;
      if (copied) block.Add(source);
      DWORD stored = 0;
      DWORD* pcbNeeded = random.Below(4) != 0 ? &stored : nullptr;
      host::FailCall(memory ? 0 : 1, 0, "LocalAlloc");
      EXPECT_EQ(TypeParam::CopyNETRESOURCE(source.record, target, size, mask, pcbNeeded), copied);
      EXPECT_EQ(host::FailureCame(), size >= needed && target && !memory);
      EXPECT_EQ(stored, pcbNeeded ? needed : 0);
      EXPECT_EQ(buffer.Bytes(), block.bytes);
    }
  }
}

TYPED_TEST(NetResourceTest, FlattenManyIntoOneXBuf) {
  test::Random random(5);
  for (int round = 0; round < 150 && !this->HasFailure(); ++round) {
    GuardedBuffer buffer(32 + random.Below(300));
    Block block(buffer);
    const HXBUF hXBuf = utXBufCreate(buffer.size(), buffer.data());
    block.front = random.Below(4);  // so records begin at odd addresses too
    for (bool fits = true; fits;) {
      const Source<TypeParam> source(random, random.Below(3) ? random.Below(256) : UT_NR_ALL);
      const DWORD spare = random.Below(8);  // 0: a byte less than needed, 1: just what is needed
      if (spare < 2 && block.Free() >= source.needed) {
        block.back += block.Free() - source.needed + 1 - spare;
      }
      utXBufSetSpaceUsed(hXBuf, block.front, block.back);
      fits = block.Free() >= source.needed;
      if (fits) block.Add(source);
      DWORD stored = 0;
      DWORD* pcbNeeded = random.Below(4) != 0 ? &stored : nullptr;
      host::FailCall(1, 0, "LocalAlloc");  // nothing is allocated
      EXPECT_EQ(TestFixture::CopyXBuffer(source.record, hXBuf, source.mask, pcbNeeded), fits);
      EXPECT_FALSE(host::FailureCame());
      EXPECT_EQ(stored, pcbNeeded ? source.needed : 0);
      EXPECT_EQ(buffer.Bytes(), block.bytes);
      EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_FRONT), block.front);
      EXPECT_EQ(utXBufGetBlockSize(hXBuf, UT_XBUF_BLOCK_BACK), block.back);
    }
    host::FailCall(0);
    utXBufDestroy(hXBuf);
  }
}

TYPED_TEST(NetResourceTest, RefuseAnInvalidHandleAndNoRecord) {
  test::Random random(6);
  GuardedBuffer buffer(64);
  const HXBUF hXBuf = utXBufCreate(64, buffer.data());
  const Source<TypeParam> source(random, UT_NR_ALL);
  DWORD stored[] = {7, 7, 7};
  EXPECT_EQ(TestFixture::CopyXBuffer(source.record, nullptr, UT_NR_ALL, &stored[0]), 0);
  EXPECT_EQ(TestFixture::CopyXBuffer(nullptr, hXBuf, UT_NR_ALL, &stored[1]), 0);
  EXPECT_EQ(TypeParam::CopyNETRESOURCE(nullptr, buffer.data(), 64, UT_NR_ALL, &stored[2]), 0);
  EXPECT_THAT(stored, testing::ElementsAre(source.needed, 0u, 0u));
  EXPECT_EQ(TypeParam::SizeNETRESOURCE(nullptr, UT_NR_ALL), 0u);
  EXPECT_EQ(TypeParam::VarSizeNETRESOURCE(nullptr, UT_NR_ALL), 0u);
  EXPECT_EQ(utXBufGetSpaceUsed(hXBuf), 0u);
  EXPECT_TRUE(buffer.IsUntouched());
  utXBufDestroy(hXBuf);
}

TEST(NetResource, LiesInTheBufferByteForByte) {
  char local[] = "L:", remote[] = "share", provider[] = "p";
  const NETRESOURCEA source = {1, 2, 3, 4, local, remote, nullptr, provider};
  GuardedBuffer buffer(100);
  const char* at = buffer.As<char>();
  DWORD needed = 0;
  host::StartJournal();
  ASSERT_EQ(utCopyNETRESOURCE(&source, buffer.data(), 100, UT_NR_ALL, &needed), 1);
  const auto journal = host::TakeJournal();
  EXPECT_EQ(needed, 43u);
  const std::uintptr_t record[] = {
      1, 2, 3, 4, Address(at + 97), Address(at + 91), 0, Address(at + 89)};
  EXPECT_EQ(std::memcmp(at, record, sizeof record), 0);
  const std::string spare(57, static_cast<char>(test::kPattern));
  EXPECT_EQ(std::string(at + 32, 68), spare + std::string("p\0share\0L:", 11));

  // Each string is read for its size and for its copy, and one object is allocated.
  std::vector<host::Call> expected;
  for (const char* psz : {local, remote, provider})
    expected.push_back({"lstrlenA", {Address(psz)}});
  expected.push_back({"LocalAlloc", {0x40, 32}});
  for (int i = 0; i < 3; ++i) expected.push_back(expected[i]);
  expected.push_back({"LocalFree", journal.back().arguments});
  EXPECT_EQ(journal, expected);
}

}  // namespace
