// Characters and strings, byte and wide forms by one text, beside a slow obvious model.
#include <codepage.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>

#include <optional>

#include "support/forms.h"
#include "support/guarded.h"
#include "support/random.h"

namespace {

using test::ByteForm;
using test::Guard;
using test::GuardedBuffer;
using test::GuardedText;
using test::WideForm;

constexpr unsigned kCodePages[] = {1252, 932, 936, 949, 950};

// A string and what the rules say of it, worked out character by character.
template <class Form>
struct Model {
  using Char = typename Form::Char;
  using String = std::basic_string<Char>;
  using Index = std::optional<std::size_t>;

  String text;

  static unsigned Unit(Char c) { return Form::kIsWide ? c : static_cast<unsigned char>(c); }

  bool IsPair(std::size_t i) const {
    return !Form::kIsWide && host::IsLeadByte(static_cast<unsigned char>(text[i])) &&
           i + 1 < text.size();
  }
  // Where the characters begin.
  std::vector<std::size_t> Characters() const {
    std::vector<std::size_t> starts;
    for (std::size_t i = 0; i < text.size(); i += IsPair(i) ? 2 : 1) starts.push_back(i);
    return starts;
  }
  bool IsChar(std::size_t i, unsigned wChar) const {
    return Unit(text[i]) == wChar && (Form::kIsWide || wChar <= 0x7F);
  }
  // The terminator counts as a unit of the text.
  bool IsFound(std::size_t i, unsigned wChar) const {
    const unsigned sought = Form::kIsWide ? wChar : wChar & 0xFF;
    return (i == text.size() ? 0 : Unit(text[i])) == sought;
  }
  Index First(unsigned wChar) const {
    for (std::size_t i = 0; i <= text.size(); ++i) {
      if (IsFound(i, wChar)) return i;
    }
    return {};
  }
  Index Last(unsigned wChar) const {
    for (std::size_t i = text.size() + 1; i-- > 0;) {
      if (IsFound(i, wChar)) return i;
    }
    return {};
  }
  std::size_t LeadCount(unsigned wChar) const {
    std::size_t count = 0;
    for (const auto start : Characters()) {
      if (!IsChar(start, wChar)) break;
      ++count;
    }
    return count;
  }
  String Trimmed(unsigned wChar, unsigned flags) const {
    Model rest{flags & UT_TRIM_LEADING ? text.substr(LeadCount(wChar)) : text};
    auto starts = rest.Characters();
    while (flags & UT_TRIM_TRAILING && !starts.empty() && rest.IsChar(starts.back(), wChar)) {
      rest.text.resize(starts.back());
      starts.pop_back();
    }
    return rest.text;
  }
};

template <class Form>
class StringsTest : public testing::Test {
 protected:
  using Char = typename Form::Char;
  using String = std::basic_string<Char>;

  // The characters that the comparison rules tell apart, as units and as arguments.
  static std::vector<Char> Alphabet() {
    if constexpr (Form::kIsWide) {
      return {0x20, 0x5C, 0x61, 0x0001, 0x007F, 0x0080, 0x015C, 0x7FFF, 0x8000, 0xFFFF};
    } else {
      const unsigned char bytes[] = {0x20, 0x5C, 0x61, 0x01, 0x7F, 0x80, 0x81, 0x83, 0xE9, 0xFF};
      return {std::begin(bytes), std::end(bytes)};
    }
  }
  inline static const std::vector<WORD> kArguments = {
      0x20, 0x5C,   0x61,   0x01,   0x7F,   0x80,   0x81,   0xE9,
      0xFF, 0x0100, 0x015C, 0x01E9, 0x7FFF, 0x8000, 0xFF5C, 0xFFFF};

  // The index of a result, none for NULL.
  static typename Model<Form>::Index IndexIn(const Char* psz, const Char* found) {
    if (found == nullptr) return {};
    return static_cast<std::size_t>(found - psz);
  }

  static void CheckSteps(const Model<Form>& model, Guard guard) {
    GuardedText<Char> buffer(model.text, guard);
    const Char* psz = buffer.get();
    const std::size_t length = model.text.size();
    std::size_t previous = 0;
    for (const auto start : model.Characters()) {
      EXPECT_EQ(IndexIn(psz, Form::CharPrev(psz, psz + start)), previous);
      EXPECT_EQ(Form::CharNext(psz + start), psz + start + (model.IsPair(start) ? 2 : 1));
      previous = start;
    }
    EXPECT_EQ(IndexIn(psz, Form::CharPrev(psz, psz + length)), previous);
    EXPECT_EQ(IndexIn(psz, Form::CharLast(psz)), previous);
    EXPECT_EQ(Form::CharNext(psz + length), psz + length);
    EXPECT_EQ(Form::CharNull(psz), psz + length);
    EXPECT_EQ(Form::IsNullOrEmptyString(psz), length == 0);
    EXPECT_EQ(Form::StringSize(psz, 0), length * sizeof(Char));
    for (const BOOL flag : {1, 7, -1}) {
      EXPECT_EQ(Form::StringSize(psz, flag), (length + 1) * sizeof(Char));
    }
  }

  static void CheckSearches(const Model<Form>& model, WORD wChar, Guard guard) {
    GuardedText<Char> buffer(model.text, guard);
    Char* psz = buffer.get();
    EXPECT_EQ(IndexIn(psz, Form::FindChar(psz, wChar)), model.First(wChar));
    EXPECT_EQ(IndexIn(psz, Form::FindRevChar(psz, wChar)), model.Last(wChar));
    EXPECT_EQ(IndexIn(psz, Form::SkipLeadChar(psz, wChar)), model.LeadCount(wChar));
    EXPECT_EQ(Form::CountLeadChar(psz, wChar), model.LeadCount(wChar));
    EXPECT_EQ(buffer.Bytes(), test::BytesOf(model.text));

    EXPECT_EQ(IndexIn(psz, Form::TruncateAtChar(psz, wChar)), model.First(wChar));
    auto expected = model.text;
    if (const auto first = model.First(wChar); first && *first < expected.size())
      expected[*first] = 0;
    EXPECT_EQ(buffer.Bytes(), test::BytesOf(expected));
  }

  static void CheckTrim(const Model<Form>& model, WORD wChar, WORD wFlags, Guard guard) {
    SCOPED_TRACE(testing::Message() << "flags " << wFlags);
    GuardedText<Char> buffer(model.text, guard);
    const auto trimmed = model.Trimmed(wChar, wFlags);
    EXPECT_EQ(Form::TrimChar(buffer.get(), wChar, wFlags), trimmed != model.text);
    // What the text moved down over is written; a cut at the end writes one zero; the rest stays.
    const auto moved = model.Trimmed(wChar, wFlags & UT_TRIM_LEADING);
    auto expected = test::BytesOf(model.text);
    const auto atFront = test::BytesOf(moved);
    std::copy(atFront.begin(), atFront.end(), expected.begin());
    const auto cut = test::BytesOf(trimmed);
    std::copy(cut.begin(), cut.end(), expected.begin());
    EXPECT_EQ(buffer.Bytes(), expected);
  }
};
TYPED_TEST_SUITE(StringsTest, test::Forms, test::FormNames);

TYPED_TEST(StringsTest, AgreeWithTheModelOnRandomTexts) {
  test::Random random(12);
  for (const unsigned codePage : kCodePages) {
    if (TypeParam::kIsWide && codePage != 1252) break;  // no code page concerns the wide forms
    ASSERT_TRUE(host::SetCodePage(codePage));
    for (int i = 0; i < 150; ++i) {
      // Half of the texts come from few letters, so that runs are frequent.
      auto alphabet = this->Alphabet();
      if (i % 2 != 0) alphabet = {alphabet[0], alphabet[1], alphabet[6]};
      const Guard guard = random.Below(2) == 0 ? Guard::kBehind : Guard::kInFront;
      const Model<TypeParam> model{random.Text(alphabet, 9)};
      SCOPED_TRACE(testing::Message() << "code page " << codePage << ", text "
                                      << testing::PrintToString(test::BytesOf(model.text)));
      this->CheckSteps(model, guard);
      for (const WORD wChar : this->kArguments) {
        SCOPED_TRACE(testing::Message() << "character " << wChar);
        this->CheckSearches(model, wChar, guard);
        this->CheckTrim(model, wChar, static_cast<WORD>(i % 8), guard);
        if (this->HasFailure()) return;
      }
    }
  }
}

TYPED_TEST(StringsTest, FindZeroAsTheTerminatorButNeverSkipIt) {
  for (const char* text : {"", "a", "ab"}) {
    GuardedText<typename TypeParam::Char> buffer(test::Text<TypeParam>(text));
    auto* psz = buffer.get();
    EXPECT_EQ(TypeParam::FindChar(psz, 0), TypeParam::CharNull(psz));
    EXPECT_EQ(TypeParam::FindRevChar(psz, 0), TypeParam::CharNull(psz));
    EXPECT_EQ(TypeParam::SkipLeadChar(psz, 0), psz);
    EXPECT_EQ(TypeParam::CountLeadChar(psz, 0), 0u);
    EXPECT_EQ(TypeParam::TrimChar(psz, 0, UT_TRIM_LEADING | UT_TRIM_TRAILING), 0);
    EXPECT_EQ(TypeParam::TruncateAtChar(psz, 0), TypeParam::CharNull(psz));
    EXPECT_EQ(buffer.Bytes(), test::BytesOf(test::Text<TypeParam>(text)));
  }
}

TYPED_TEST(StringsTest, CountSixteenBitArgumentsByTheirLowHalf) {
  using Char = typename TypeParam::Char;
  const DWORD high = 0xABCD0000;
  GuardedText<Char> buffer(test::Text<TypeParam>("  a\\ "));
  Char* psz = buffer.get();
  EXPECT_EQ(test::CallWithWords(TypeParam::FindChar, psz, high | 'a'), psz + 2);
  EXPECT_EQ(test::CallWithWords(TypeParam::FindRevChar, psz, high | ' '), psz + 4);
  EXPECT_EQ(test::CallWithWords(TypeParam::SkipLeadChar, psz, high | ' '), psz + 2);
  EXPECT_EQ(test::CallWithWords(TypeParam::CountLeadChar, psz, high | ' '), 2u);
  EXPECT_EQ(test::CallWithWords(TypeParam::TrimChar, psz, high | ' ', high | 4u), 0);
  EXPECT_EQ(test::CallWithWords(TypeParam::TrimChar, psz, high | ' ', high | 3u), 1);
  EXPECT_EQ(std::basic_string<Char>(psz), test::Text<TypeParam>("a\\"));
  EXPECT_EQ(test::CallWithWords(TypeParam::TruncateAtChar, psz, high | '\\'), psz + 1);
  EXPECT_EQ(TypeParam::StringSize(psz, 0), sizeof(Char));
}

TYPED_TEST(StringsTest, AnswerNull) {
  using Char = typename TypeParam::Char;
  Char text[] = {'a', 0};
  const Char* none = nullptr;
  EXPECT_EQ(TypeParam::CharNext(none), nullptr);
  EXPECT_EQ(TypeParam::CharPrev(none, text), nullptr);
  EXPECT_EQ(TypeParam::CharPrev(text, none), nullptr);
  EXPECT_EQ(TypeParam::CharLast(none), nullptr);
  EXPECT_EQ(TypeParam::TruncateAtChar(nullptr, 'a'), nullptr);
  EXPECT_EQ(TypeParam::SkipLeadChar(none, 'a'), nullptr);
  EXPECT_EQ(TypeParam::CountLeadChar(none, 'a'), 0u);
  EXPECT_EQ(TypeParam::TrimChar(nullptr, 'a', 3), 0);
  EXPECT_EQ(TypeParam::StringSize(none, 0), 0u);
  EXPECT_EQ(TypeParam::StringSize(none, 1), 0u);
  EXPECT_EQ(TypeParam::IsNullOrEmptyString(none), 1);
}

// What a counted copy leaves in a destination of cbDest bytes that held the pattern, by the rules.
template <class Form>
std::vector<unsigned char> CopyOutcome(std::vector<unsigned char> taken, DWORD cbDest) {
  constexpr std::size_t unit = sizeof(typename Form::Char);
  if (cbDest < unit) return std::vector<unsigned char>(cbDest, test::kPattern);
  taken.resize(std::min<std::size_t>(taken.size() / unit, cbDest / unit - 1) * unit);
  taken.resize(taken.size() + unit);
  taken.resize(cbDest, test::kPattern);
  return taken;
}

TYPED_TEST(StringsTest, CopyWhatFitsAtEverySize) {
  using Char = typename TypeParam::Char;
  const auto source = test::BytesOf(test::Text<TypeParam>("ab\x7F"), 2);
  for (DWORD cbSource = 0; cbSource <= source.size(); ++cbSource) {
    GuardedBuffer from(cbSource);
    from.Set({source.data(), cbSource});
    for (DWORD cbDest = 0; cbDest <= cbSource + 2 * sizeof(Char) + 2; ++cbDest) {
      SCOPED_TRACE(testing::Message() << cbSource << " bytes into " << cbDest);
      GuardedBuffer to(cbDest);
      const BOOL stored = cbDest >= sizeof(Char);
      EXPECT_EQ(TypeParam::CopyMakeAsciiz(from.data(), cbSource, to.As<Char>(), cbDest), stored);
      EXPECT_EQ(to.Bytes(), CopyOutcome<TypeParam>(from.Bytes(), cbDest));
      to.Refill();
      EXPECT_EQ(TypeParam::CopyMakeAsciiz(nullptr, cbSource, to.As<Char>(), cbDest), stored);
      EXPECT_EQ(to.Bytes(), CopyOutcome<TypeParam>({}, cbDest));
    }
    // Unchecked: the whole units and a terminator, not a byte more.
    const DWORD whole = cbSource / sizeof(Char) * sizeof(Char);
    GuardedBuffer to(whole + sizeof(Char));
    EXPECT_EQ(TypeParam::CopyMakeAsciiz(from.data(), cbSource, to.As<Char>(), UT_SIZE_UNCHECKED),
              1);
    EXPECT_EQ(to.Bytes(), CopyOutcome<TypeParam>(from.Bytes(), whole + sizeof(Char)));
  }
  EXPECT_EQ(TypeParam::CopyMakeAsciiz(source.data(), 2, nullptr, UT_SIZE_UNCHECKED), 0);
}

TYPED_TEST(StringsTest, CutAnyCountToTheSize) {
  using Char = typename TypeParam::Char;
  const auto text = test::Text<TypeParam>("abcd");
  for (const DWORD cbSource : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    GuardedBuffer to(test::Size<TypeParam>(3));
    EXPECT_EQ(TypeParam::CopyMakeAsciiz(text.data(), cbSource, to.As<Char>(), to.size()), 1);
    EXPECT_EQ(to.Bytes(), test::BytesOf(test::Text<TypeParam>("ab")));
  }
}

TYPED_TEST(StringsTest, CopyAStringWithASecondZeroWhereThereIsRoom) {
  using Char = typename TypeParam::Char;
  for (const char* text : {"", "a", "abc"}) {
    const auto string = test::Text<TypeParam>(text);
    GuardedText<Char> from(string);
    const auto withTerminator = test::BytesOf(string);
    for (DWORD cbDest = 0; cbDest <= withTerminator.size() + sizeof(Char) + 2; ++cbDest) {
      SCOPED_TRACE(testing::Message() << text << " into " << cbDest);
      for (auto* copy : {TypeParam::CopyString, TypeParam::CopyNonNullString}) {
        GuardedBuffer to(cbDest);
        EXPECT_EQ(copy(from.get(), to.template As<Char>(), cbDest), cbDest >= sizeof(Char));
        EXPECT_EQ(to.Bytes(), CopyOutcome<TypeParam>(withTerminator, cbDest));
      }
      GuardedBuffer to(cbDest);
      EXPECT_EQ(TypeParam::CopyNonNullString(nullptr, to.As<Char>(), cbDest), 0);
      EXPECT_TRUE(to.IsUntouched());
      EXPECT_EQ(TypeParam::CopyString(nullptr, to.As<Char>(), cbDest), cbDest >= sizeof(Char));
      EXPECT_EQ(to.Bytes(), CopyOutcome<TypeParam>({}, cbDest));
    }
    GuardedBuffer to(withTerminator.size() + sizeof(Char));
    EXPECT_EQ(TypeParam::CopyString(from.get(), to.As<Char>(), UT_SIZE_UNCHECKED), 1);
    EXPECT_EQ(to.Bytes(), test::BytesOf(string, 2));
    EXPECT_EQ(TypeParam::CopyString(from.get(), nullptr, UT_SIZE_UNCHECKED), 0);
  }
}

TYPED_TEST(StringsTest, CopyOntoThemselvesWhole) {
  using Char = typename TypeParam::Char;
  const auto text = test::Text<TypeParam>("abcdef");
  for (const std::size_t from : {0, 1, 3}) {
    for (const std::size_t to : {0, 1, 3}) {
      GuardedText<Char> buffer(text);
      Char* psz = buffer.get();
      EXPECT_EQ(TypeParam::CopyMakeAsciiz(psz + from, test::Size<TypeParam>(3), psz + to,
                                          test::Size<TypeParam>(4)),
                1);
      EXPECT_EQ(std::basic_string<Char>(psz + to), text.substr(from, 3));
    }
  }
}

TEST(WideStrings, MayStandAtOddAddresses) {
  GuardedBuffer buffer(13);
  buffer.Set(test::BytesOf(std::u16string(u"  ab ")));  // six units, at an odd address
  ASSERT_EQ(reinterpret_cast<std::uintptr_t>(buffer.data()) % 2, 1u);
  auto* psz = buffer.As<WCHAR>();
  EXPECT_EQ(utStringSizeW(psz, 1), 12u);
  EXPECT_EQ(utFindCharW(psz, 'b'), psz + 3);
  EXPECT_EQ(utFindRevCharW(psz, ' '), psz + 4);
  EXPECT_EQ(utCharLastW(psz), psz + 4);
  EXPECT_EQ(utTrimCharW(psz, ' ', 3), 1);
  EXPECT_EQ(utStringSizeW(psz, 1), 6u);
  EXPECT_EQ(utCopyStringW(psz, psz + 1, 8), 1);
  EXPECT_EQ(utStringSizeW(psz + 1, 0), 4u);
}

TEST(WideStrings, GiveNullForAPositionBelowTheStart) {
  WCHAR text[] = {'a', 'b', 0};
  EXPECT_EQ(utCharPrevW(text + 1, text), nullptr);
  EXPECT_EQ(utCharPrevW(text + 1, text + 1), text + 1);
}

TEST(ByteStrings, AskThePlatformAboutCharacters) {
  char text[] = "  ab";
  host::StartJournal();
  utCharNext(text);
  utCharPrev(text + 1, text);  // below the start: the platform decides
  utTrimChar(text, ' ', UT_TRIM_LEADING);
  const auto word = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
  const std::vector<host::Call> expected = {{"CharNextA", {word(text)}},
                                            {"CharPrevA", {word(text + 1), word(text)}},
                                            {"CharNextA", {word(text)}},
                                            {"CharNextA", {word(text + 1)}},
                                            {"lstrcpyA", {word(text), word(text + 2)}}};
  EXPECT_EQ(host::TakeJournal(), expected);
}

TEST(ByteStrings, TakeWhatAFailingPlatformGives) {
  GuardedText<char> text("  ab");
  host::FailCall(1, 0, "lstrcpyA");
  EXPECT_EQ(utTrimChar(text.get(), ' ', UT_TRIM_LEADING), 1);
  EXPECT_STREQ(text.get(), "  ab");

  GuardedBuffer dest(3);
  host::FailCall(1, 0, "lstrlenA");  // gives 0, so one byte is copied and ended
  EXPECT_EQ(utCopyString(text.get() + 2, dest.As<char>(), 3), 1);
  EXPECT_STREQ(dest.As<char>(), "a");
}

}  // namespace
