// UNC names: taken apart, searched, put together, and cut; server names in two forms.
#include "example.h"

namespace {

// utAppendPathComponent takes no size, so the caller makes sure of the capacity: the path, one
// backslash, the component and the terminator.
bool Append(LPSTR path, DWORD size, LPCSTR component) {
  if (!utIsBufferSize(size, utStringSize(path, 0) + 1 + utStringSize(component, 1))) return false;
  utAppendPathComponent(path, component);
  return true;
}

void PrintNames() {
  const char name[] = "\\\\orion\\projects\\2026\\plans";

  // Copies of the parts. One that is too long is cut without a sign, so give each the size of the
  // whole name; NULL leaves a part out.
  char server[sizeof name], path[sizeof name];
  const DWORD parts = utBreakUNCName(name, server, sizeof server, nullptr, 0, path, sizeof path);
  std::printf("parts: %u, server: %s, path: %s\n", parts, server, path);

  // Addresses within the name, to cut it without a copy.
  LPSTR start, share, rest;
  if (utSearchUNCName(name, &start, &share, &rest) & UT_UNC_PATH) {
    share = utSkipLeadChar(share, '\\');  // there may be more than one backslash
    std::printf("share: %.*s, from %u\n", static_cast<int>(rest - share), share,
                example::Offset(start, share));
  }

  // A search reports a separator with nothing after it; a check does not.
  std::printf("\\\\orion\\ gives %u if searched, %u if checked\n",
              utSearchUNCName("\\\\orion\\", nullptr, nullptr, nullptr),
              utCheckUNCName("\\\\orion\\"));

  // A name that doesn't fit is refused, which leaves an empty string. Parts may have backslashes.
  char built[17];
  BOOL isBuilt = utBuildUNCName(built, sizeof built, "vega", "\\scans", "may");
  std::printf("built: %d, \"%s\"\n", isBuilt, built);
  isBuilt = utBuildUNCName(built, sizeof built, "\\\\vega", "scans", "june");
  std::printf("built: %d, \"%s\"\n", isBuilt, built);

  // The size asked for is that of the name as it is passed, and two bytes: \\vega asks for 9.
  char form[9];
  BOOL isWritten = utServerName("\\\\vega", UT_SERVERNAME_UNC, form, 7);
  std::printf("7 bytes: %d, \"%s\"\n", isWritten, form);
  isWritten = utServerName("\\\\vega", UT_SERVERNAME_UNC, form, sizeof form);
  std::printf("9 bytes: %d, \"%s\"\n", isWritten, form);
  utConvertServerName(form, 0);
  std::printf("without backslashes: %s\n", form);

  // Where a name lacks the part, the buffer keeps what it held.
  char root[24] = "none";
  BOOL isThere = utExtractServerResource("\\\\vega", root, sizeof root);
  std::printf("server and share: %d, %s\n", isThere, root);
  isThere = utExtractServerResource(name, root, sizeof root);
  std::printf("server and share: %d, %s\n", isThere, root);
  for (LPCSTR folder : {"drafts", "old"}) {
    std::printf("append %s: %d\n", folder, Append(root, sizeof root, folder));
  }
  std::printf("appended: %s\n", root);
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintNames); }
