// MultiAsciiz lists, byte and wide forms by one text, beside models on vectors of strings.
#include <gmock/gmock.h>
#include <tavkit.h>

#include <optional>

#include "support/failures.h"
#include "support/forms.h"
#include "support/guarded.h"
#include "support/random.h"

namespace {

using Bytes = std::vector<unsigned char>;
using List = std::vector<std::string>;

constexpr DWORD kUnchecked = UT_SIZE_UNCHECKED;

template <class Form>
class MultiAsciizTest : public testing::Test {
 protected:
  using Char = typename Form::Char;
  using String = std::basic_string<Char>;
  static constexpr DWORD kUnit = sizeof(Char);

  // The first members of a list with their terminators, without the final zero.
  static String Used(const List& list, std::size_t count) {
    String used;
    for (std::size_t i = 0; i < count; ++i) used += test::Text<Form>(list[i]) + Char{};
    return used;
  }
  static Bytes Flat(const List& list) { return test::BytesOf(Used(list, list.size())); }

  // Puts a block directly in front of the inaccessible page; everything else holds the pattern.
  Char* Put(const Bytes& block) {
    arena_.Refill();
    return reinterpret_cast<Char*>(std::copy(block.begin(), block.end(), Start(block)) -
                                   block.size());
  }
  // Expects the block that Put() put to have become this, and nothing in front of it to be written.
  void ExpectBlock(const Bytes& block) {
    EXPECT_TRUE(std::equal(block.begin(), block.end(), Start(block)));
    EXPECT_EQ(std::find_if(arena_.data(), Start(block), [](auto b) { return b != test::kPattern; }),
              Start(block));
  }
  unsigned char* Start(const Bytes& block) { return arena_.data() + arena_.size() - block.size(); }

  // What an insert makes of the units of a list; nothing if it is refused.
  static std::optional<String> Inserted(String full, long at, const String& string, DWORD cbList) {
    const long length = full.size();
    const DWORD cbFull = full.size() * kUnit, cbString = (string.size() + 1) * kUnit;
    if (at < 0 || at >= length) return {};
    const bool appends = at >= length - 2;
    // Below the used size the difference wraps, and an append takes the room all the same.
    const bool fits =
        appends ? cbList - (cbFull - kUnit) >= cbString + kUnit : cbList >= cbFull + cbString;
    if (!fits) return {};
    return full.insert(appends ? length - 1 : at, string + Char{});
  }

  test::GuardedBuffer arena_{512};
};
TYPED_TEST_SUITE(MultiAsciizTest, test::Forms, test::FormNames);

TYPED_TEST(MultiAsciizTest, InsertAtEveryPositionOfSmallListsForEverySize) {
  const auto string = test::Text<TypeParam>("X");
  std::vector<List> lists = {{}};
  for (std::size_t i = 0; i < lists.size(); ++i) {
    const auto full = this->Used(lists[i], lists[i].size()) + typename TestFixture::Char{};
    const DWORD cbFull = full.size() * this->kUnit, cbNeeded = cbFull + 2 * this->kUnit;
    for (long at = -1; at <= static_cast<long>(full.size()) + 1; ++at) {
      for (DWORD size = 0; size <= cbNeeded + 2; ++size) {
        const DWORD cbList = size == cbNeeded + 2 ? kUnchecked : size;
        const auto result = this->Inserted(full, at, string, cbList);
        auto block =
            test::BytesOf(full, 0);  // with what the result takes, and at odd addresses too
        block.resize((result ? cbNeeded : cbFull) + size % 2, test::kPattern);
        auto* pList = this->Put(block);
        const bool isAppended = at == static_cast<long>(full.size()) - 1 && size % 4 < 2;
        EXPECT_EQ(isAppended
                      ? TypeParam::AppendMultiAsciiz(string.c_str(), pList, cbList)
                      : TypeParam::InsertMultiAsciiz(string.c_str(), pList + at, pList, cbList),
                  result.has_value());
        const auto bytes = test::BytesOf(result.value_or(full), 0);
        std::copy(bytes.begin(), bytes.end(), block.begin());
        this->ExpectBlock(block);
        ASSERT_FALSE(this->HasFailure())
            << testing::PrintToString(lists[i]) << " at " << at << ", size " << cbList;
      }
    }
    if (lists[i].size() == 4) continue;
    for (const char* member : {"a", "b", "ab", "ba"}) {
      lists.push_back(lists[i]);
      lists.back().push_back(member);
    }
  }
}

TYPED_TEST(MultiAsciizTest, AgreeWithTheModelOnRandomSequences) {
  test::Random random(21);
  for (int round = 0; round < 60; ++round) {
    List list;
    Bytes block(24 + random.Below(80), 0);
    auto* pList = this->Put(block);
    const auto at = [&](std::size_t index) { return pList + this->Used(list, index).size(); };
    for (int step = 0; step < 40; ++step) {
      std::string word = random.Text<char>({'a', 'B', 'b'}, 5);
      const auto string = test::Text<TypeParam>(word);
      const auto* psz = string.c_str();
      const auto kind = random.Below(5);
      if (kind == 0) {
        const DWORD cStrings = step % 8 == 7 ? kUnchecked : random.Below(3);
        EXPECT_EQ(TypeParam::RemoveMultiAsciiz(pList, cStrings), cStrings <= list.size());
        const bool empties = !list.empty() && cStrings >= list.size();
        list.erase(list.begin(), list.begin() + std::min<std::size_t>(cStrings, list.size()));
        if (empties) std::fill_n(block.begin(), 2 * this->kUnit, 0);
      } else if (kind == 1) {
        for (const BOOL caseSensitive : {0, 1, -1}) {
          const auto found = std::find_if(list.begin(), list.end(), [&](const auto& member) {
            return caseSensitive ? member == word : strcasecmp(member.c_str(), word.c_str()) == 0;
          });
          EXPECT_EQ(TypeParam::ScanMultiAsciiz(psz, pList, caseSensitive),
                    found == list.end() && !word.empty() ? nullptr : at(found - list.begin()));
        }
      } else {
        if (kind == 2 && !list.empty()) {  // a member of the list itself goes in again
          const auto own = random.Below(list.size());
          word = list[own];
          psz = at(own);
        }
        const auto index = kind == 3 ? list.size() : random.Below(list.size() + 1);
        const bool fits = word.empty() ||
                          this->Flat(list).size() + (word.size() + 1) * this->kUnit <= block.size();
        EXPECT_EQ(kind == 3 ? TypeParam::AppendMultiAsciiz(psz, pList, block.size())
                            : TypeParam::InsertMultiAsciiz(psz, at(index), pList, block.size()),
                  fits);
        if (fits && !word.empty()) list.insert(list.begin() + index, word);
      }
      const auto flat = this->Flat(list);
      std::copy(flat.begin(), flat.end(), block.begin());
      this->ExpectBlock(block);
      ASSERT_FALSE(this->HasFailure()) << "round " << round << ", step " << step;
    }
  }
}

// The walk goes by blocks of bytes, so every place of a list within its blocks counts; units with
// one zero half must not end a wide one.
TYPED_TEST(MultiAsciizTest, FindTheEndOfListsOfAnyLengthAtAnyAddress) {
  using Char = typename TypeParam::Char;
  test::Random random(22);
  for (int i = 0; i < 2000; ++i) {
    typename TestFixture::String used;
    std::vector<std::size_t> starts = {0};
    for (auto members = random.Below(6); members > 0; --members) {
      used += Char{'m'};
      used += random.Text<Char>({1, 'a', Char(TypeParam::kIsWide ? 0x100 : 0xFF)}, 36) + Char{};
      starts.push_back(used.size());
    }
    auto block = test::BytesOf(used);
    const bool isOnHeap = i % 2 == 0;  // where the sanitizers watch the block's ends
    if (!isOnHeap) block.resize(block.size() + random.Below(17), test::kPattern);
    const Char* pList = isOnHeap ? reinterpret_cast<Char*>(block.data()) : this->Put(block);
    EXPECT_EQ(TypeParam::MultiAsciizSize(pList, 0), used.size() * this->kUnit);
    EXPECT_EQ(TypeParam::MultiAsciizSize(pList, 7), (used.size() + 1) * this->kUnit);
    EXPECT_EQ(TypeParam::MultiAsciizStringCount(pList), starts.size() - 1);
    EXPECT_EQ(TypeParam::ScanMultiAsciiz(nullptr, pList, 1), pList + used.size());
    starts.push_back(used.size() + 1);  // a step on the final zero leads behind the list
    for (std::size_t n = 0; n + 1 < starts.size(); ++n) {
      EXPECT_EQ(TypeParam::NextAsciiz(pList + starts[n]), pList + starts[n + 1]);
    }
    ASSERT_FALSE(this->HasFailure()) << testing::PrintToString(block);
  }
}

TYPED_TEST(MultiAsciizTest, BuildByCursorWithinEverySize) {
  using Char = typename TypeParam::Char;
  for (DWORD size = 0; size <= 16 * this->kUnit; ++size) {
    Bytes block(size, test::kPattern);
    Char* const pList = this->Put(block);
    Char* cursor = pList;
    DWORD left = size, used = 0;
    for (const char* word : {"", "abc", "de", "", "abcdefg", "f", "ghi", "j", ""}) {
      const auto string = test::Text<TypeParam>(word);
      const DWORD cbString = string.empty() ? 0 : (string.size() + 1) * this->kUnit;
      const BOOL fits = used + cbString + this->kUnit <= size;
      EXPECT_EQ(TypeParam::CopyNextAsciiz(string.c_str(), &cursor, &left), fits);
      if (fits) {
        const auto bytes = test::BytesOf(string, string.empty() ? 1 : 2);
        std::copy(bytes.begin(), bytes.end(), block.begin() + used);
        used += cbString;
      }
      EXPECT_EQ(reinterpret_cast<char*>(cursor) - reinterpret_cast<char*>(pList), used);
      EXPECT_EQ(left, size - used);
      this->ExpectBlock(block);
    }
    EXPECT_EQ(TypeParam::CopyNextAsciiz(nullptr, &cursor, &left), left >= this->kUnit);
  }
  Char* cursor = nullptr;
  DWORD left = kUnchecked;
  EXPECT_EQ(TypeParam::CopyNextAsciiz(nullptr, &cursor, &left), 0);
  cursor = this->Put(Bytes(3 * this->kUnit));
  EXPECT_EQ(TypeParam::CopyNextAsciiz(test::Text<TypeParam>("a").c_str(), &cursor, &left), 1);
  EXPECT_EQ(left, kUnchecked - 2 * this->kUnit);  // a number like any other
}

TYPED_TEST(MultiAsciizTest, ConvertFromAndToArraysWithinEverySize) {
  using Char = typename TypeParam::Char;
  for (const List& words :
       {List{}, List{"", ""}, List{"ab", "", "cd"}, List{"ab", "abcdef", "cd"}}) {
    std::vector<typename TestFixture::String> strings;
    std::vector<const Char*> array;
    for (const auto& word : words) strings.push_back(test::Text<TypeParam>(word));
    for (const auto& string : strings) array.push_back(string.c_str());
    array.push_back(nullptr);
    for (DWORD size = 0; size < 40; ++size) {
      List list;
      bool complete = size > 4;
      for (std::size_t i = 0; complete && i < words.size(); ++i) {
        if (words[i].empty()) continue;
        list.push_back(words[i]);
        complete = this->Flat(list).size() <= size;
        if (!complete) list.pop_back();
      }
      Bytes block = this->Flat(list);
      block.resize(size, 0);
      if (size <= 4) block.assign(size, test::kPattern);
      for (DWORD stored = 99; DWORD * pcStored : {&stored, static_cast<DWORD*>(nullptr)}) {
        auto* pList = this->Put(Bytes(size, test::kPattern));
        EXPECT_EQ(TypeParam::Array2MultiAsciiz(array.data(), pList, size, pcStored), complete);
        EXPECT_EQ(stored, list.size());
        this->ExpectBlock(block);
      }
      const DWORD slots = size / sizeof(Char*);
      DWORD stored = 99;
      const auto flat = this->Flat({"ab", "cd", "ef"});
      const auto* pList = reinterpret_cast<const Char*>(flat.data());
      std::vector<const Char*> expected((size + 3) / sizeof(Char*));
      for (DWORD i = 0; i < 3 && i + 1 < slots; ++i) expected[i] = pList + 3 * i;
      test::GuardedBuffer out(expected.size() * sizeof(Char*));
      EXPECT_EQ(TypeParam::MultiAsciiz2Array(pList, out.As<const Char*>(), size, &stored),
                slots > 0);
      EXPECT_EQ(stored, slots == 0 ? 0 : std::min(3u, slots - 1));
      EXPECT_TRUE(out.IsUntouched(slots == 0 ? 0 : size));
      EXPECT_TRUE(slots == 0 || std::memcmp(out.data(), expected.data(), size) == 0);
      EXPECT_EQ(TypeParam::MultiAsciiz2Array(nullptr, out.As<const Char*>(), size, nullptr),
                slots > 0);
      ASSERT_FALSE(this->HasFailure()) << testing::PrintToString(words) << ", size " << size;
    }
  }
}

TYPED_TEST(MultiAsciizTest, AnswerNullAndEmpty) {
  using Char = typename TypeParam::Char;
  const auto string = test::Text<TypeParam>("xy");
  Char* none = nullptr;
  // An empty list, whatever stands behind its final zero.
  const auto block = test::BytesOf(Char{} + string, 2);
  Char* empty = this->Put(block);
  for (Char* list : {none, empty}) {
    EXPECT_EQ(TypeParam::MultiAsciizSize(list, 0), 0u);
    EXPECT_EQ(TypeParam::MultiAsciizSize(list, 1), list == none ? 0 : this->kUnit);
    EXPECT_EQ(TypeParam::MultiAsciizStringCount(list), 0u);
    EXPECT_EQ(TypeParam::ScanMultiAsciiz(nullptr, list, 1), list);
    EXPECT_EQ(TypeParam::ScanMultiAsciiz(string.c_str(), list, 0), nullptr);
    EXPECT_EQ(TypeParam::AppendMultiAsciiz(nullptr, list, 0), 1);
    EXPECT_EQ(TypeParam::InsertMultiAsciiz(nullptr, none, list, 64), 0);
    EXPECT_EQ(TypeParam::InsertMultiAsciiz(nullptr, empty, list, 0), 1);
    EXPECT_EQ(TypeParam::InsertMultiAsciiz(string.c_str(), empty + 1, list, 64), 0);
    EXPECT_EQ(TypeParam::RemoveMultiAsciiz(list, 0), 1);
    EXPECT_EQ(TypeParam::RemoveMultiAsciiz(list, 1), 0);
  }
  EXPECT_EQ(TypeParam::InsertMultiAsciiz(string.c_str(), empty, none, 64), 0);
  EXPECT_EQ(TypeParam::NextAsciiz(none), nullptr);
  this->ExpectBlock(block);

  DWORD stored[] = {99, 99, 99};
  EXPECT_EQ(TypeParam::Array2MultiAsciiz(&none, none, 64, &stored[0]), 0);
  EXPECT_EQ(TypeParam::MultiAsciiz2Array(empty, nullptr, 64, &stored[1]), 0);
  EXPECT_EQ(TypeParam::Array2MultiAsciiz(nullptr, this->Put(block), block.size(), &stored[2]), 1);
  EXPECT_THAT(stored, testing::Each(0u));
  this->ExpectBlock(Bytes(block.size()));
}

TEST(MultiAsciiz, TakesFiveBytesAtLeast) {
  for (DWORD size = 0; size < 9; ++size) {
    test::GuardedBuffer block(size);
    EXPECT_EQ(utInitMultiAsciiz(block.data(), size), size > 4);
    EXPECT_EQ(block.Bytes(), Bytes(size, size > 4 ? 0 : test::kPattern));
    EXPECT_EQ(utInitMultiAsciiz(nullptr, size), 0);
  }
}

TEST(MultiAsciiz, StaysWholeWhenThePlatformFails) {
  const unsigned failures = test::ForEachFailure(0, [] {
    char list[16] = "ab\0";
    EXPECT_EQ(utAppendMultiAsciiz("cd", list, sizeof list), 1);
    EXPECT_STREQ(list, "ab");
    const DWORD used = utMultiAsciizSize(list, 0);
    EXPECT_TRUE(host::FailureCame() ? used <= 6 : used == 6) << used;
  });
  EXPECT_EQ(failures, 2u);  // lstrlenA, lstrcpyA
}

}  // namespace
