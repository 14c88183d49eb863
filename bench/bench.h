// Times an export beside its peers on the same work, and prints a row of figures for each peer.
#ifndef BENCH_BENCH_H
#define BENCH_BENCH_H

#include <tavkit.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

// The exports under measurement, called as a program calls those of a DLL: through an address.
struct Exports {
#define UT_ENTRY(ordinal, name, bytes) decltype(&::name) name;
#include <exports.inc>
#undef UT_ENTRY
};
inline Exports exports;

// An export in the form that works on strings of Char, and its name.
template <class Char, class Byte, class Wide>
auto Pick(Byte byte, Wide wide) {
  if constexpr (sizeof(Char) == 1) {
    return byte;
  } else {
    return wide;
  }
}
#define BENCH_FORM(name) bench::Pick<Char>(bench::exports.name, bench::exports.name##W)
template <class Char>
std::string Name(const char* operation) {
  return std::string(operation) + (sizeof(Char) == 1 ? "" : "W");
}

// What is done, and how much of a peer's time it may take; 0 if the ratio is only stated.
struct Task {
  const char* family;
  std::string operation;
  std::string input;
  std::size_t size = 0;  // in characters, strings or bytes; 1 to 32 make one line of the summary
  double goal = 0;
  unsigned codePage = 1252;  // in which ours is done; any other than 1252 gives another answer
};

// A peer. It is timed twice: as the compiler works it into its caller, and as a function that is
// called. One that is such a function already is timed once.
template <class Work>
struct Peer {
  const char* name;
  Work work;  // takes no argument, or how to take its steps: each then is a call
  bool isCall = false;
};
inline constexpr bool kIsCall = true;

struct Inlined {
  template <class Step>
  auto operator()(Step&& step) const {
    return step();
  }
};
struct Called {
  template <class Step>
  [[gnu::noinline]] auto operator()(Step&& step) const {
    return step();
  }
};

template <class How, class Work>
auto Do(Work& work) {
  if constexpr (std::is_invocable_v<Work&, How>) {
    return work(How{});
  } else {
    return How{}(work);
  }
}

// An answer, as it is kept to be compared with another side's.
inline std::string Keep(std::string_view text) { return std::string(text); }
inline std::u16string Keep(std::u16string_view text) { return std::u16string(text); }
template <class Char, std::size_t count>
auto Keep(const std::array<const Char*, count>& strings) {
  return std::vector<std::basic_string<Char>>(strings.begin(), strings.end());
}
template <class T>
auto Keep(T value) {
  if constexpr (std::is_pointer_v<T>) {
    return static_cast<const void*>(value);
  } else {
    return static_cast<long long>(value);
  }
}

// Does a piece of work as often as it is told. The compiler takes neither its inputs for known nor
// its answer for unused.
using Loop = std::function<void(unsigned long times)>;

template <class How, class Work>
Loop MakeLoop(Work& work) {
  return [&work](unsigned long times) {
    for (; times != 0; --times) {
      asm volatile("" : : "r"(&work) : "memory");
      const auto answer = Do<How>(work);
      asm volatile("" : : "r,m"(answer) : "memory");
    }
  };
}

struct PeerLoops {
  const char* name;
  bool isSame;  // the answer is ours
  Loop called;
  Loop inlined;  // none where the peer is a call
};

bool IsWanted(const Task& task);
// From here to StopRecord, the calls of the platform's string operations are recorded.
void StartRecord(const Task& task);
void StopRecord();
// Times all sides in turn, the recorded calls among them, and prints a row for each peer.
void Report(const Task& task, const Loop& ours, const std::vector<PeerLoops>& peers);

// A piece of work gives an answer that costs nothing to give: a number, an address, a view.
template <class Work, class... PeerWork>
void Compare(const Task& task, Work ours, Peer<PeerWork>... peers) {
  if (!IsWanted(task)) return;
  StartRecord(task);
  const auto answer = Keep(ours());
  StopRecord();
  const auto loops = [&](auto& peer) {
    const bool isSame = Keep(Do<Inlined>(peer.work)) == answer;
    const auto inlined = MakeLoop<Inlined>(peer.work);
    if (peer.isCall) return PeerLoops{peer.name, isSame, inlined, {}};
    return PeerLoops{peer.name, isSame, MakeLoop<Called>(peer.work), inlined};
  };
  Report(task, MakeLoop<Inlined>(ours), {loops(peers)...});
}

// 1 to 32, then 64, 256 and 4,096; and the lengths of lists.
const std::vector<std::size_t>& Lengths();
inline constexpr std::size_t kCounts[] = {10, 100, 1'000, 10'000, 100'000};

// Letters in no order, the same at every run.
template <class Char = char>
std::basic_string<Char> Letters(std::size_t length) {
  std::basic_string<Char> text(length, Char{});
  unsigned state = 1;
  for (auto& letter : text) {
    state = state * 1'103'515'245u + 12'345u;
    letter = static_cast<Char>('a' + (state >> 16) % 26);
  }
  return text;
}

// The families of rows.
void CompareStrings();
void CompareLists();
void CompareUncNames();
void CompareXBufs();
void CompareNumbers();

}  // namespace bench

#endif  // BENCH_BENCH_H
