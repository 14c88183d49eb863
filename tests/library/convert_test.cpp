// Digit and hexadecimal text, the system family, and conversion between code page and wide strings.
#include <codepage.h>
#include <gtest/gtest.h>
#include <host.h>
#include <tavkit.h>
#include <version.h>

#include <cstdlib>
#include <cstring>

#include "support/choices.h"
#include "support/forms.h"
#include "support/guarded.h"

namespace {

using test::GuardedBuffer;
using test::GuardedText;
using std::string_literals::operator""s;

constexpr char kDigits[] = "0123456789";
constexpr char kHexDigits[] = "0123456789ABCDEFabcdef";

std::uintptr_t Word(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

// Texts in which digits are frequent and everything next to the classes occurs.
std::string AnyText(test::Choices& choices, unsigned maxLength) {
  auto text =
      choices.Text<char>({'0', '7', '9', 'a', 'F', '0', '5', '4', '3', '2', 'b', 'E'}, maxLength);
  const std::string others = " \t\n\v\f\r\x0E\x08+-/:x@G`g\x80\x81\xA0\xB5\xFF";
  for (auto& c : text) {
    if (choices.Below(6) == 0) c = others[choices.Below(others.size())];
    if (choices.Below(60) == 0) c = static_cast<char>(1 + choices.Below(255));
  }
  return std::string(choices.Below(3), ' ') + (choices.Below(4) == 0 ? "-" : "") + text;
}

void CheckDigits(decltype(utIsStrDigit) isOf, const char* digits, const std::string& text) {
  GuardedText<char> buffer(text);
  char untouched;
  char* bad = &untouched;
  const std::size_t good = std::strspn(buffer.get(), digits);
  host::StartJournal();
  ASSERT_EQ(isOf(buffer.get(), &bad), good == text.size()) << testing::PrintToString(text);
  ASSERT_TRUE(host::TakeJournal().empty());  // each of the class is a character of its own
  ASSERT_EQ(static_cast<void*>(bad), good == text.size() ? &untouched : buffer.get() + good);
  ASSERT_EQ(isOf(buffer.get(), nullptr), good == text.size());
}

PROPERTY(DigitText, TellsTheFirstCharacterOutsideTheClass, 1500) {
  host::SetCodePage(choices.Of<unsigned>({1252, 932, 949}));
  const auto text = AnyText(choices, 5);
  CheckDigits(utIsStrDigit, kDigits, text);
  CheckDigits(utIsStrHexDigit, kHexDigits, text);
}

TEST(DigitText, IsToldByEveryCharacter) {
  for (unsigned i = 1; i < 256 && !HasFailure(); ++i) {
    CheckDigits(utIsStrDigit, kDigits, "1"s + static_cast<char>(i) + "1");
    CheckDigits(utIsStrHexDigit, kHexDigits, "1"s + static_cast<char>(i) + "1");
  }
  for (const auto isOf : {utIsStrDigit, utIsStrHexDigit}) {
    char untouched;
    char* bad = &untouched;
    CheckDigits(isOf, kDigits, "");
    EXPECT_EQ(isOf(nullptr, &bad) + isOf(nullptr, nullptr), 2);
    EXPECT_EQ(static_cast<void*>(bad), &untouched);
  }
}

TEST(DigitText, GivesEveryCharacterItsValue) {
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    const int index = std::u16string(std::begin(kHexDigits), std::end(kHexDigits) - 1).find(c);
    ASSERT_EQ(utHexCharValue(static_cast<WORD>(c)), index < 0 ? 0 : index < 16 ? index : index - 6);
  }
  EXPECT_EQ(test::CallWithWords(utHexCharValue, 0xABCD0000u | 'f'), 15);
}

// The C library reads decimal numbers by the same rules, into 64 bits, which wrap nowhere below 20
// digits.
void CheckNumbers(const std::string& text) {
  GuardedText<char> buffer(text);
  const auto number = static_cast<INT>(std::strtoull(text.c_str(), nullptr, 10));
  ASSERT_EQ(utAtoI(buffer.get()), number) << testing::PrintToString(text);
  const auto digits = text.substr(0, std::strspn(text.c_str(), kHexDigits)).substr(0, 8);
  host::StartJournal();
  ASSERT_EQ(utAtoX(buffer.get()), std::strtoul(("0" + digits).c_str(), nullptr, 16)) << digits;
  ASSERT_TRUE(host::TakeJournal().empty());
}

PROPERTY(DigitText, ReadsAnyNumberAtTheStart, 2000) { CheckNumbers(AnyText(choices, 17)); }

TEST(DigitText, ReadsTheNumberAtTheStart) {
  CheckNumbers("-2147483648");
  for (int i = 1; i < 256 && !HasFailure(); ++i) CheckNumbers(std::string(1, (char)i) + "7");
  EXPECT_EQ(utAtoX(nullptr), 0u);
}

// The bytes that a text gives, from the values of its characters.
std::vector<unsigned char> BytesOfHexText(const std::string& text) {
  std::vector<unsigned char> bytes((text.size() + 1) / 2);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int value = utHexCharValue(static_cast<BYTE>(text[i]));
    bytes[i / 2] = static_cast<BYTE>(16 * bytes[i / 2] + value);
  }
  return bytes;
}

void CheckHexText(test::Choices& choices, std::size_t length) {
  const std::string alphabet = "0123456789ABCDEFabcdef/:@G`g"s + '\0' + "\x80\xC1\xE1";
  GuardedBuffer bytes(length), text(2 * length);
  std::string expected;
  for (std::size_t i = 0; i < length; ++i) {
    const BYTE byte = bytes.data()[i] = static_cast<BYTE>(choices.Below(256));
    expected += {kHexDigits[byte >> 4], kHexDigits[byte & 15]};
  }
  utHex2Ascii(text.As<char>(), bytes.data(), length);
  ASSERT_EQ(text.Bytes(), test::BytesOf(expected, 0));

  for (const std::size_t count : {2 * length, 2 * length + 1}) {
    std::string input(count, 0);
    for (auto& c : input) c = alphabet[choices.Below(static_cast<unsigned>(alphabet.size()))];
    GuardedBuffer from(count), to((count + 1) / 2);
    from.Set(test::BytesOf(input, 0));
    utAscii2Hex(to.data(), from.As<char>(), count);
    ASSERT_EQ(to.Bytes(), BytesOfHexText(input)) << count;
    utAscii2Hex(from.data(), from.As<char>(), count);  // in place
    ASSERT_TRUE(std::equal(to.data(), to.data() + to.size(), from.data())) << count;
  }
}

PROPERTY(HexText, IsWrittenAndReadAtEveryLength, 1) {
  for (std::size_t length = 0; length <= 67; ++length) CheckHexText(choices, length);
}

TEST(HexText, IsReadFromEveryPairInBulkAndAlone) {
  std::string text;
  for (unsigned i = 0; i <= 0xFFFF; ++i) text += {static_cast<char>(i >> 8), static_cast<char>(i)};
  const auto expected = BytesOfHexText(text);
  GuardedBuffer bulk(expected.size()), single(expected.size());
  utAscii2Hex(bulk.data(), text.data(), text.size());
  EXPECT_EQ(bulk.Bytes(), expected);
  for (std::size_t i = 0; i < expected.size(); ++i) utAscii2Hex(single.data() + i, &text[2 * i], 2);
  EXPECT_EQ(single.Bytes(), expected);

  bulk.Refill();  // and nothing without an address
  utHex2Ascii(nullptr, bulk.data(), 32);
  utHex2Ascii(bulk.As<char>(), nullptr, 32);
  utAscii2Hex(nullptr, bulk.As<char>(), 64);
  utAscii2Hex(bulk.data(), nullptr, 64);
  EXPECT_TRUE(bulk.IsUntouched());
}

TEST(SystemFamily, IsNtUnlessTold) { EXPECT_EQ(utIsWinNT(), 1); }

TEST(SystemFamily, IsNtWithItsMajorVersionOrNone) {
  for (const DWORD platform : {0u, 1u, 2u, 3u, 0x10002u}) {
    for (const DWORD major : {0u, 3u, 4u, 10u, 0x80000000u}) {
      host::SetVersion(platform, major);
      EXPECT_EQ(utIsWinNT(), platform != 2 ? 0 : major < 4 ? -1 : 1) << platform << ' ' << major;
    }
  }
  OSVERSIONINFOA before, cleared = {148, 0, 0, 0, 0, ""}, filled = {148, 5, 1, 2600, 2, ""};
  host::ShowCalls([&](const host::Call& call) {
    auto* const info = reinterpret_cast<OSVERSIONINFOA*>(call.arguments[0]);
    before = *info;
    *info = filled;  // a call that fails may have written as well
  });
  host::FailCall(1);
  EXPECT_EQ(utIsWinNT(), 0);
  EXPECT_EQ(std::memcmp(&before, &cleared, sizeof before), 0);
}

TEST(CodePageConversion, AsksForTheWholeStringAndLeavesWhatWasStored) {
  WCHAR wide[4] = {};
  char bytes[4] = {};
  const char* text = "ab";
  const auto wideText = test::Wide("cd");
  host::StartJournal();
  EXPECT_EQ(utA2WHelper(wide, text, 4), wide);
  EXPECT_EQ(utW2AHelper(bytes, wideText.c_str(), 3), bytes);
  const auto minusOne = static_cast<std::uintptr_t>(-1);
  const std::vector<host::Call> expected = {
      {"MultiByteToWideChar", {0, 9, Word(text), minusOne, Word(wide), 4}},
      {"WideCharToMultiByte", {0, 0, Word(wideText.c_str()), minusOne, Word(bytes), 3, 0, 0}}};
  EXPECT_EQ(host::TakeJournal(), expected);
  EXPECT_EQ(wide, test::Wide("ab"));
  EXPECT_STREQ(bytes, "cd");
  EXPECT_EQ(utA2WHelper(wide, "xyz", 2), test::Wide("xy"));
  EXPECT_STREQ(utW2AHelper(bytes, test::Wide("xyz").c_str(), 2), "xy");
}

TEST(CodePageConversion, LeavesAnEmptyStringWhereNothingIsStored) {
  host::SetCodePage(932);
  GuardedBuffer target(3);  // begins at an odd address
  for (const INT capacity : {0, -1}) {
    target.Refill();
    EXPECT_EQ(utA2WHelper(target.As<WCHAR>(), "abc", capacity), target.As<WCHAR>());
    EXPECT_EQ(target.Bytes(), test::BytesOf("\0\0\xCD"s, 0));
    target.Refill();
    EXPECT_EQ(utW2AHelper(target.As<char>(), test::Wide("abc").c_str(), capacity),
              target.As<char>());
    EXPECT_EQ(target.Bytes(), test::BytesOf("\0\xCD\xCD"s, 0));
  }
  target.Refill();
  EXPECT_EQ(utA2WHelper(target.As<WCHAR>(), nullptr, 1), nullptr);
  EXPECT_EQ(utW2AHelper(target.As<char>(), nullptr, 2), nullptr);
  EXPECT_TRUE(target.IsUntouched());
  if (host::CodePage() != 932) return;
  utA2WHelper(target.As<WCHAR>(), "a\x81", 1);  // a lead byte without its trail byte
  EXPECT_EQ(target.Bytes(), test::BytesOf("\0\0\xCD"s, 0));
}

}  // namespace
