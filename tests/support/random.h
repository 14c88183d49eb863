// Random input that is the same at every run.
#ifndef TESTS_SUPPORT_RANDOM_H
#define TESTS_SUPPORT_RANDOM_H

#include <random>
#include <string>
#include <vector>

namespace test {

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  // A number from 0 to bound - 1.
  unsigned Below(unsigned bound) { return static_cast<unsigned>(engine_() % bound); }

  template <class T>
  const T& Of(const std::vector<T>& values) {
    return values[Below(static_cast<unsigned>(values.size()))];
  }

  template <class Char>
  std::basic_string<Char> Text(const std::vector<Char>& alphabet, unsigned maxLength) {
    std::basic_string<Char> text(Below(maxLength + 1), Char{});
    for (auto& unit : text) unit = Of(alphabet);
    return text;
  }

 private:
  std::mt19937 engine_;
};

}  // namespace test

#endif  // TESTS_SUPPORT_RANDOM_H
