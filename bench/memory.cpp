// The library's own moves and fills of memory, which only a native build can call by themselves.
#ifdef TAVKIT_NATIVE

#include "frame/memory.h"

#include <cstring>

#include "measure.h"

namespace {

using namespace bench;

TEST_CASE("Memory functions") {
  for (const auto size : Lengths()) {
    const std::string source = Letters(size);
    std::string target(size + 1, '\0');
    const char* from = source.data();
    char* to = target.data();
    const auto cb = static_cast<DWORD>(size);
    const auto moved = [=] { return std::string_view(to, size); };
    Compare({"MoveBytes", "", size}, Ours{[=] { return tavkit::MoveBytes(to, from, cb), moved(); }},
            Peer{"memmove", [=] { return std::memmove(to, from, size), moved(); }});
    Compare({"MoveBytes", "up by one byte, overlapping", size},
            Ours{[=] { return tavkit::MoveBytes(to + 1, to, cb), to + size; }},
            Peer{"memmove", [=] { return std::memmove(to + 1, to, size), to + size; }});
    Compare({"ZeroBytes", "", size}, Ours{[=] { return tavkit::ZeroBytes(to, cb), moved(); }},
            Peer{"memset", [=] { return std::memset(to, 0, size), moved(); }});
  }
}

}  // namespace

#endif
