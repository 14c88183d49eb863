// Numbers as text, bytes in hexadecimal and back, and text between code page and wide strings.
// It runs on the Linux platform layer, whose code page is 1252 at the start.
#include <string>
#include <vector>

#include "example.h"
#include "utf8.h"

namespace {

// utAtoI reads what it can and wraps at 32 bits, so text from outside is checked first: it has
// digits (no text at all passes utIsStrDigit), nothing else, and not more than fit.
bool IsNumber(LPCSTR text) {
  return !utIsNullOrEmptyString(text) && utIsStrDigit(text, nullptr) && utStringSize(text, 0) <= 9;
}

void PrintNumbers() {
  for (LPCSTR text : {"640", "64O", "", "4294967297"}) {
    std::printf("\"%s\": a number: %d, read: %d\n", text, IsNumber(text), utAtoI(text));
  }
  LPSTR bad = nullptr;
  const char key[] = "1F7G";
  if (!utIsStrHexDigit(key, &bad)) {
    std::printf("%s: no digit at %u\n", key, example::Offset(key, bad));
  }

  // No prefix is skipped: 0x1F reads as the 0 that precedes the x.
  std::printf("0x1F: %X, behind the prefix: %X\n", utAtoX("0x1F"), utAtoX(&"0x1F"[2]));

  // Two characters for each byte and no terminator, so the text gets its own.
  const BYTE bytes[] = {0x00, 0x1F, 0xA5, 0xFF};
  char text[2 * sizeof bytes + 1] = "";
  utHex2Ascii(text, bytes, sizeof bytes);
  BYTE back[sizeof bytes];
  utAscii2Hex(back, text, sizeof text - 1);  // the characters, without the terminator
  std::printf("hexadecimal: %s, back: %02X %02X %02X %02X\n", text, back[0], back[1], back[2],
              back[3]);
}

// The capacity counts wide characters here, and the source has at least as many bytes. With less
// the target might lack its terminator.
std::u16string Widen(LPCSTR text) {
  std::vector<WCHAR> wide(utStringSize(text, 1));
  return utA2WHelper(wide.data(), text, static_cast<INT>(wide.size()));
}

// Here the capacity counts bytes, at most two for each wide character. What the code page lacks is
// replaced without a sign: only the way back tells.
std::string Narrow(LPCWSTR wide) {
  std::vector<char> text(utStringSizeW(wide, 1));
  return utW2AHelper(text.data(), wide, static_cast<INT>(text.size()));
}

void PrintConversions() {
  const std::u16string wide = Widen("Gr\366\337e");  // in code page 1252
  std::printf("wide: %s, %zu units\n", example::ToUtf8(wide).c_str(), wide.size());
  for (const std::u16string word : {u"Größe", u"Ωmega"}) {
    const std::string narrow = Narrow(word.c_str());
    std::printf("narrow: %zu bytes, whole: %d\n", narrow.size(), Widen(narrow.c_str()) == word);
  }
}

}  // namespace

int main(int argc, char** argv) {
  return example::Run(argc, argv, [] { PrintNumbers(), PrintConversions(); });
}
