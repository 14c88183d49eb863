// MultiAsciiz lists, byte and wide forms by one text, beside models on vectors of strings.
#include <codepage.h>
#include <host.h>
#include <tavkit.h>

#include <optional>

#include "support/choices.h"
#include "support/form_test.h"
#include "support/journal.h"

namespace {

using List = std::vector<std::string>;
using test::Bytes, test::CallText, test::Over, test::Pattern;

// Lists in the memory of a form, and the checks of a random one.
template <class F>
struct Checks : test::GuardedBlock<F> {
  using typename test::GuardedBlock<F>::Char;
  using typename test::GuardedBlock<F>::String;
  using test::GuardedBlock<F>::kUnit;

  // The first members of a list with their terminators, without the final zero.
  static String Used(const List& list, std::size_t count) {
    String used;
    for (std::size_t i = 0; i < count; ++i) used += test::Text<F>(list[i]) + typename F::Char{};
    return used;
  }
  static String Full(const List& list) { return Used(list, list.size()) + Char{}; }
  static Bytes Flat(const List& list) { return test::BytesOf(Used(list, list.size())); }

  // The members of a flat list, each as the bytes that Text() makes it of.
  static List Members(const String& full) {
    List list;
    for (std::size_t at = 0; full[at] != 0; at += list.back().size() + 1) {
      const String member = &full[at];
      list.emplace_back();
      for (const int unit : member) list.back() += char(unit >> 7 ? unit | 0x80 : unit);
    }
    return list;
  }

  // What an insert makes of the units of a list; nothing if it is refused.
  static std::optional<String> Inserted(String full, long at, const String& string, DWORD cbList) {
    const long length = full.size();
    if (at < 0 || at >= length || cbList < (length + string.size() + 1) * kUnit) return {};
    const bool appends = at >= length - 2;
    return full.insert(appends ? length - 1 : at, string + Char{});
  }

  // A list and the whole block that it lives in.
  struct Life {
    List list;
    Bytes block;
  };

  void CheckRemove(test::Choices& choices, Life& life) {
    auto* pList = this->Place(life.block);
    auto& list = life.list;
    const DWORD cStrings = choices.Below(8) == 0 ? ~0u : choices.Below(3);
    EXPECT_EQ(F::RemoveMultiAsciiz(pList, cStrings), cStrings <= list.size());
    const bool empties = !list.empty() && cStrings >= list.size();
    list.erase(list.begin(), list.begin() + std::min<std::size_t>(cStrings, list.size()));
    if (empties) life.block = Over(life.block, Bytes(2 * kUnit));
    life.block = Over(life.block, Flat(list));
    EXPECT_TRUE(this->Contains(life.block)) << CallText<F>("RemoveMultiAsciiz", list, cStrings);
  }

  void CheckScan(const std::string& word, const Life& life) {
    const auto* pList = this->Place(life.block);
    const auto string = test::Text<F>(word);
    const auto& list = life.list;
    for (const BOOL caseSensitive : {0, 1, 0x100, 0x10000}) {
      const auto operation =
          std::string(caseSensitive ? "lstrcmp" : "lstrcmpi") + (F::kIsWide ? 'W' : 'A');
      const auto compare = caseSensitive ? strcmp : strcasecmp;
      std::vector<host::Call> calls;
      const Char* pFound = word.empty() ? pList + Used(list, list.size()).size() : nullptr;
      for (std::size_t i = 0; pFound == nullptr && i < list.size(); ++i) {
        const auto* pMember = pList + Used(list, i).size();
        calls.push_back({operation, {std::uintptr_t(string.c_str()), std::uintptr_t(pMember)}});
        if (compare(list[i].c_str(), word.c_str()) == 0) pFound = pMember;
      }
      host::StartJournal();
      EXPECT_EQ(F::ScanMultiAsciiz(string.c_str(), pList, caseSensitive), pFound)
          << CallText<F>("ScanMultiAsciiz", word, list, caseSensitive);
      EXPECT_EQ(test::Text(host::TakeJournal()), test::Text(calls));
    }
  }

  enum class Way { kInsertBeforeMember, kInsertAnywhere, kInsertMemberAnywhere, kAppend };

  void CheckInsert(test::Choices& choices, std::string word, Way way, Life& life) {
    auto* pList = this->Place(life.block);
    const auto& list = life.list;
    const auto full = Full(list);
    const auto string = test::Text<F>(word);
    const auto* psz = string.c_str();
    if (way == Way::kInsertMemberAnywhere && !list.empty()) {
      const auto own = choices.Below(list.size());
      word = list[own];
      psz = pList + Used(list, own).size();
    }
    const bool isAnywhere = way != Way::kInsertBeforeMember && !word.empty();
    const long at = way == Way::kAppend ? full.size() - 1
                    : isAnywhere        ? choices.Below(full.size() + 3) - 1l
                                        : Used(list, choices.Below(list.size() + 1)).size();
    const DWORD cbBlock = life.block.size();
    const DWORD cbNeeded = (full.size() + word.size() + 1) * kUnit;
    DWORD cbList = choices.Of<DWORD>(
        {cbBlock, cbNeeded, cbNeeded - 1, choices.Below(cbBlock), ~0u, 0x80000000u});
    const auto inserted = [&] {
      return word.empty() ? full : Inserted(full, at, test::Text<F>(word), cbList);
    };
    if (inserted().value_or(full).size() * kUnit > cbBlock) cbList = cbBlock;
    const auto call = [&, before = list] {
      return CallText<F>(way == Way::kAppend ? "AppendMultiAsciiz" : "InsertMultiAsciiz", word, at,
                         before, cbList);
    };
    EXPECT_EQ(way == Way::kAppend ? F::AppendMultiAsciiz(psz, pList, cbList)
                                  : F::InsertMultiAsciiz(psz, pList + at, pList, cbList),
              inserted().has_value())
        << call();
    // A string that went in at the end of another one makes that the last of the list.
    const auto whole = inserted().value_or(full);
    life.list = Members(whole);
    life.block = Over(Over(life.block, test::BytesOf(whole, 0)), Flat(life.list));
    EXPECT_TRUE(this->Contains(life.block)) << call();
  }

  // The life of a list, step by step.
  void CheckWalk(test::Choices& choices) {
    host::SetCodePage(choices.Of<unsigned>({1252, 932}));
    Life life = {{}, Bytes(24 + choices.Below(80))};
    for (unsigned step = 0; choices.More(); ++step) {
      SCOPED_TRACE(step);
      const auto word = choices.Text<char>({'a', 'B', 'b', '\x80'}, 5);
      const unsigned change = choices.Below(6);
      if (change == 0) CheckRemove(choices, life);
      if (change == 1) CheckScan(word, life);
      if (change > 1) CheckInsert(choices, word, Way(choices.Below(4)), life);
    }
  }

  // The walk goes by blocks of bytes, so every place of a list within its blocks counts; units with
  // one zero half must not end a wide one.
  void CheckEnds(test::Choices& choices) {
    String used;
    std::vector<std::size_t> starts = {0};
    for (auto members = choices.Below(6); members > 0; --members) {
      used += Char{'m'};
      used += choices.Text<Char>({1, 'a', Char(F::kIsWide ? 0x100 : 0xFF)}, 36) + Char{};
      starts.push_back(used.size());
    }
    auto block = test::BytesOf(used);
    test::GuardedText<Char> front(used, test::Guard::kInFront);
    const unsigned place = choices.Below(3);
    const bool isOnHeap = place == 0;  // where the sanitizers watch the block's ends
    if (!isOnHeap) block.resize(block.size() + choices.Below(17), test::kPattern);
    const Char* pList = isOnHeap     ? reinterpret_cast<Char*>(block.data())
                        : place == 1 ? front.get()
                                     : this->Place(block);
    EXPECT_EQ(F::MultiAsciizSize(pList, 0), used.size() * this->kUnit);
    for (const BOOL flag : {1, 7, 0x100, 0x10000}) {
      EXPECT_EQ(F::MultiAsciizSize(pList, flag), (used.size() + 1) * this->kUnit) << flag;
    }
    EXPECT_EQ(F::MultiAsciizStringCount(pList), starts.size() - 1);
    EXPECT_EQ(F::ScanMultiAsciiz(nullptr, pList, 1), pList + used.size());
    starts.push_back(used.size() + 1);  // a step on the final zero leads past the list
    for (std::size_t n = 0; n + 1 < starts.size(); ++n) {
      EXPECT_EQ(F::NextAsciiz(pList + starts[n]), pList + starts[n + 1]);
    }
  }

  void CheckCursor(const List& words, DWORD size) {
    Bytes block = Pattern(size);
    auto* const pList = this->Place(block);
    auto* cursor = pList;
    DWORD left = size, used = 0;
    for (const auto& word : words) {
      const auto string = test::Text<F>(word);
      const DWORD cbString = string.empty() ? 0 : (string.size() + 1) * kUnit;
      const bool fits = used + cbString + kUnit <= size;
      EXPECT_EQ(F::CopyNextAsciiz(string.c_str(), &cursor, &left), fits);
      const auto bytes = test::BytesOf(string, string.empty() ? 1 : 2);
      if (fits) std::copy(bytes.begin(), bytes.end(), block.begin() + used);
      if (fits) used += cbString;
      EXPECT_EQ(reinterpret_cast<char*>(cursor) - reinterpret_cast<char*>(pList), used);
      EXPECT_EQ(left, size - used);
      EXPECT_TRUE(this->Contains(block)) << CallText<F>("CopyNextAsciiz", word, left);
    }
    EXPECT_EQ(F::CopyNextAsciiz(nullptr, &cursor, &left), left >= kUnit);
    if (left >= kUnit) std::fill_n(block.begin() + used, kUnit, 0);
    EXPECT_EQ(utInitMultiAsciiz(pList, size), size > 4);
    EXPECT_TRUE(this->Contains(size > 4 ? Bytes(size) : block))
        << "utInitMultiAsciiz, size " << size;
  }

  // An array to a list, and the list of the same strings to an array.
  void CheckArrays(const List& words, DWORD size) {
    using Psz = const Char*;
    const auto strings = this->Used(words, words.size());
    std::vector<Psz> array(words.size() + 1);
    for (std::size_t i = 0; i < words.size(); ++i) array[i] = &strings[this->Used(words, i).size()];
    List list;
    bool complete = size > 4;
    for (std::size_t i = 0; complete && i < words.size(); ++i) {
      if (!words[i].empty()) list.push_back(words[i]);
      complete = this->Flat(list).size() <= size;
      if (!complete) list.pop_back();
    }
    DWORD stored = 99;
    for (DWORD* pcStored : {&stored, static_cast<DWORD*>(nullptr)}) {
      auto* pList = this->Place(Pattern(size));
      EXPECT_EQ(F::Array2MultiAsciiz(array.data(), pList, size, pcStored), complete);
      EXPECT_TRUE(this->Contains(size > 4 ? Over(Bytes(size), Flat(list)) : Pattern(size)))
          << CallText<F>("Array2MultiAsciiz", words, size);
    }
    EXPECT_EQ(stored, list.size());

    list = words;
    std::erase(list, "");
    const DWORD slots = size / sizeof(Psz);
    const auto flat = Flat(list);
    auto* pList = reinterpret_cast<Psz>(flat.data());
    std::vector<Psz> expected((size + sizeof(Psz) - 1) / sizeof(Psz));
    for (DWORD i = 0; i < list.size() && i + 1 < slots; ++i) {
      expected[i] = pList + Used(list, i).size();
    }
    test::GuardedBuffer out(expected.size() * sizeof(Psz));
    EXPECT_EQ(F::MultiAsciiz2Array(pList, out.As<Psz>(), size, &stored), slots > 0);
    EXPECT_EQ(stored, slots == 0 ? 0 : std::min<DWORD>(list.size(), slots - 1));
    EXPECT_TRUE(out.IsUntouched(slots == 0 ? 0 : size));
    EXPECT_TRUE(slots == 0 || std::memcmp(out.data(), expected.data(), size) == 0);
    EXPECT_EQ(F::MultiAsciiz2Array(nullptr, out.As<Psz>(), size, nullptr), slots > 0);
  }

  void CheckConversions(test::Choices& choices) {
    List words;
    while (choices.Below(5) != 0) words.push_back(choices.Text<char>({'a', '\xE1', '\x80'}, 6));
    CheckArrays(words, choices.Below(50));
    CheckCursor(words, choices.Below(50));
  }
};

PROPERTY(MultiAsciiz, IsBuiltAndConvertedWithinAnySize, 2000) {
  choices.Below(2) == 0 ? Checks<test::ByteForm>().CheckConversions(choices)
                        : Checks<test::WideForm>().CheckConversions(choices);
}

PROPERTY(MultiAsciiz, LivesAsItsModel, 200) {
  choices.Below(2) == 0 ? Checks<test::ByteForm>().CheckWalk(choices)
                        : Checks<test::WideForm>().CheckWalk(choices);
}

PROPERTY(MultiAsciiz, EndsAtItsFinalZero, 4000) {
  choices.Below(2) == 0 ? Checks<test::ByteForm>().CheckEnds(choices)
                        : Checks<test::WideForm>().CheckEnds(choices);
}

template <class F>
class MultiAsciizTest : public testing::Test, protected Checks<F> {};
TYPED_TEST_SUITE(MultiAsciizTest, test::Forms, test::FormNames);

TYPED_TEST(MultiAsciizTest, AnswerNullAndEmpty) {
  using F = TypeParam;
  const auto string = test::Text<F>("xy");
  // An empty list, whatever follows its final zero.
  const auto block = test::BytesOf(typename F::Char{} + string, 2);
  typename F::Char *none = nullptr, *empty = this->Place(block);
  for (auto* list : {none, empty}) {
    EXPECT_EQ(F::MultiAsciizSize(list, 1), list == none ? 0 : this->kUnit);
    EXPECT_EQ(F::MultiAsciizStringCount(list), 0u);
    EXPECT_EQ(F::ScanMultiAsciiz(nullptr, list, 1), list);
    EXPECT_EQ(F::ScanMultiAsciiz(string.c_str(), list, 0), nullptr);
    EXPECT_EQ(F::AppendMultiAsciiz(nullptr, list, 0), 1);
    EXPECT_EQ(F::InsertMultiAsciiz(nullptr, none, list, 64), 0);
    EXPECT_EQ(F::InsertMultiAsciiz(nullptr, empty, list, 0), 1);
    EXPECT_EQ(F::InsertMultiAsciiz(string.c_str(), empty + (list == empty), list, 64), 0);
    EXPECT_EQ(F::RemoveMultiAsciiz(list, 0), 1);
    EXPECT_EQ(F::RemoveMultiAsciiz(list, 1), 0);
  }
  EXPECT_EQ(F::NextAsciiz(none), nullptr);
  EXPECT_TRUE(this->Contains(block));
  EXPECT_EQ(utInitMultiAsciiz(nullptr, 64), 0);
  DWORD stored[] = {99, 99, 99};
  EXPECT_EQ(F::Array2MultiAsciiz(&none, none, 64, &stored[0]), 0);
  EXPECT_EQ(F::MultiAsciiz2Array(empty, nullptr, 64, &stored[1]), 0);
  EXPECT_EQ(F::Array2MultiAsciiz(nullptr, this->Place(block), block.size(), &stored[2]), 1);
  for (const DWORD count : stored) EXPECT_EQ(count, 0u);
  EXPECT_TRUE(this->Contains(Bytes(block.size())));
  typename F::Char* cursor = nullptr;
  DWORD left = UT_SIZE_UNCHECKED;
  EXPECT_EQ(F::CopyNextAsciiz(nullptr, &cursor, &left), 0);
  cursor = this->Place(Bytes(test::Size<F>(4)));
  EXPECT_EQ(F::CopyNextAsciiz(string.c_str(), &cursor, &left), 1);
  EXPECT_EQ(left, UT_SIZE_UNCHECKED - test::Size<F>(3));  // a number like any other
}

}  // namespace
