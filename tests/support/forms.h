// The byte form and the wide form of the exports, so that one test text drives both: a typed test
// takes ByteForm or WideForm and calls Form::FindChar, which is utFindChar or utFindCharW. The
// pairs are generated from the declarations.
#ifndef TESTS_SUPPORT_FORMS_H
#define TESTS_SUPPORT_FORMS_H

#include <gtest/gtest.h>
#include <tavkit.h>

#include <string>
#include <string_view>

namespace test {

struct ByteForm {
  using Char = CHAR;
  static constexpr bool kIsWide = false;
#define UT_PAIR(operation, byteName, wideName) static inline auto* const operation = &byteName;
#include <pairs.inc>
#undef UT_PAIR
};

struct WideForm {
  using Char = WCHAR;
  static constexpr bool kIsWide = true;
#define UT_PAIR(operation, byteName, wideName) static inline auto* const operation = &wideName;
#include <pairs.inc>
#undef UT_PAIR
};

using Forms = ::testing::Types<ByteForm, WideForm>;

struct FormNames {
  template <class Form>
  static std::string GetName(int) {
    return Form::kIsWide ? "Wide" : "Byte";
  }
};

// A text in the units of a form, one for each byte. Those above 0x7F become wide units whose low
// byte is a character, or a zero, that they must not be taken for.
template <class Form>
std::basic_string<typename Form::Char> Text(std::string_view text) {
  std::basic_string<typename Form::Char> units(text.begin(), text.end());
  if constexpr (Form::kIsWide) {
    for (auto& unit : units) unit = unit > 0x7F ? 0x0100 | (unit & 0x7F) : unit;
  }
  return units;
}

inline std::basic_string<WCHAR> Wide(std::string_view text) { return Text<WideForm>(text); }

// Bytes of `units` units of a form.
template <class Form>
constexpr DWORD Size(DWORD units) {
  return units * static_cast<DWORD>(sizeof(typename Form::Char));
}

// A call as text, for what a failure says of it: the export of a form, and its arguments.
template <class Form, class... Arguments>
std::string CallText(const std::string& operation, const Arguments&... arguments) {
  std::string text = "ut" + operation + (Form::kIsWide ? "W(" : "(");
  const char* separator = "";
  ((text += separator + testing::PrintToString(arguments), separator = ", "), ...);
  return text + ')';
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
