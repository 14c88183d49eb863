// Taking UNC names apart and composing them, beside strings of the C++ library.
#include "bench.h"

namespace {

using namespace bench;

constexpr std::size_t kCapacity = 4'100;
constexpr double kGoal = 0.7;

template <class Char>
constexpr const char* kString = sizeof(Char) == 1 ? "std::string" : "std::u16string";

template <class Char>
using Parts = std::array<const Char*, 3>;

template <class Char>
struct Break {
  std::basic_string<Char> server, resource, path;

  explicit Break(std::basic_string_view<Char> name) {
    const auto npos = name.npos;
    if (name.size() < 3 || name[0] != '\\' || name[1] != '\\' || name[2] == '\\') return;
    const auto serverEnd = name.find('\\', 2);
    server = name.substr(2, serverEnd == npos ? npos : serverEnd - 2);
    if (serverEnd == npos) return;
    const auto start = name.find_first_not_of('\\', serverEnd);
    if (start == npos) return;
    const auto end = name.find('\\', start);
    resource = name.substr(start, end == npos ? npos : end - start);
    if (end == npos) return;
    const auto pathStart = name.find_first_not_of('\\', end);
    if (pathStart != npos) path = name.substr(pathStart);
  }
};

template <class Char>
void CompareBreak(const char* input, std::size_t length, const std::basic_string<Char>& name) {
  static Char parts[3][kCapacity];
  const Char* psz = name.c_str();
  Break<Char> kept{{}};
  Compare(
      {"UNC", Name<Char>("utBreakUNCName"), input, length, kGoal},
      [=] {
        constexpr auto cb = static_cast<DWORD>(sizeof parts[0]);
        BENCH_FORM(utBreakUNCName)(psz, parts[0], cb, parts[1], cb, parts[2], cb);
        return Parts<Char>{parts[0], parts[1], parts[2]};
      },
      Peer{kString<Char>, [&] {
             kept = Break<Char>(psz);
             return Parts<Char>{kept.server.c_str(), kept.resource.c_str(), kept.path.c_str()};
           }});
}

template <class Char>
void CompareBuild(const char* input, std::size_t length, std::size_t capacity) {
  using String = std::basic_string<Char>;
  static Char szOut[3 * kCapacity];
  const String part = Letters<Char>(length);
  const Char* psz = part.c_str();
  String joined;
  Compare(
      {"UNC", Name<Char>("utBuildUNCName"), input, length, kGoal},
      [=] {
        const auto cb = static_cast<DWORD>(capacity * sizeof(Char));
        BENCH_FORM(utBuildUNCName)(szOut, cb, psz, psz, psz);
        return std::array<const Char*, 1>{szOut};
      },
      Peer{kString<Char>, [&] {
             const Char backslash = '\\';
             joined = String(2, backslash) + psz + backslash + psz + backslash + psz;
             if (joined.size() >= capacity) joined.clear();
             return std::array<const Char*, 1>{joined.c_str()};
           }});
}

template <class Char>
void CompareForm() {
  for (const auto length : Lengths()) {
    const auto part = Letters<Char>(length);
    const std::basic_string<Char> one(1, '\\');
    CompareBreak<Char>("three parts of this length", length,
                       one + one + part + one + part + one + part);
    CompareBreak<Char>("no UNC name", length, part + one + part + one + part);
    CompareBuild<Char>("three parts of this length", length, 3 * length + 5);
    CompareBuild<Char>("it does not fit", length, 3 * length + 4);
  }
}

}  // namespace

void bench::CompareUncNames() {
  CompareForm<CHAR>();
  CompareForm<WCHAR>();
}
