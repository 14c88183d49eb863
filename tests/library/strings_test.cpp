// Characters and strings, byte and wide forms by one text, beside a slow obvious model.
#include <codepage.h>
#include <host.h>
#include <tavkit.h>

#include "support/choices.h"
#include "support/form_test.h"

namespace {

using test::Bytes, test::BytesOf, test::CallText, test::Over, test::Pattern, test::SameBytes;
using test::Guard, test::GuardedBuffer, test::GuardedText;

// Sizes beyond any buffer, taken for what they are or as unchecked.
constexpr DWORD kHugeSizes[] = {0x7FFFFFFE, 0x80000000, 0xFFFFFFFE, UT_SIZE_UNCHECKED};

// A string and what the rules say of it, worked out character by character.
template <class F>
struct Model {
  using Char = typename F::Char;
  using String = std::basic_string<Char>;

  String text;

  bool IsPair(std::size_t i) const {
    return !F::kIsWide && host::IsLeadByte(static_cast<unsigned char>(text[i])) &&
           i + 1 < text.size();
  }
  // Where the characters begin.
  std::vector<std::size_t> Characters() const {
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < text.size(); i += IsPair(i) ? 2 : 1) starts.push_back(i);
    return starts;
  }
  bool IsChar(std::size_t i, WORD wChar) const {
    return text[i] == static_cast<Char>(wChar) && (F::kIsWide || wChar <= 0x7F);
  }
  // The terminator counts as a unit of the text.
  std::size_t First(WORD wChar) const { return (text + Char{}).find(static_cast<Char>(wChar)); }
  std::size_t Last(WORD wChar) const { return (text + Char{}).rfind(static_cast<Char>(wChar)); }
  std::size_t LeadCount(WORD wChar) const {
    std::size_t count = 0;
    while (count < text.size() && IsChar(count, wChar)) ++count;
    return count;
  }
  String Trimmed(WORD wChar, unsigned flags) const {
    Model rest{flags & UT_TRIM_LEADING ? text.substr(LeadCount(wChar)) : text};
    auto starts = rest.Characters();
    while (flags & UT_TRIM_TRAILING && !starts.empty() && rest.IsChar(starts.back(), wChar)) {
      rest.text.resize(starts.back());
      starts.pop_back();
    }
    return rest.text;
  }
};

// The checks of a text, and what they need.
template <class F>
struct Checks : test::GuardedBlock<F> {
  using typename test::GuardedBlock<F>::Char;
  using test::GuardedBlock<F>::kUnit;

  // The characters that the comparison rules tell apart, as units and as arguments. Two of the wide
  // units are the halves of a surrogate pair, which are two characters all the same.
  static std::vector<Char> Alphabet() {
    if constexpr (F::kIsWide) {
      return {0x20,   0x5C,   0x61,   0x0001, 0x007F, 0x0080,
              0x015C, 0xD83D, 0xDE00, 0x7FFF, 0x8000, 0xFFFF};
    } else {
      const unsigned char bytes[] = {0x20, 0x5C, 0x61, 0x01, 0x7F, 0x80, 0x81, 0x83, 0xE9, 0xFF};
      return {std::begin(bytes), std::end(bytes)};
    }
  }
  inline static const std::vector<WORD> kArguments = {
      0x00, 0x20,   0x5C,   0x61,   0x01,   0x7F,   0x80,   0x81,  0xE9,
      0xFF, 0x0100, 0x015C, 0x01E9, 0x7FFF, 0x8000, 0xFF5C, 0xFFFF};

  // The checks of a model whose text begins a block.
  static void CheckSteps(const Model<F>& model, const Bytes& block, Guard guard) {
    GuardedBuffer buffer(block, guard);
    const auto* psz = buffer.As<Char>();
    const auto* end = psz + model.text.size();
    const auto* previous = psz;
    for (const auto start : model.Characters()) {
      EXPECT_EQ(F::CharPrev(psz, psz + start), previous);
      previous = psz + start;
      EXPECT_EQ(F::CharNext(previous), previous + (model.IsPair(start) ? 2 : 1));
    }
    EXPECT_EQ(F::CharPrev(psz, end), previous);
    EXPECT_EQ(F::CharLast(psz), previous);
    EXPECT_EQ(F::CharNext(end), end);
    EXPECT_EQ(F::CharNull(psz), end);
    EXPECT_EQ(F::IsNullOrEmptyString(psz), psz == end);
    for (const BOOL flag : {0, 1, 7, -1, 0x100, 0x10000}) {
      EXPECT_EQ(F::StringSize(psz, flag), (model.text.size() + (flag != 0)) * kUnit);
    }
  }

  static void CheckCharacter(const Model<F>& model, WORD wChar, WORD wFlags, const Bytes& block,
                             Guard guard) {
    SCOPED_TRACE(CallText<F>("...Char", model.text, wChar, wFlags));
    GuardedBuffer buffer(block, guard);
    auto* psz = buffer.As<Char>();
    // Only the low 16 bits of the character and the flags count.
    const auto call = [&](auto* function, auto... flags) {
      return test::CallWithWords(function, psz, 0xABCD0000u | wChar, flags...);
    };
    const auto first = model.First(wChar), last = model.Last(wChar);
    auto* found = first == model.text.npos ? nullptr : psz + first;
    EXPECT_EQ(call(F::FindChar), found);
    EXPECT_EQ(call(F::FindRevChar), found == nullptr ? nullptr : psz + last);
    EXPECT_EQ(call(F::SkipLeadChar), psz + model.LeadCount(wChar));
    EXPECT_EQ(call(F::CountLeadChar), model.LeadCount(wChar));
    EXPECT_TRUE(SameBytes(buffer.Bytes(), block));

    EXPECT_EQ(call(F::TruncateAtChar), found);
    auto expected = block;
    if (found != nullptr) std::fill_n(expected.begin() + first * kUnit, kUnit, 0);
    EXPECT_TRUE(SameBytes(buffer.Bytes(), expected)) << "by utTruncateAtChar";

    buffer.Set(block);
    const auto trimmed = model.Trimmed(wChar, wFlags);
    EXPECT_EQ(call(F::TrimChar, 0x98760000u | wFlags), trimmed != model.text);
    // What the text moved down over is written; a cut at the end writes one zero; the rest stays.
    const auto moved = Over(block, BytesOf(model.Trimmed(wChar, wFlags & UT_TRIM_LEADING)));
    EXPECT_TRUE(SameBytes(buffer.Bytes(), Over(moved, BytesOf(trimmed)))) << "by utTrimChar";
  }

  // What a counted copy leaves in a destination of cbDest bytes that held the pattern.
  static Bytes CopyOutcome(Bytes taken, DWORD cbDest) {
    if (cbDest < kUnit) return Pattern(cbDest);
    taken.resize(std::min<std::size_t>(taken.size() / kUnit, cbDest / kUnit - 1) * kUnit);
    taken.resize(taken.size() + kUnit);
    return Over(Pattern(cbDest), taken);
  }

  // Any bytes, and no address, into a destination of cbDest bytes; and unchecked, where the whole
  // units and a terminator are written, not a byte more.
  static void CheckByteCopies(const Bytes& source, DWORD cbDest) {
    GuardedBuffer from(source);
    const DWORD cbSource = source.size();
    SCOPED_TRACE(CallText<F>("CopyMakeAsciiz", source, "dest", cbDest));
    for (auto* given : {from.data(), static_cast<unsigned char*>(nullptr)}) {
      GuardedBuffer to(cbDest);
      EXPECT_EQ(F::CopyMakeAsciiz(given, cbSource, to.As<Char>(), cbDest), cbDest >= kUnit);
      EXPECT_TRUE(SameBytes(to.Bytes(), CopyOutcome(given ? source : Bytes{}, cbDest)));
    }
    GuardedBuffer to((cbSource / kUnit + 1) * kUnit);
    for (const DWORD cbHuge : kHugeSizes) {
      to.Refill();
      EXPECT_EQ(F::CopyMakeAsciiz(from.data(), cbSource, to.As<Char>(), cbHuge), 1) << cbHuge;
      EXPECT_TRUE(SameBytes(to.Bytes(), CopyOutcome(source, to.size()))) << cbHuge;
    }
  }

  // The same for a string, which takes a second zero along where it fits.
  static void CheckStringCopies(const std::basic_string<Char>& text, DWORD cbDest) {
    const auto taken = BytesOf(text);
    GuardedBuffer source(Over(Pattern(taken.size() + cbDest % 2), taken));
    const auto* from = source.As<Char>();
    const BOOL stored = cbDest >= kUnit;
    const DWORD cbHuge = kHugeSizes[cbDest % 4];
    SCOPED_TRACE(CallText<F>("CopyString", text, "dest", cbDest, "or", cbHuge));
    for (auto* copy : {F::CopyString, F::CopyNonNullString}) {
      GuardedBuffer to(cbDest), unchecked(taken.size() + kUnit);
      EXPECT_EQ(copy(from, to.As<Char>(), cbDest), stored);
      EXPECT_TRUE(SameBytes(to.Bytes(), CopyOutcome(taken, cbDest)));
      EXPECT_EQ(copy(from, unchecked.As<Char>(), cbHuge), 1);
      EXPECT_TRUE(SameBytes(unchecked.Bytes(), CopyOutcome(taken, unchecked.size())));
      to.Refill();
      EXPECT_EQ(copy(nullptr, to.As<Char>(), cbDest), stored && copy == F::CopyString);
      const auto none = copy == F::CopyString ? CopyOutcome({}, cbDest) : Pattern(cbDest);
      EXPECT_TRUE(SameBytes(to.Bytes(), none)) << "by NULL";
    }
  }

  static void CheckChosen(test::Choices& choices) {
    host::SetCodePage(choices.Of<unsigned>({1252, 932, 936, 949, 950}));
    // Half of the texts come from few letters, so that runs are frequent; one unit is any.
    auto alphabet = Alphabet();
    if (choices.Below(2) != 0) alphabet = {alphabet[0], alphabet[1], alphabet[6]};
    alphabet.push_back(1 + choices.Below(F::kIsWide ? 0xFFFF : 0xFF));
    const auto guard = choices.Of<Guard>({Guard::kBehind, Guard::kInFront});
    // Long texts have stretches of one-byte characters that end anywhere in a block.
    const bool isLong = choices.Below(8) == 0;
    if (isLong && choices.Below(2) != 0) alphabet.insert(alphabet.end(), 30, Char{'a'});
    const Model<F> model{choices.Text(alphabet, isLong ? 150 : 9)};
    auto block = BytesOf(model.text);
    if (choices.Below(3) == 0) block.push_back(test::kPattern);  // at an odd address if behind
    const auto any = static_cast<WORD>(choices.Below(0x10000));
    SCOPED_TRACE(testing::Message()
                 << "code page " << host::CodePage() << ", " << testing::PrintToString(model.text));
    CheckSteps(model, block, guard);
    for (const WORD wChar : {choices.Of(kArguments), static_cast<WORD>(alphabet.back()), any}) {
      CheckCharacter(model, wChar, static_cast<WORD>(choices.Below(8)), block, guard);
    }
    CheckStringCopies(model.text, choices.Below(30));
    CheckByteCopies(choices.Below(2) != 0 ? Over(block, Bytes(3)) : block, choices.Below(30));
  }
};

PROPERTY(Strings, AgreeWithTheModel, 3000) {
  choices.Below(4) != 0 ? Checks<test::ByteForm>::CheckChosen(choices)
                        : Checks<test::WideForm>::CheckChosen(choices);
}

template <class F>
class StringsTest : public testing::Test, protected Checks<F> {};
TYPED_TEST_SUITE(StringsTest, test::Forms, test::FormNames);

TYPED_TEST(StringsTest, AnswerNullAndHugeSizes) {
  using F = TypeParam;
  const auto source = BytesOf(test::Text<F>("ab"));
  auto* text = this->Place(source);
  const typename F::Char* none = nullptr;
  EXPECT_EQ(F::CharNext(none), nullptr);
  EXPECT_EQ(F::CharPrev(none, text), nullptr);
  EXPECT_EQ(F::CharPrev(text, none), nullptr);
  EXPECT_EQ(F::CharPrev(text + 1, text + 1), text + 1);
  if (F::kIsWide) EXPECT_EQ(F::CharPrev(text + 1, text), nullptr);  // below the start
  EXPECT_EQ(F::CharLast(none), nullptr);
  EXPECT_EQ(F::TruncateAtChar(nullptr, 'a'), nullptr);
  EXPECT_EQ(F::SkipLeadChar(none, 'a'), nullptr);
  EXPECT_EQ(F::CountLeadChar(none, 'a'), 0u);
  EXPECT_EQ(F::TrimChar(nullptr, 'a', 3), 0);
  for (const BOOL flag : {0, 1}) EXPECT_EQ(F::StringSize(none, flag), 0u);
  EXPECT_EQ(F::IsNullOrEmptyString(none), 1);
  EXPECT_EQ(F::CopyMakeAsciiz(text, 2, nullptr, UT_SIZE_UNCHECKED), 0);
  EXPECT_EQ(F::CopyString(text, nullptr, UT_SIZE_UNCHECKED), 0);
  for (const DWORD cbHuge : kHugeSizes) {
    GuardedBuffer to(source.size());
    EXPECT_EQ(F::CopyMakeAsciiz(text, cbHuge, to.As<typename F::Char>(), to.size()), 1);
    EXPECT_TRUE(SameBytes(to.Bytes(), source)) << cbHuge;
  }
}

TYPED_TEST(StringsTest, CopyOntoThemselvesWhole) {
  using F = TypeParam;
  test::Random random(18);
  for (int i = 0; i < 1200; ++i) {
    const auto [units, bits] = i % 8 != 0 ? std::pair{230u, 7u} : std::pair{4500u, 12u};
    GuardedBuffer buffer(units * this->kUnit + i % 2);  // at odd addresses too
    for (DWORD at = 0; at < buffer.size(); ++at) {
      buffer.data()[at] = static_cast<BYTE>(at * 167 >> 3);
    }
    const DWORD count = random.Below(2u << random.Below(bits - 1)), places = units - count;
    const DWORD from = random.Below(places);
    const DWORD to = (from + places + random.Below(161) - 80) % places;
    auto expected = buffer.Bytes();
    const auto start = expected.begin() + from * this->kUnit;
    Bytes copied(start, start + count * this->kUnit);
    copied.resize(copied.size() + this->kUnit);
    auto* psz = buffer.template As<typename F::Char>();
    const DWORD cbDest = i % 3 != 0 ? UT_SIZE_UNCHECKED : copied.size();
    EXPECT_EQ(F::CopyMakeAsciiz(psz + from, count * this->kUnit, psz + to, cbDest), 1);
    std::copy(copied.begin(), copied.end(), expected.begin() + to * this->kUnit);
    ASSERT_TRUE(SameBytes(buffer.Bytes(), expected)) << count << " from " << from << " to " << to;
  }
}

TEST(ByteStrings, AskThePlatformAboutCharacters) {
  char text[] = "  \xE9z";
  host::StartJournal();
  utCharNext(text);
  utCharPrev(text + 1, text);  // below the start: the platform decides
  utTrimChar(text, ' ', UT_TRIM_LEADING);
  utCharLast(text);  // by a walk: a step back can take a trail byte for a character
  const auto word = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
  const std::vector<host::Call> expected = {{"CharNextA", {word(text)}},
                                            {"CharPrevA", {word(text + 1), word(text)}},
                                            {"lstrcpyA", {word(text), word(text + 2)}},
                                            {"CharNextA", {word(text)}}};
  EXPECT_EQ(host::TakeJournal(), expected);
}

TEST(ByteStrings, TakeWhatAFailingPlatformGives) {
  GuardedText<char> text("  ab ");
  host::FailCall(1, 0, "lstrcpyA");
  EXPECT_EQ(utTrimChar(text.get(), ' ', UT_TRIM_LEADING | UT_TRIM_TRAILING), 1);
  EXPECT_STREQ(text.get(), "  ab ");
  char list[8] = "a\0";
  host::FailCall(1, 0, "lstrcpyA");
  EXPECT_EQ(utAppendMultiAsciiz("b", list, sizeof list), 0);
  EXPECT_EQ(utMultiAsciizSize(list, 0), 2u);

  GuardedBuffer dest(3);
  host::FailCall(1, 0, "lstrlenA");  // gives 0, so one byte is copied and ended
  EXPECT_EQ(utCopyString(text.get() + 2, dest.As<char>(), 3), 1);
  EXPECT_STREQ(dest.As<char>(), "a");
}

}  // namespace
