// Taking UNC names apart and composing them, beside strings of the C++ library and PCRE2.
#include "exports.h"
#include "measure.h"

#ifdef BENCH_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace {

using namespace bench;

constexpr std::size_t kRoom = 4'100;

template <class Char>
struct Buffers {
  Char parts[3][kRoom];
};

template <class Char>
Answer<Char, 3> PartsOf(const Buffers<Char>& buffers) {
  return {{buffers.parts[0], buffers.parts[1], buffers.parts[2]}};
}

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

  Answer<Char, 3> Parts() const { return {{server.c_str(), resource.c_str(), path.c_str()}}; }
};

#ifdef BENCH_PCRE2

// A compiled pattern, for the processor where the library can do that.
class Pattern {
 public:
  Pattern() {
    int error = 0;
    PCRE2_SIZE at = 0;
    code_ = pcre2_compile(
        reinterpret_cast<PCRE2_SPTR>(R"(^\\\\([^\\]+)(?:\\+(?:([^\\]+)(?:\\+(.*))?)?)?$)"),
        PCRE2_ZERO_TERMINATED, 0, &error, &at, nullptr);
    pcre2_jit_compile(code_, PCRE2_JIT_COMPLETE);
    match_ = pcre2_match_data_create_from_pattern(code_, nullptr);
  }
  ~Pattern() {
    pcre2_match_data_free(match_);
    pcre2_code_free(code_);
  }
  Pattern(const Pattern&) = delete;
  Pattern& operator=(const Pattern&) = delete;

  void Break(const char* name, Buffers<char>& buffers) const {
    const auto* subject = reinterpret_cast<PCRE2_SPTR>(name);
    const int groups = pcre2_match(code_, subject, PCRE2_ZERO_TERMINATED, 0, 0, match_, nullptr);
    for (unsigned i = 0; i < 3; ++i) {
      buffers.parts[i][0] = 0;
      PCRE2_SIZE room = kRoom;
      auto* part = reinterpret_cast<PCRE2_UCHAR*>(buffers.parts[i]);
      if (groups > 0) pcre2_substring_copy_bynumber(match_, i + 1, part, &room);
    }
  }

 private:
  pcre2_code* code_;
  pcre2_match_data* match_;
};

#endif

template <class Char>
std::string Name(const char* operation) {
  return std::string(operation) + (sizeof(Char) == 1 ? "" : "W");
}

template <class Char>
constexpr const char* kString = sizeof(Char) == 1 ? "std::string" : "std::u16string";

template <class Char>
void CompareBreak(const char* input, std::size_t length, const std::basic_string<Char>& name) {
  static Buffers<Char> buffers;
  const Char* pszName = name.c_str();
  const Ours ours{[=] {
    auto& [parts] = buffers;
    constexpr auto cb = static_cast<DWORD>(sizeof parts[0]);
    Form<Char>::BreakUNCName(pszName, parts[0], cb, parts[1], cb, parts[2], cb);
    return PartsOf(buffers);
  }};
  Break<Char> kept{{}};
  const Peer strings{kString<Char>, [&] { return (kept = Break<Char>(pszName)).Parts(); }};
  const Task task{Name<Char>("utBreakUNCName"), input, length, 0.5};
#ifdef BENCH_PCRE2
  if constexpr (sizeof(Char) == 1) {
    static const Pattern pattern;
    const Peer matches{"PCRE2", [=] { return pattern.Break(pszName, buffers), PartsOf(buffers); }};
    return Compare(task, ours, strings, matches);
  }
#endif
  Compare(task, ours, strings);
}

template <class Char>
void CompareBuild(const char* input, std::size_t length, std::size_t room) {
  using String = std::basic_string<Char>;
  static Char szOut[3 * kRoom];
  const String part = Letters<Char>(length);
  const Char* psz = part.c_str();
  String joined;
  Compare({Name<Char>("utBuildUNCName"), input, length, 0.5}, Ours{[=] {
            const auto cb = static_cast<DWORD>(room * sizeof(Char));
            Form<Char>::BuildUNCName(szOut, cb, psz, psz, psz);
            return Answer<Char, 1>{{szOut}};
          }},
          Peer{kString<Char>, [&] {
                 const Char backslash = '\\';
                 joined = String(2, backslash) + psz + backslash + psz + backslash + psz;
                 if (joined.size() >= room) joined.clear();
                 return Answer<Char, 1>{{joined.c_str()}};
               }});
}

template <class Char>
void CompareForm() {
  for (const auto length : Lengths()) {
    if (length == 0) continue;  // three backslashes make no UNC name
    const auto part = Letters<Char>(length);
    const std::basic_string<Char> one(1, '\\');
    CompareBreak<Char>("server, share and path of this length", length,
                       one + one + part + one + part + one + part);
    CompareBreak<Char>("no UNC name", length, part + one + part + one + part);
    CompareBuild<Char>("server, share and path of this length", length, 3 * length + 5);
    CompareBuild<Char>("no room", length, 3 * length + 4);
  }
}

TEST_CASE("UNC break and build") {
  CompareForm<CHAR>();
  CompareForm<WCHAR>();
}

}  // namespace
