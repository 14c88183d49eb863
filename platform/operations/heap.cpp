// Blocks of memory. A freed block keeps its bytes and its address until Reset(): a second free is
// told from the free of another block, a write into it shows, and a test may look at what it held.
#include "heap.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>

#include "host.h"

namespace host {
namespace {

struct Block {
  std::size_t size;
  bool lives = true;
  std::string whenFreed = {};  // the bytes that it held then
};

struct Heap {
  std::mutex mutex;
  std::map<void*, Block> blocks;
  std::size_t living = 0;
  std::string error;

  void Release() {
    const std::lock_guard lock(mutex);
    for (const auto& [address, block] : blocks) std::free(address);
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
  if (!heap.error.empty()) return heap.error;
  for (const auto& [address, block] : heap.blocks) {
    if (block.lives || std::memcmp(address, block.whenFreed.data(), block.size) == 0) continue;
    return "block written after it was freed";
  }
  return {};
}

}  // namespace host

using host::heap;

HANDLE UT_API LocalAlloc(UINT uFlags, DWORD cbBlock) {
  if (host::Fails("LocalAlloc", uFlags, cbBlock) || cbBlock > host::kMemory) return nullptr;
  void* block = std::malloc(cbBlock);
  if (block == nullptr) return nullptr;
  std::memset(block, uFlags & LMEM_ZEROINIT ? 0 : host::kUninitialised, cbBlock);
  const std::lock_guard lock(heap.mutex);
  heap.blocks[block] = {cbBlock};
  ++heap.living;
  return block;
}

HANDLE UT_API LocalFree(HANDLE hBlock) {
  host::Enter("LocalFree", hBlock);
  if (hBlock == nullptr) return nullptr;
  const std::lock_guard lock(heap.mutex);
  const auto found = heap.blocks.find(hBlock);
  if (found == heap.blocks.end() || !found->second.lives) {
    const bool known = found != heap.blocks.end();
    if (heap.error.empty()) heap.error = known ? "block freed twice" : "free of no allocated block";
    return hBlock;
  }
  auto& [size, lives, whenFreed] = found->second;
  whenFreed.assign(static_cast<const char*>(hBlock), size);
  lives = false;
  --heap.living;
  return nullptr;
}
