// XBufs and flattened records, beside obstacks, a monotonic resource and members that are strings.
#include <obstack.h>

#include <cstdlib>
#include <cstring>
#include <memory_resource>

#include "bench.h"

#define obstack_chunk_alloc std::malloc
#define obstack_chunk_free std::free

namespace {

using namespace bench;

constexpr unsigned kBlocks = 16;  // reserved in one piece of work, then all given back
constexpr std::size_t kCapacity = kBlocks * 8'400;

class XBuf {
 public:
  XBuf() : handle_(exports.utXBufCreate(kCapacity, nullptr)) {}
  ~XBuf() { exports.utXBufDestroy(handle_); }
  XBuf(const XBuf&) = delete;
  XBuf& operator=(const XBuf&) = delete;

  HXBUF handle() const { return handle_; }
  void Empty() const { exports.utXBufSetSpaceUsed(handle_, 0, 0); }

 private:
  HXBUF handle_;
};

class Obstack {
 public:
  Obstack() {
    obstack_begin(&stack_, kCapacity);
    start_ = obstack_alloc(&stack_, 0);
  }
  ~Obstack() { obstack_free(&stack_, nullptr); }
  Obstack(const Obstack&) = delete;
  Obstack& operator=(const Obstack&) = delete;

  obstack* get() { return &stack_; }
  void Empty() { obstack_free(&stack_, start_); }

 private:
  obstack stack_;
  void* start_;
};

// The same operation on all sides: ours takes a block from an XBuf, the peers from a monotonic
// resource and from an obstack. Each block is a call; the answer is what the last one gave.
template <class Take, class TakeMonotonic, class TakeObstack>
void CompareBlocks(const char* operation, std::size_t length, Take take,
                   TakeMonotonic takeMonotonic, TakeObstack takeObstack) {
  const auto repeat = [](auto call, auto takeOne, auto empty) {
    for (unsigned i = 1; i < kBlocks; ++i) call(takeOne);
    const auto last = call(takeOne);
    empty();
    return last;
  };
  const XBuf xbuf;
  Obstack obstack;
  std::vector<std::byte> buffer(kCapacity);
  std::pmr::monotonic_buffer_resource resource(buffer.data(), buffer.size(),
                                               std::pmr::null_memory_resource());
  Compare(
      {"XBuf", operation, "16 of them", length, 1.0},
      [&] { return repeat(Inlined{}, [&] { return take(xbuf.handle()); }, [&] { xbuf.Empty(); }); },
      Peer{"monotonic_buffer_resource",
           [&](auto call) {
             return repeat(
                 call, [&] { return takeMonotonic(resource); }, [&] { resource.release(); });
           }},
      Peer{"obstack", [&](auto call) {
             return repeat(
                 call, [&] { return takeObstack(obstack.get()); }, [&] { obstack.Empty(); });
           }});
}

template <class Char>
void CompareStringCopies(const char* operation, std::size_t length) {
  const auto text = Letters<Char>(length);
  const Char* psz = text.c_str();
  const auto view = [=](void* block) {
    return std::basic_string_view<Char>(static_cast<Char*>(block), length);
  };
  const auto size = [=] { return (std::char_traits<Char>::length(psz) + 1) * sizeof(Char); };
  CompareBlocks(
      operation, length,
      [=](HXBUF hXBuf) {
        LPVOID pBlock = nullptr;
        Pick<Char>(exports.utXBufCopyStringTo, exports.utXBufCopyWideStringTo)(hXBuf, UT_XBUF_FRONT,
                                                                               psz, &pBlock);
        return view(pBlock);
      },
      [=](auto& resource) {
        const std::size_t cb = size();
        return view(std::memcpy(resource.allocate(cb, 1), psz, cb));
      },
      [=](obstack* stack) { return view(obstack_copy(stack, psz, int(size()))); });
}

void CompareBlocks(std::size_t length) {
  const auto cb = static_cast<DWORD>(length);
  const auto text = Letters(length);
  const char* psz = text.c_str();
  CompareBlocks(
      "utXBufReserveBlock", length,
      [=](HXBUF hXBuf) {
        LPVOID pBlock = nullptr;
        return exports.utXBufReserveBlock(hXBuf, UT_XBUF_FRONT, cb, &pBlock);
      },
      [=](auto& resource) {
        void* block = resource.allocate(length, 1);
        asm volatile("" : "+r"(block));
        return block != nullptr;
      },
      [=](obstack* stack) { return obstack_alloc(stack, cb) != nullptr; });
  const auto view = [=](void* block) { return std::string_view(static_cast<char*>(block), cb); };
  CompareBlocks(
      "utXBufCopyTo", length,
      [=](HXBUF hXBuf) {
        LPVOID pBlock = nullptr;
        exports.utXBufCopyTo(hXBuf, UT_XBUF_BACK, psz, cb, &pBlock);
        return view(pBlock);
      },
      [=](auto& resource) { return view(std::memcpy(resource.allocate(length, 1), psz, length)); },
      [=](obstack* stack) { return view(obstack_copy(stack, psz, cb)); });
  CompareStringCopies<CHAR>("utXBufCopyStringTo", length);
  CompareStringCopies<WCHAR>("utXBufCopyWideStringTo", length);
}

template <class Char>
using Record = std::conditional_t<sizeof(Char) == 1, NETRESOURCEA, NETRESOURCEW>;

template <class Char>
std::array<const Char*, 4> StringsOf(const Record<Char>& record) {
  return {record.lpLocalName, record.lpRemoteName, record.lpComment, record.lpProvider};
}

template <class Char>
Char* CopyString(obstack* stack, const Char* psz) {
  const auto size = (std::char_traits<Char>::length(psz) + 1) * sizeof(Char);
  return static_cast<Char*>(obstack_copy(stack, psz, int(size)));
}

template <class Char>
const Record<Char>& CopyRecord(obstack* stack, const Record<Char>& record) {
  auto& copy = *static_cast<Record<Char>*>(obstack_copy(stack, &record, int(sizeof record)));
  copy.lpLocalName = CopyString<Char>(stack, record.lpLocalName);
  copy.lpRemoteName = CopyString<Char>(stack, record.lpRemoteName);
  copy.lpComment = CopyString<Char>(stack, record.lpComment);
  copy.lpProvider = CopyString<Char>(stack, record.lpProvider);
  return copy;
}

template <class Char>
struct Members {
  DWORD numbers[4] = {};
  std::basic_string<Char> localName, remoteName, comment, provider;

  Members() = default;
  explicit Members(const Record<Char>& record)
      : numbers{record.dwScope, record.dwType, record.dwDisplayType, record.dwUsage},
        localName(record.lpLocalName),
        remoteName(record.lpRemoteName),
        comment(record.lpComment),
        provider(record.lpProvider) {}

  std::array<const Char*, 4> Strings() const {
    return {localName.c_str(), remoteName.c_str(), comment.c_str(), provider.c_str()};
  }
};

template <class Char>
void CompareFlatten(std::size_t length) {
  const std::string name = Name<Char>("utCopyNETRESOURCE");
  auto text = Letters<Char>(length);
  Char* psz = text.data();
  const Record<Char> record = {1, 2, 3, 4, psz, psz, psz, psz};
  std::vector<char> buffer(kCapacity);
  const XBuf xbuf;
  Obstack obstack;
  Members<Char> members;
  const auto cb = static_cast<DWORD>(sizeof record + 4 * (length + 1) * sizeof(Char));
  const Peer copies{"obstack", [&] {
                      const auto& copy = CopyRecord<Char>(obstack.get(), record);
                      obstack.Empty();
                      return StringsOf<Char>(copy);
                    }};
  const Peer strings{"members that are strings",
                     [&] { return (members = Members<Char>(record)).Strings(); }};
  Compare(
      {"flatten", name, "four strings of this length", length, 1.0},
      [&] {
        BENCH_FORM(utCopyNETRESOURCE)(&record, buffer.data(), cb, UT_NR_ALL, nullptr);
        return StringsOf<Char>(*reinterpret_cast<Record<Char>*>(buffer.data()));
      },
      copies, strings);
  Compare(
      {"flatten", name + "_XBuffer", "four strings of this length", length, 1.0},
      [&] {
        const auto copy =
            Pick<Char>(exports.utCopyNETRESOURCE_XBuffer, exports.utCopyNETRESOURCEW_XBuffer);
        copy(&record, xbuf.handle(), UT_NR_ALL, nullptr);
        const LPVOID pCopy = exports.utXBufGetBlock(xbuf.handle(), UT_XBUF_BLOCK_FRONT);
        xbuf.Empty();
        return StringsOf<Char>(*static_cast<Record<Char>*>(pCopy));
      },
      copies, strings);
}

}  // namespace

void bench::CompareXBufs() {
  for (const auto length : Lengths()) {
    CompareBlocks(length);
    CompareFlatten<CHAR>(length);
    CompareFlatten<WCHAR>(length);
  }
}
