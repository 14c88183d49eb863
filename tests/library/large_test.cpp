// Texts, lists and blocks beyond what 16 bits count, and sums of sizes beyond what 32 bits count.
#include <host.h>
#include <tavkit.h>

#include "support/form_test.h"
#include "support/repeated_text.h"

namespace {

using test::GuardedBuffer, test::SameBytes;

template <class F>
struct LargeTest : testing::Test {
  using Char = typename F::Char;
  using String = std::basic_string<Char>;
  using Record = std::conditional_t<F::kIsWide, NETRESOURCEW, NETRESOURCEA>;
  static constexpr DWORD kUnit = sizeof(Char), kLength = 70'000, kSize = (kLength + 1) * kUnit;
};
TYPED_TEST_SUITE(LargeTest, test::Forms, test::FormNames);

TYPED_TEST(LargeTest, StringsAreCountedIn32Bits) {
  using F = TypeParam;
  constexpr DWORD kLength = TestFixture::kLength, kSize = TestFixture::kSize;
  typename TestFixture::String text(kLength, ' '), out(kLength + 2, 'x');
  EXPECT_EQ(F::StringSize(text.c_str(), 1), kSize);
  EXPECT_EQ(F::CountLeadChar(text.c_str(), ' '), kLength);
  EXPECT_EQ(F::CopyString(text.c_str(), out.data(), kSize), 1);
  EXPECT_TRUE(out.c_str() == text);
}

TYPED_TEST(LargeTest, NamesAreCountedIn32Bits) {
  using F = TypeParam;
  using String = typename TestFixture::String;
  const auto part = [](char letter) { return String(TestFixture::kLength, letter); };
  const String slash(1, '\\'), server = slash + slash + part('s');
  const String resource = server + slash + part('r'), name = resource + slash + part('p');
  String out[3], built(name.size() + 1, 'x');
  for (auto& text : out) text.resize(TestFixture::kLength + 1);
  const DWORD cbName = built.size() * this->kUnit;
  EXPECT_EQ(F::BreakUNCName(name.c_str(), out[0].data(), cbName / 3, out[1].data(), cbName / 3,
                            out[2].data(), cbName / 3),
            7u);
  for (const DWORD cbOut : {cbName - 1, cbName}) {
    EXPECT_EQ(F::BuildUNCName(built.data(), cbOut, out[0].data(), out[1].data(), out[2].data()),
              cbOut == cbName);
  }
  EXPECT_TRUE(built.c_str() == name);
  EXPECT_EQ(F::ExtractServerResource(name.c_str(), built.data(), cbName), 1);
  EXPECT_TRUE(built.c_str() == resource);
  EXPECT_EQ(F::ExtractServer(name.c_str(), built.data(), cbName), 1);
  EXPECT_TRUE(built.c_str() == server);
}

// Lists of many short members, and of few long ones.
TYPED_TEST(LargeTest, ListsAreCountedIn32Bits) {
  using F = TypeParam;
  using Char = typename F::Char;
  for (const auto& [count, length] : {std::pair{70'000u, 1u}, std::pair{2u, 70'000u}}) {
    const std::basic_string<Char> member(length, 'a');
    const DWORD step = length + 1, cbFull = (count * step + 1) * this->kUnit;
    const DWORD cbLonger = cbFull + step * this->kUnit;
    std::basic_string<Char> list(cbLonger / this->kUnit, 0);
    std::vector<const Char*> array(count, member.c_str()), pointers(count + 1);
    array.push_back(nullptr);
    for (const DWORD cbList : {cbFull - 1, cbFull}) {
      DWORD stored = 0;
      EXPECT_EQ(F::Array2MultiAsciiz(array.data(), list.data(), cbList, &stored), cbList == cbFull);
      EXPECT_EQ(stored, count - (cbList != cbFull));
    }
    EXPECT_EQ(F::MultiAsciizStringCount(list.data()), count);
    EXPECT_EQ(F::MultiAsciizSize(list.data(), 1), cbFull);
    const DWORD cbArray = pointers.size() * sizeof pointers[0];
    EXPECT_EQ(F::MultiAsciiz2Array(list.data(), pointers.data(), cbArray, nullptr), 1);
    EXPECT_EQ(pointers[count - 1], &list[(count - 1) * step]);
    auto* const middle = &list[count / 2 * step];
    EXPECT_EQ(F::InsertMultiAsciiz(member.c_str(), middle, list.data(), cbLonger - 1), 0);
    EXPECT_EQ(F::InsertMultiAsciiz(member.c_str(), middle, list.data(), cbLonger), 1);
    EXPECT_EQ(F::AppendMultiAsciiz(member.c_str(), list.data(), cbLonger), 0);
    EXPECT_EQ(F::RemoveMultiAsciiz(list.data(), 1), 1);
    EXPECT_EQ(F::AppendMultiAsciiz(member.c_str(), list.data(), cbLonger), 1);
    EXPECT_EQ(F::RemoveMultiAsciiz(list.data(), count), 1);
    EXPECT_EQ(F::MultiAsciizStringCount(list.data()), 1u);
    EXPECT_EQ(F::RemoveMultiAsciiz(list.data(), count), 0);
  }
}

// A string of 1.3 GiB three times, one of 2 GiB beside itself, and what only 64 bits reach.
TYPED_TEST(LargeTest, SumsOfSizesDontWrap) {
  using F = TypeParam;
  using Char = typename F::Char;
  const auto text = [](std::size_t size) {
    return reinterpret_cast<Char*>(test::RepeatedText(size));
  };
  GuardedBuffer out(64);
  auto* pszOut = out.template As<Char>();
  const auto* third = text(1'431'655'782);  // three of them wrap to less than 64 bytes
  EXPECT_EQ(F::BuildUNCName(pszOut, out.size(), third, third, third), 0);
  auto* pList = text(0x80000002);
  EXPECT_EQ(F::InsertMultiAsciiz(pList, pList, pList, 0x80000002 + 2 * this->kUnit), 0);
  EXPECT_EQ(F::AppendMultiAsciiz(pList, pList, 0x80000002 + 2 * this->kUnit), 0);
  const HXBUF hXBuf = utXBufCreate(64, nullptr);
  // The strings alone wrap to nothing, or only together with the record.
  auto *quarter = text(0x40000000 - this->kUnit), *less = text(1'431'655'760 - this->kUnit);
  const typename TestFixture::Record record = {1, 2, 3, 4, quarter, quarter, quarter, quarter};
  EXPECT_EQ(F::CopyNETRESOURCE(&record, pszOut, out.size(), UT_NR_ALL, nullptr), 0);
  EXPECT_EQ(F::SizeNETRESOURCE(&record, UT_NR_COMMENT), 0x40000000 + sizeof record);
  const typename TestFixture::Record three = {1, 2, 3, 4, less, less, nullptr, less};
  EXPECT_EQ(F::CopyNETRESOURCE_XBuffer(&three, hXBuf, UT_NR_ALL, nullptr), 0);
  for (const std::size_t size : {0xFFFFFFFEull, 0x100000000ull, 0x100000010ull}) {
    if (size > test::kLongest) break;
    EXPECT_EQ(F::ServerName(text(size), UT_SERVERNAME_UNC, pszOut, out.size()), 0);
    DWORD cbRemaining = UT_SIZE_UNCHECKED;
    EXPECT_EQ(F::CopyNextAsciiz(text(size), &pszOut, &cbRemaining), 0);
    EXPECT_EQ(F::XBufCopyStringTo(hXBuf, UT_XBUF_BACK, text(size), nullptr), 0);
    EXPECT_EQ(F::BuildUNCName(pszOut, UT_SIZE_UNCHECKED, nullptr, text(size), nullptr), 0);
    const typename TestFixture::Record one = {1, 2, 3, 4, text(size), nullptr, nullptr, nullptr};
    EXPECT_EQ(F::CopyNETRESOURCE(&one, pszOut, out.size(), UT_NR_ALL, nullptr), 0);
    if constexpr (!F::kIsWide) {
      EXPECT_EQ(utRegPathBrindlexSoftware(pszOut, UT_SIZE_UNCHECKED, text(size), nullptr), 0);
      EXPECT_EQ(utRegGetPrivateUserDword("s", "v", 7, text(size)), 7u);
      EXPECT_EQ(utRegWritePrivateUserString("s", "v", text(size), "p"), 0);
    }
  }
  utXBufDestroy(hXBuf);
  EXPECT_TRUE(SameBytes(out.Bytes(), test::Over(test::Pattern(64), test::Bytes(this->kUnit))));
}

// A platform that gives one of the strings a length of nearly 4 GiB, or fails to count it.
TEST(Sums, OfPlannedLengthsDontWrap) {
  char a[] = "a", list[] = "b\0c\0";
  const NETRESOURCEA record = {1, 2, 3, 4, a, a, a, a};
  const HXBUF hXBuf = utXBufCreate(64, nullptr);
  for (const DWORD length : {0u, 0xFFFFFFFFu, 0xFFFFFFFEu, 0xFFFFFFF9u}) {
    const auto check = [&](unsigned strings, const auto& call) {
      for (unsigned n = 1; n <= strings; ++n) {
        GuardedBuffer out(64);
        host::FailCall(n, length, "lstrlenA");
        EXPECT_EQ(call(out.As<char>()), 0) << "string " << n << " of length " << length;
        EXPECT_TRUE(host::FailureCame());
        EXPECT_TRUE(out.IsUntouched(1));
      }
    };
    check(3, [&](char* out) { return utBuildUNCName(out, 64, a, a, a); });
    check(1, [&](char* out) { return utServerName(a, UT_SERVERNAME_UNC, out, 64); });
    for (DWORD cbList : {64u, UT_SIZE_UNCHECKED - 8}) {
      check(1, [&](char*) { return utInsertMultiAsciiz(a, list, list, cbList); });
      check(1, [&](char*) { return utAppendMultiAsciiz(a, list, cbList); });
      check(1, [&](char* out) { return utCopyNextAsciiz(a, &out, &cbList); });
    }
    check(1, [&](char*) { return utXBufCopyStringTo(hXBuf, UT_XBUF_BACK, a, nullptr); });
    check(4, [&](char* out) { return utCopyNETRESOURCE(&record, out, 64, UT_NR_ALL, nullptr); });
    check(4, [&](char*) { return utCopyNETRESOURCE_XBuffer(&record, hXBuf, UT_NR_ALL, nullptr); });
  }
  utXBufDestroy(hXBuf);
}

}  // namespace
