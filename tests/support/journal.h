// Platform calls as text, a line for each.
#ifndef TESTS_SUPPORT_JOURNAL_H
#define TESTS_SUPPORT_JOURNAL_H

#include <host.h>

#include <string>
#include <vector>

namespace test {

inline std::string Text(const std::vector<host::Call>& calls) {
  std::string text;
  for (const auto& call : calls) {
    text += call.operation;
    for (const auto argument : call.arguments) text += ' ' + std::to_string((int)argument);
    text += '\n';
  }
  return text;
}

template <class... Arguments>
std::string Line(const char* operation, Arguments... arguments) {
  return Text({host::Call{operation, {(std::uintptr_t)arguments...}}});
}

}  // namespace test

#endif  // TESTS_SUPPORT_JOURNAL_H
