// Blocks of memory. A freed block keeps its bytes and its address until Reset(): a second free is
// told from the free of another block, a write into it shows, and a test may look at what it held.
#include "heap.h"

#include <cstdlib>
#include <cstring>

#include "host.h"
#include "state.h"

namespace host {
namespace {

constexpr DWORD kMemory = 0x10000000;  // what a block can be at most

// A block that isn't asked to be zero holds what no test takes for zero.
constexpr int kUninitialised = 0xA5;

}  // namespace

Heap::~Heap() {
  for (const auto& [address, block] : blocks) std::free(address);
}

std::size_t LivingBlocks() {
  Heap& heap = state->heap;
  const std::lock_guard lock(heap.mutex);
  return heap.living;
}

std::string HeapError() {
  Heap& heap = state->heap;
  const std::lock_guard lock(heap.mutex);
  if (!heap.error.empty()) return heap.error;
  for (const auto& [address, block] : heap.blocks) {
    if (block.lives || std::memcmp(address, block.whenFreed.data(), block.size) == 0) continue;
    return "block written after it was freed";
  }
  return {};
}

}  // namespace host

HANDLE UT_API LocalAlloc(UINT uFlags, SIZE_T cbBlock) {
  if (host::Fails(__func__, uFlags, cbBlock) || cbBlock > host::kMemory) return nullptr;
  void* block = std::malloc(cbBlock);
  if (block == nullptr) return nullptr;
  std::memset(block, uFlags & LMEM_ZEROINIT ? 0 : host::kUninitialised, cbBlock);
  host::Heap& heap = host::state->heap;
  const std::lock_guard lock(heap.mutex);
  heap.blocks[block] = {cbBlock};
  ++heap.living;
  return block;
}

HANDLE UT_API LocalFree(HANDLE hBlock) {
  host::Enter(__func__, hBlock);
  if (hBlock == nullptr) return nullptr;
  host::Heap& heap = host::state->heap;
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
