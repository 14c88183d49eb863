// Characters and strings: a path is trimmed and parted, and its parts are copied into buffers.
// It runs on the Linux platform layer, which is told the code page here.
#include <codepage.h>

#include <vector>

#include "example.h"
#include "utf8.h"

namespace {

// Goes by characters, so that a backslash is one: utFindRevChar goes by bytes and also finds the
// trail byte 0x5C of a double-byte character.
LPCSTR FileName(LPCSTR path) {
  LPCSTR name = path;
  for (LPCSTR at = path; *at != 0; at = utCharNext(at)) {
    if (*at == '\\') name = utCharNext(at);
  }
  return name;
}

void PrintStrings() {
  char path[] = "   C:\\Data\\Reports\\May.txt  ";  // trimming works in place
  utTrimChar(path, ' ', UT_TRIM_LEADING | UT_TRIM_TRAILING);
  std::printf("trimmed: %s, %u bytes\n", path, utStringSize(path, 0));

  host::SetCodePage(932);
  const char japanese[] = "C:\\\x95\x5C.txt";  // one character before the extension
  std::printf("by bytes: a backslash at %u; by characters: the name begins at %u\n",
              example::Offset(japanese, utFindRevChar(japanese, '\\')),
              example::Offset(japanese, FileName(japanese)));
  host::SetCodePage(1252);

  // A counted copy needs no terminator in the source and leaves one in the target.
  const LPCSTR name = FileName(path);
  char folder[16];
  utCopyMakeAsciiz(path, example::Offset(path, name) - 1, folder, sizeof folder);
  std::printf("folder: %s\n", folder);

  // A copy that doesn't fit is cut, with the result 1: only a look at the sizes tells. With the
  // result 0 nothing was stored.
  char tight[6];
  const BOOL fits = utIsBufferSize(sizeof tight, utStringSize(name, 1));
  const BOOL isStored = utCopyString(name, tight, sizeof tight);
  std::printf("fits: %d, stored: %d, %s\n", fits, isStored, tight);
  std::printf("stored with no room: %d, ", utCopyString(name, tight, 0));
  std::printf("with no source: %d\n", utCopyNonNullString(nullptr, tight, sizeof tight));

  // UT_SIZE_UNCHECKED vouches for the string and two zeros: one more than utStringSize counts.
  std::vector<char> vouched(utStringSize(name, 1) + 1, '#');
  utCopyString(name, vouched.data(), UT_SIZE_UNCHECKED);
  std::printf("unchecked: %zu bytes, the last two are %d and %d\n", vouched.size(),
              vouched[vouched.size() - 2], vouched.back());

  // The size of a wide buffer is in bytes too: 10 of them hold four characters and the terminator.
  WCHAR title[5];
  utCopyStringW(u"Quarterly", title, sizeof title);
  std::printf("wide: %s, %u bytes\n", example::ToUtf8(title).c_str(), utStringSizeW(title, 0));
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintStrings); }
