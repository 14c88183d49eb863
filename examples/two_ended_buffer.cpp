// XBuf: an array of records grows at the front of one block, their strings at its back.
#include "example.h"

namespace {

struct Metal {
  DWORD number;
  LPCSTR name;
};

constexpr Metal kMetals[] = {{29, "copper"}, {50, "tin"}, {25, "manganese"}, {30, "zinc"}};

// Nothing is aligned, but records of one size stay so if the strings go to the other side. A record
// whose string doesn't fit is taken back.
bool Add(HXBUF buffer, const Metal& metal) {
  const DWORD front = utXBufGetBlockSize(buffer, UT_XBUF_BLOCK_FRONT);
  const DWORD back = utXBufGetBlockSize(buffer, UT_XBUF_BLOCK_BACK);
  LPVOID record, name;
  if (utXBufCopyTo(buffer, UT_XBUF_FRONT, &metal, sizeof metal, &record) &&
      utXBufCopyStringTo(buffer, UT_XBUF_BACK, metal.name, &name)) {
    static_cast<Metal*>(record)->name = static_cast<LPCSTR>(name);
    return true;
  }
  utXBufSetSpaceUsed(buffer, front, back);
  return false;
}

void Fill(HXBUF buffer) {
  for (const auto& metal : kMetals) {
    if (!Add(buffer, metal)) std::printf("  no room for %s\n", metal.name);
  }
  const LPCVOID start = utXBufGetBlock(buffer, UT_XBUF_BLOCK_BUFFER);
  const auto* records = static_cast<const Metal*>(utXBufGetBlock(buffer, UT_XBUF_BLOCK_FRONT));
  const DWORD count = utXBufGetBlockSize(buffer, UT_XBUF_BLOCK_FRONT) / sizeof(Metal);
  for (DWORD i = 0; i < count; ++i) {
    std::printf("  record at %2u: %u, string at %2u: %s\n", example::Offset(start, &records[i]),
                records[i].number, example::Offset(start, records[i].name), records[i].name);
  }
  std::printf("  used: %u bytes, free: %u\n", utXBufGetSpaceUsed(buffer),
              utXBufGetBlockSize(buffer, UT_XBUF_BLOCK_FREE));
}

void PrintBuffers() {
  // Blocks never move, so their addresses are good as long as the XBuf holds the buffer; in return
  // it can't grow, and what doesn't fit fails.
  alignas(Metal) char memory[56];
  const HXBUF buffer = utXBufCreate(sizeof memory, memory);
  if (buffer == nullptr) return;
  std::puts("56 bytes of the caller:");
  Fill(buffer);

  // Measured first, then filled: nothing is left over. This buffer the XBuf allocates and frees.
  DWORD size = sizeof kMetals;
  for (const auto& metal : kMetals) size += utStringSize(metal.name, 1);
  if (utXBufUseBuffer(buffer, size, nullptr)) {
    std::printf("%u bytes, as measured:\n", size);
    Fill(buffer);
  }
  utXBufDestroy(buffer);
}

}  // namespace

int main(int argc, char** argv) { return example::Run(argc, argv, PrintBuffers); }
