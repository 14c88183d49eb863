// The bytes of a flattened NETRESOURCE record in a buffer that has a few to spare.
#include <cstddef>
#include <cstring>

#include "example.h"
#include "picture.h"

namespace {

struct Field {
  const char* name;
  unsigned place;
};

constexpr Field kNumbers[] = {{"dwScope", offsetof(NETRESOURCEA, dwScope)},
                              {"dwType", offsetof(NETRESOURCEA, dwType)},
                              {"dwDisplayType", offsetof(NETRESOURCEA, dwDisplayType)},
                              {"dwUsage", offsetof(NETRESOURCEA, dwUsage)}};
constexpr Field kTexts[] = {{"lpLocalName", offsetof(NETRESOURCEA, lpLocalName)},
                            {"lpRemoteName", offsetof(NETRESOURCEA, lpRemoteName)},
                            {"lpComment", offsetof(NETRESOURCEA, lpComment)},
                            {"lpProvider", offsetof(NETRESOURCEA, lpProvider)}};

LPCSTR TextAt(const char* block, const Field& field) {
  LPCSTR text = nullptr;
  std::memcpy(&text, block + field.place, sizeof text);
  return text;
}

// Addresses differ from run to run, so a pointer shows as the place in the block that it holds.
void PrintPointer(const char* block, const Field& field) {
  LPCSTR text = TextAt(block, field);
  if (text == nullptr) {
    std::printf("%4u  %-33s  %s: NULL\n", field.place, "00 00 00 00", field.name);
  } else {
    char place[32];
    std::snprintf(place, sizeof place, "(address of %u)", example::Offset(block, text));
    std::printf("%4u  %-33s  %s\n", field.place, place, field.name);
  }
}

void PrintBlock() {
  char local[] = "P:", remote[] = "\\\\orion\\projects", provider[] = "Net";
  const NETRESOURCEA source{2, 1, 3, 1, local, remote, nullptr, provider};  // without a comment
  constexpr DWORD kSize = 64;
  alignas(NETRESOURCEA) char block[kSize];
  std::memset(block, '-', sizeof block);  // shows which bytes are left alone

  DWORD needed = 0;
  utCopyNETRESOURCE(&source, block, sizeof block, UT_NR_ALL, &needed);
  std::printf("A record that needs %u bytes in a buffer of %u:\n\n", needed, kSize);
  for (const Field& field : kNumbers) {
    example::PrintRows(block, field.place, sizeof(DWORD), field.name);
  }
  for (const Field& field : kTexts) PrintPointer(block, field);
  example::PrintRows(block, sizeof source, kSize - needed, "spare bytes, not written");
  for (int i = 3; i >= 0; --i) {
    LPCSTR text = TextAt(block, kTexts[i]);
    if (text == nullptr) continue;
    example::PrintRows(block, example::Offset(block, text), utStringSize(text, TRUE),
                       kTexts[i].name);
  }
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintBlock); }
