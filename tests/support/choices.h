// Properties: checks whose input is a run of choices. A property is written once, where its family
// is tested, and driven twice: as a test by random numbers that are the same at every run, and as a
// fuzz target (fuzz/) by the fuzzer's input.
#ifndef TESTS_SUPPORT_CHOICES_H
#define TESTS_SUPPORT_CHOICES_H

#include <fuzzer/FuzzedDataProvider.h>
#include <gtest/gtest.h>
#include <heap.h>
#include <host.h>
#include <registry.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace test {

class Choices {
 public:
  virtual ~Choices() = default;

  // A number from 0 to bound - 1.
  virtual unsigned Below(unsigned bound) = 0;
  // Whether a walk goes on.
  virtual bool More() = 0;
  // What is left, as a text.
  virtual std::string Rest() = 0;

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
};

class Random : public Choices {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  unsigned Below(unsigned bound) override { return static_cast<unsigned>(engine_() % bound); }
  bool More() override { return Below(60) != 0; }
  std::string Rest() override { return Text<char>({'a', '\\', '"', '\n', '=', '\x81'}, 20); }

 private:
  std::mt19937 engine_;
};

// The fuzzer's input, or one that it found.
class Input : public Choices {
 public:
  explicit Input(std::string_view bytes)
      : bytes_(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()) {}

  unsigned Below(unsigned bound) override { return bytes_.ConsumeIntegralInRange(0u, bound - 1); }
  bool More() override { return bytes_.remaining_bytes() != 0; }
  std::string Rest() override { return bytes_.ConsumeRemainingBytesAsString(); }

 private:
  FuzzedDataProvider bytes_;
};

struct Property {
  const char* name;
  void (*check)(Choices&);
};

// The properties of the source files linked into this program, in the order of their text.
inline std::vector<Property>& Properties() {
  static std::vector<Property> properties;
  return properties;
}

inline void ExpectNothingLeft() {
  EXPECT_EQ(host::LivingBlocks(), 0u);
  EXPECT_EQ(host::HeapError(), "");
  EXPECT_EQ(host::LivingKeyHandles(), 0u);
}

// Checks a property once, on a platform layer as it is at program start.
inline void Check(const Property& property, Choices& choices) {
  host::Reset();
  property.check(choices);
  ExpectNothingLeft();
}

// Defines a property, as a test of so many rounds; its body takes `choices`. Inputs that a fuzz
// target found may follow as string views: they are checked first.
#define PROPERTY(suite, name, rounds, ...)                                           \
  static void suite##name(test::Choices& choices);                                   \
  static const test::Property kAs##suite##name =                                     \
      test::Properties().emplace_back(#suite "." #name, suite##name);                \
  TEST(suite, name) {                                                                \
    using namespace std::string_view_literals;                                       \
    for (const std::string_view find : std::vector<std::string_view>{__VA_ARGS__}) { \
      test::Input input(find);                                                       \
      test::Check(kAs##suite##name, input);                                          \
    }                                                                                \
    test::Random random(1);                                                          \
    for (unsigned round = 0; round < (rounds) && !HasFailure(); ++round) {           \
      SCOPED_TRACE(testing::Message() << "round " << round);                         \
      test::Check(kAs##suite##name, random);                                         \
    }                                                                                \
  }                                                                                  \
  static void suite##name(test::Choices& choices)

}  // namespace test

#endif  // TESTS_SUPPORT_CHOICES_H
