// Texts, lists and blocks beyond what 16 bits count.
#include <tavkit.h>

#include "support/form_test.h"

namespace {

template <class F>
struct LargeTest : testing::Test {};
TYPED_TEST_SUITE(LargeTest, test::Forms, test::FormNames);

TYPED_TEST(LargeTest, AreCountedIn32Bits) {
  using F = TypeParam;
  using Char = typename F::Char;
  constexpr DWORD kUnit = sizeof(Char), kLength = 70'000, cb = (kLength + 1) * kUnit;
  std::basic_string<Char> text(kLength, ' '), out(2 * kLength, 'x');
  EXPECT_EQ(F::StringSize(text.c_str(), 1), cb);
  EXPECT_EQ(F::CountLeadChar(text.c_str(), ' '), kLength);
  EXPECT_EQ(F::CopyString(text.c_str(), out.data(), cb), 1);
  EXPECT_EQ(out.c_str(), text);
  text[0] = text[1] = text[kLength - 9] = '\\';
  const auto* psz = text.c_str();
  EXPECT_EQ(F::ServerName(psz, 0, out.data(), cb - 1), 0);
  EXPECT_EQ(F::ServerName(psz, 0, out.data(), cb), 1);
  EXPECT_EQ(F::BuildUNCName(out.data(), cb - 1, psz, nullptr, nullptr), 0);
  EXPECT_EQ(F::BuildUNCName(out.data(), cb, psz, nullptr, nullptr), 1);
  EXPECT_EQ(out.c_str(), text);
  EXPECT_EQ(F::ExtractServer(psz, out.data(), cb), 1);
  EXPECT_EQ(out.c_str(), text.substr(0, kLength - 9));
  EXPECT_EQ(F::BreakUNCName(psz, out.data(), cb, nullptr, 0, nullptr, 0), 3u);
  EXPECT_EQ(out.c_str(), text.substr(2, kLength - 11));

  using Record = std::conditional_t<F::kIsWide, NETRESOURCEW, NETRESOURCEA>;
  Record record = {}, copy[2 + cb / sizeof(Record)];
  record.lpProvider = text.data();
  DWORD needed = 0;
  EXPECT_EQ(F::CopyNETRESOURCE(&record, copy, sizeof record + cb - 1, UT_NR_ALL, &needed), 0);
  EXPECT_EQ(F::CopyNETRESOURCE(&record, copy, sizeof record + cb, UT_NR_ALL, &needed), 1);
  EXPECT_EQ(needed, sizeof record + cb);
  EXPECT_EQ(copy[0].lpProvider, text);
}

TYPED_TEST(LargeTest, ListsAreCountedIn32Bits) {
  using F = TypeParam;
  using Char = typename F::Char;
  constexpr DWORD kUnit = sizeof(Char), kCount = 70'000;
  std::basic_string<Char> list(2 * kCount + 4, 0);
  std::vector<const Char*> array(kCount + 1), pointers(kCount + 2);
  const Char letter[] = {'a', 0};
  std::fill(array.begin(), array.end() - 1, letter);
  DWORD stored = 0;
  EXPECT_EQ(F::Array2MultiAsciiz(array.data(), list.data(), list.size() * kUnit, &stored), 1);
  EXPECT_EQ(stored, kCount);
  EXPECT_EQ(F::MultiAsciizStringCount(list.data()), kCount);
  EXPECT_EQ(F::MultiAsciizSize(list.data(), 1), (2 * kCount + 1) * kUnit);
  EXPECT_EQ(
      F::MultiAsciiz2Array(list.data(), pointers.data(), pointers.size() * sizeof(Char*), &stored),
      1);
  EXPECT_EQ(stored, kCount);
  EXPECT_EQ(pointers[kCount - 1], &list[2 * kCount - 2]);
  auto* const middle = &list[kCount];
  EXPECT_EQ(F::InsertMultiAsciiz(letter, middle, list.data(), (2 * kCount + 3) * kUnit - 1), 0);
  EXPECT_EQ(F::InsertMultiAsciiz(letter, middle, list.data(), (2 * kCount + 3) * kUnit), 1);
  EXPECT_EQ(F::AppendMultiAsciiz(letter, list.data(), (2 * kCount + 3) * kUnit), 0);
  EXPECT_EQ(F::RemoveMultiAsciiz(list.data(), kCount), 1);
  EXPECT_EQ(F::MultiAsciizStringCount(list.data()), 1u);
  EXPECT_EQ(F::RemoveMultiAsciiz(list.data(), kCount), 0);
}

}  // namespace
