// XBufs and flattened records, beside obstacks, a monotonic resource and members that are strings.
#include <obstack.h>

#include <cstdlib>
#include <cstring>
#include <memory_resource>

#include "exports.h"
#include "measure.h"

#define obstack_chunk_alloc std::malloc
#define obstack_chunk_free std::free

namespace {

using namespace bench;

constexpr unsigned kBlocks = 16;  // reserved in one piece of work, then all given back
constexpr std::size_t kRoom = kBlocks * 4'200;

class XBuf {
 public:
  XBuf() : handle_(exports.utXBufCreate(kRoom, nullptr)) {}
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
    obstack_begin(&stack_, kRoom);
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

struct Monotonic {
  std::vector<std::byte> buffer = std::vector<std::byte>(kRoom);
  std::pmr::monotonic_buffer_resource resource{buffer.data(), buffer.size(),
                                               std::pmr::null_memory_resource()};
};

// What `take` gives for the last of the blocks; then all are given back.
template <class Take, class Empty>
auto Repeat(Take take, Empty empty) {
  return [=]() mutable {
    for (unsigned i = 1; i < kBlocks; ++i) take();
    const auto last = take();
    empty();
    return last;
  };
}

void CompareBlocks(std::size_t length) {
  const auto cb = static_cast<DWORD>(length);
  const XBuf xbuf;
  const HXBUF hXBuf = xbuf.handle();
  Obstack obstack;
  Monotonic monotonic;
  auto* stack = obstack.get();
  auto* resource = &monotonic.resource;
  const auto emptyXBuf = [&] { xbuf.Empty(); };
  const auto emptyObstack = [&] { obstack.Empty(); };
  const auto release = [=] { resource->release(); };
  const auto text = Letters(length);
  const char* psz = text.c_str();
  const auto View = [=](void* block) {
    return std::string_view(static_cast<char*>(block), length);
  };

  Compare(
      {"utXBufReserveBlock", "16 blocks", length, 1.0},
      Ours{Repeat(
          [=] {
            LPVOID pBlock = nullptr;
            return exports.utXBufReserveBlock(hXBuf, UT_XBUF_FRONT, cb, &pBlock);
          },
          emptyXBuf)},
      Peer{"monotonic_buffer_resource",
           Repeat([=] { return Opaque(resource->allocate(length, 1)) != nullptr; }, release)},
      Peer{"obstack", Repeat([=] { return obstack_alloc(stack, cb) != nullptr; }, emptyObstack)});

  Compare(
      {"utXBufCopyTo", "16 blocks", length, 1.0},
      Ours{Repeat(
          [=] {
            LPVOID pBlock = nullptr;
            exports.utXBufCopyTo(hXBuf, UT_XBUF_BACK, psz, cb, &pBlock);
            return View(pBlock);
          },
          emptyXBuf)},
      Peer{"monotonic_buffer_resource", Repeat(
                                            [=] {
                                              void* block = resource->allocate(length, 1);
                                              return View(std::memcpy(block, psz, length));
                                            },
                                            release)},
      Peer{"obstack", Repeat([=] { return View(obstack_copy(stack, psz, cb)); }, emptyObstack)});

  Compare({"utXBufCopyStringTo", "16 strings", length, 1.0},
          Ours{Repeat(
              [=] {
                LPVOID pBlock = nullptr;
                exports.utXBufCopyStringTo(hXBuf, UT_XBUF_BACK, psz, &pBlock);
                return View(pBlock);
              },
              emptyXBuf)},
          Peer{"monotonic_buffer_resource", Repeat(
                                                [=] {
                                                  const std::size_t size = std::strlen(psz) + 1;
                                                  return View(std::memcpy(
                                                      resource->allocate(size, 1), psz, size));
                                                },
                                                release)},
          Peer{"obstack",
               Repeat([=] { return View(obstack_copy(stack, psz, int(std::strlen(psz) + 1))); },
                      emptyObstack)});
}

// A reservation that fails; the resource throws then.
void CompareNoRoom() {
  const XBuf xbuf;
  Monotonic monotonic;
  Compare({"utXBufReserveBlock", "no room", 2 * kRoom, 1.0}, Ours{[&] {
            LPVOID pBlock = nullptr;
            return exports.utXBufReserveBlock(xbuf.handle(), UT_XBUF_FRONT, 2 * kRoom, &pBlock);
          }},
          Peer{"monotonic_buffer_resource", [&] {
                 try {
                   return Opaque(monotonic.resource.allocate(2 * kRoom, 1)) != nullptr;
                 } catch (const std::bad_alloc&) {
                   return false;
                 }
               }});
}

template <class Char>
using Record = std::conditional_t<sizeof(Char) == 1, NETRESOURCEA, NETRESOURCEW>;

template <class Char>
Answer<Char, 4> StringsOf(const Record<Char>& record) {
  return {{record.lpLocalName, record.lpRemoteName, record.lpComment, record.lpProvider}};
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

  Answer<Char, 4> Strings() const {
    return {{localName.c_str(), remoteName.c_str(), comment.c_str(), provider.c_str()}};
  }
};

template <class Char>
void CompareFlatten(std::size_t length) {
  const std::string suffix = sizeof(Char) == 1 ? "" : "W";
  auto text = Letters<Char>(length);
  Char* psz = text.data();
  const Record<Char> record = {1, 2, 3, 4, psz, psz, psz, psz};
  std::vector<char> buffer(kRoom);
  const XBuf xbuf;
  Obstack obstack;
  Members<Char> members;
  const auto cb =
      static_cast<DWORD>(sizeof record + 4 * (length + 1) * sizeof(Char));  // what it takes
  const Peer copies{"obstack", [&] {
                      const auto& copy = CopyRecord<Char>(obstack.get(), record);
                      obstack.Empty();
                      return StringsOf<Char>(copy);
                    }};
  const Peer strings{"members that are strings",
                     [&] { return (members = Members<Char>(record)).Strings(); }};

  Compare({"utCopyNETRESOURCE" + suffix, "four strings of this length", length, 0.5}, Ours{[&] {
            Form<Char>::CopyNETRESOURCE(&record, buffer.data(), cb, UT_NR_ALL, nullptr);
            return StringsOf<Char>(*reinterpret_cast<Record<Char>*>(buffer.data()));
          }},
          copies, strings);
  Compare({"utCopyNETRESOURCE" + suffix + "_XBuffer", "four strings of this length", length, 0.5},
          Ours{[&] {
            const HXBUF hXBuf = xbuf.handle();
            Form<Char>::CopyNETRESOURCE_XBuffer(&record, hXBuf, UT_NR_ALL, nullptr);
            const LPVOID pCopy = exports.utXBufGetBlock(hXBuf, UT_XBUF_BLOCK_FRONT);
            xbuf.Empty();
            return StringsOf<Char>(*static_cast<Record<Char>*>(pCopy));
          }},
          copies, strings);
  Compare({"utCopyNETRESOURCE" + suffix, "no room", length}, Ours{[&] {
            return Form<Char>::CopyNETRESOURCE(&record, buffer.data(), cb - 1, UT_NR_ALL, nullptr);
          }},
          Peer{"length of each", [&] {
                 using Traits = std::char_traits<Char>;
                 const auto units =
                     Traits::length(record.lpLocalName) + Traits::length(record.lpRemoteName) +
                     Traits::length(record.lpComment) + Traits::length(record.lpProvider) + 4;
                 return sizeof record + units * sizeof(Char) <= cb - 1;
               }});
}

TEST_CASE("XBuf reserve, copy") {
  for (const auto length : Lengths()) CompareBlocks(length);
  CompareNoRoom();
}

TEST_CASE("Flatten a NETRESOURCE") {
  for (const auto length : Lengths()) {
    CompareFlatten<CHAR>(length);
    CompareFlatten<WCHAR>(length);
  }
}

}  // namespace
