// Blocks of memory. A freed block keeps its bytes and its address until Reset(): a second free is
// told from the free of another block, and a test may look at what a block held when it was freed.
#include "heap.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

#include "host.h"

namespace host {
namespace {

struct Heap {
  std::mutex mutex;
  std::map<void*, bool> blocks;  // whether each one lives
  std::size_t living = 0;
  std::string error;

  void Release() {
    const std::lock_guard lock(mutex);
    for (const auto& [block, lives] : blocks) std::free(block);
    blocks.clear();
    living = 0;
    error.clear();
  }
  ~Heap() { Release(); }
};

Heap heap;

[[maybe_unused]] const bool resets = OnReset([] { heap.Release(); });

constexpr DWORD kMemory = 0x10000000;  // what a block can be at most

// A block that isn't asked to be zero holds what no test takes for zero.
constexpr int kUninitialised = 0xA5;

}  // namespace

std::size_t LivingBlocks() {
  const std::lock_guard lock(heap.mutex);
  return heap.living;
}

std::string HeapError() {
  const std::lock_guard lock(heap.mutex);
  return heap.error;
}

}  // namespace host

using host::heap;

HANDLE UT_API LocalAlloc(UINT uFlags, DWORD cbBlock) {
  if (host::Fails("LocalAlloc", uFlags, cbBlock) || cbBlock > host::kMemory) return nullptr;
  void* block = std::malloc(cbBlock);
  if (block == nullptr) return nullptr;
  std::memset(block, uFlags & LMEM_ZEROINIT ? 0 : host::kUninitialised, cbBlock);
  const std::lock_guard lock(heap.mutex);
  heap.blocks[block] = true;
  ++heap.living;
  return block;
}

HANDLE UT_API LocalFree(HANDLE hBlock) {
  host::Enter("LocalFree", hBlock);
  if (hBlock == nullptr) return nullptr;
  const std::lock_guard lock(heap.mutex);
  const auto found = heap.blocks.find(hBlock);
  if (found == heap.blocks.end() || !found->second) {
    const bool known = found != heap.blocks.end();
    if (heap.error.empty()) heap.error = known ? "block freed twice" : "free of no allocated block";
    return hBlock;
  }
  found->second = false;
  --heap.living;
  return nullptr;
}
