// The libFuzzer target of a family: the properties of its tests, on the fuzzer's input. The last
// byte picks one of them. A property that doesn't hold ends the program, as a touched page does.
#include <cstdio>
#include <cstdlib>

#include "support/choices.h"

namespace {

// How the property would be told to check the input as a test.
void Show(const test::Property& property, std::string_view input) {
  std::printf("%s: \"", property.name);
  for (const unsigned char byte : input) std::printf("\\%03o", byte);
  std::printf("\"sv\n");
  std::fflush(stdout);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  testing::InitGoogleTest();
  testing::GTEST_FLAG(throw_on_failure) = true;  // which ends the program: nothing catches it
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool shows = std::getenv("TAVKIT_SHOW_INPUT") != nullptr;
  const auto& properties = test::Properties();
  std::string_view input(reinterpret_cast<const char*>(data), size);
  std::size_t pick = 0;
  if (properties.size() > 1 && size != 0) {
    pick = data[size - 1] % properties.size();
    input.remove_suffix(1);
  }
  if (shows) Show(properties[pick], input);
  test::Input choices(input);
  test::Check(properties[pick], choices);
  return 0;
}
