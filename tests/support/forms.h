// The byte form and the wide form of the exports, so that one test text drives both: a typed test
// takes ByteForm or WideForm and calls Form::FindChar, which is utFindChar or utFindCharW.
#ifndef TESTS_SUPPORT_FORMS_H
#define TESTS_SUPPORT_FORMS_H

#include <gtest/gtest.h>
#include <tavkit.h>

#include <string>
#include <string_view>

namespace test {

// clang-format off
#define TEST_OPERATIONS(X)                                                                         \
  X(CharNext) X(CharPrev) X(CharLast) X(CharNull) X(FindChar) X(FindRevChar) X(TruncateAtChar)     \
  X(SkipLeadChar) X(CountLeadChar) X(TrimChar) X(StringSize) X(IsNullOrEmptyString)                \
  X(CopyMakeAsciiz) X(CopyString) X(CopyNonNullString)                                             \
  X(MultiAsciizSize) X(MultiAsciizStringCount) X(NextAsciiz) X(CopyNextAsciiz)                     \
  X(AppendMultiAsciiz) X(ScanMultiAsciiz) X(InsertMultiAsciiz) X(RemoveMultiAsciiz)                \
  X(Array2MultiAsciiz) X(MultiAsciiz2Array)                                                        \
  X(AppendPathComponent) X(BreakUNCName) X(SearchUNCName) X(CheckUNCName) X(BuildUNCName)          \
  X(ServerName) X(ConvertServerName) X(ExtractServer) X(ExtractServerResource)                     \
  X(SizeNETRESOURCE) X(VarSizeNETRESOURCE) X(CopyNETRESOURCE)
// clang-format on

struct ByteForm {
  using Char = CHAR;
  static constexpr bool kIsWide = false;
#define TEST_BYTE(operation) static constexpr auto* operation = &ut##operation;
  TEST_OPERATIONS(TEST_BYTE)
#undef TEST_BYTE
};

struct WideForm {
  using Char = WCHAR;
  static constexpr bool kIsWide = true;
#define TEST_WIDE(operation) static constexpr auto* operation = &ut##operation##W;
  TEST_OPERATIONS(TEST_WIDE)
#undef TEST_WIDE
};

using Forms = ::testing::Types<ByteForm, WideForm>;

struct FormNames {
  template <class Form>
  static std::string GetName(int) {
    return Form::kIsWide ? "Wide" : "Byte";
  }
};

// A text in the units of a form, one for each byte. In place of those above 0x7F stand wide units
// whose low byte is a character that they must not be taken for.
template <class Form>
std::basic_string<typename Form::Char> Text(std::string_view text) {
  std::basic_string<typename Form::Char> units(text.begin(), text.end());
  if constexpr (Form::kIsWide) {
    for (auto& unit : units) unit = unit > 0x7F ? 0x0100 | (unit & 0x7F) : unit;
  }
  return units;
}

// Bytes of `units` units of a form.
template <class Form>
constexpr DWORD Size(DWORD units) {
  return units * static_cast<DWORD>(sizeof(typename Form::Char));
}

// Calls an export with 32-bit words in the place of its arguments, as a caller may that has
// something above the low 16 bits of a 16-bit argument.
template <class Result, class... Parameters, class... Words>
[[clang::no_sanitize("function")]] Result CallWithWords(Result(UT_API* function)(Parameters...),
                                                        Words... words) {
  static_assert(sizeof...(Parameters) == sizeof...(Words));
  return reinterpret_cast<Result(UT_API*)(Words...)>(reinterpret_cast<void*>(function))(words...);
}

}  // namespace test

#endif  // TESTS_SUPPORT_FORMS_H
