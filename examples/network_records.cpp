// NETRESOURCE records: one is measured, then copied with its strings into a single block.
#include <vector>

#include "example.h"

namespace {

using Block = std::vector<char>;

// The record stands at the front of its block, whose memory is aligned for it, as all from new is.
NETRESOURCEA* RecordOf(Block& block) { return reinterpret_cast<NETRESOURCEA*>(block.data()); }

// Size first, then copy, with the same mask for both. Handing the vector on leaves its memory where
// it is; a copy of it would hold pointers into the original.
Block Flatten(const NETRESOURCEA* source, DWORD mask) {
  Block block(utSizeNETRESOURCE(source, mask));
  const auto size = static_cast<DWORD>(block.size());
  if (!utCopyNETRESOURCE(source, block.data(), size, mask, nullptr)) block.clear();
  return block;
}

void Print(Block& block) {
  if (block.empty()) return;
  const auto& [scope, type, display, usage, local, remote, comment, provider] = *RecordOf(block);
  std::printf("  scope %u, type %u, display type %u, usage %u\n", scope, type, display, usage);
  for (LPCSTR text : {local, remote, comment, provider}) {
    if (text != nullptr) std::printf("  at %2u: %s\n", example::Offset(block.data(), text), text);
  }
}

void PrintRecords() {
  char local[] = "P:", remote[] = "\\\\orion\\projects", provider[] = "Example Net";
  const NETRESOURCEA source{2, 1, 3, 1, local, remote, nullptr, provider};  // without a comment

  Block all = Flatten(&source, UT_NR_ALL);
  std::printf("everything: %zu bytes, %u of them strings\n", all.size(),
              utVarSizeNETRESOURCE(&source, UT_NR_ALL));
  Print(all);

  // What the mask leaves out takes no space and comes out 0 or NULL. The strings stand at the end
  // of the block, so the size has to be its true one: never UT_SIZE_UNCHECKED.
  constexpr DWORD kMask = UT_NR_TYPE | UT_NR_LOCALNAME | UT_NR_REMOTENAME;
  constexpr DWORD kSize = 60;
  DWORD needed = 0;
  Block some(kSize);
  utCopyNETRESOURCE(&source, some.data(), kSize, kMask, &needed);
  std::printf("type and names: %u bytes needed, in a block of %zu\n", needed, some.size());
  Print(some);

  // A block that is too small is refused whole: it stays as it was, and the size needed is told.
  const BOOL fits = utCopyNETRESOURCE(&source, some.data(), kSize, UT_NR_ALL, &needed);
  std::printf("everything in the same block: %d, needed: %u\n", fits, needed);

  // A block is moved to another place as it was made, from its record.
  Block moved = Flatten(RecordOf(some), UT_NR_ALL);
  std::printf("moved: %zu bytes\n", moved.size());
  Print(moved);
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintRecords); }
