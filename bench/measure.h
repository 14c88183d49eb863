// Times an export beside its peers on the same work, and keeps the figures.
#ifndef BENCH_MEASURE_H
#define BENCH_MEASURE_H

#define CATCH_CONFIG_ENABLE_BENCHMARKING
#include <catch2/catch.hpp>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "heap.h"

namespace bench {

// What is to be done, and how much of a peer's time it may take; 0 if the ratio is only stated.
struct Task {
  std::string operation;
  std::string input;
  std::size_t size = 0;  // in characters, strings or bytes; 0 to 32 make one line of the table
  double goal = 0;
};

// In nanoseconds for the work done once, the shortest that were seen.
struct Times {
  double ours = 0;
  double platform = 0;  // what the platform calls in it take alone
  double peers = 0;

  // What is left of our time beside the platform calls, for the peer's.
  double Ratio() const { return (ours - platform) / peers; }
};

struct Figure {
  std::string family;
  Task task;
  std::string peer;
  Times times;
  Times narrow;  // from a run in which the C library kept to vectors of 128 bits; 0 without one
  unsigned long allocations = 0;
  unsigned long peersAllocations = 0;
};

const std::vector<Figure>& Figures();

// Writes the times to a file, or takes them from a file as those of the narrow run.
void SaveTimes(const std::string& path);
void TakeNarrowTimes(const std::string& path);

// Whether there is anything to time: otherwise only the answers are compared.
inline bool timing = true;

// 0 to 32, then 64, 256 and 4,096; and the lengths of lists.
const std::vector<std::size_t>& Lengths();
inline constexpr std::size_t kCounts[] = {10, 100, 1'000, 10'000, 100'000};

// Keeps the compiler from knowing a value.
template <class T>
T Opaque(T value) {
  asm volatile("" : "+r"(value));
  return value;
}

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

struct NoCalls {
  int operator()() const { return 0; }
};

// Our side of a comparison. A piece of work takes no argument and gives an answer that costs
// nothing to give: a number, an address, a view of the text that was made. `platform` makes the
// platform calls alone that the rules ask for.
template <class Work, class Platform = NoCalls>
struct Ours {
  Work work;
  Platform platform = {};
};
template <class Work>
Ours(Work) -> Ours<Work>;
template <class Work, class Platform>
Ours(Work, Platform) -> Ours<Work, Platform>;

template <class Work>
struct Peer {
  const char* name;
  Work work;
};
template <class Work>
Peer(const char*, Work) -> Peer<Work>;

// Strings that an answer consists of.
template <class Char, std::size_t count>
struct Answer {
  const Char* strings[count];
};

// An answer, as it is kept to be compared with another side's.
inline std::u16string Keep(std::u16string_view text) { return std::u16string(text); }
inline std::u16string Keep(std::string_view text) { return {text.begin(), text.end()}; }
std::u16string Keep(const std::vector<std::string>* strings);  // with their terminators
template <class Char, std::size_t count>
std::u16string Keep(Answer<Char, count> answer) {
  std::u16string kept;
  for (const std::basic_string_view<Char> text : answer.strings) kept += Keep(text) + u'\n';
  return kept;
}
template <class T>
auto Keep(T value) {
  if constexpr (std::is_pointer_v<T>) {
    return static_cast<const void*>(value);
  } else {
    return static_cast<long long>(value);
  }
}

struct Side {
  std::string name;
  Catch::Benchmark::Benchmark loop;
  unsigned long allocations;
};

// `work` is timed where it stands, so that the compiler takes none of its inputs for known.
template <class Work>
Side MakeSide(std::string name, Work& work) {
  const auto before = Allocations();
  work();
  const auto allocations = Allocations() - before;
  const auto loop = [&work](Catch::Benchmark::Chronometer meter) { meter.measure(work); };
  return {name, {std::move(name), loop}, allocations};
}

void CheckAnswer(const Task& task, const std::string& peer, bool isSame);

// Times the sides in turn. The first is ours, the second the platform calls in it if it has any.
void Measure(const Task& task, const std::vector<Side>& sides, bool hasPlatform);

template <class Work, class Platform, class... PeerWork>
void Compare(const Task& task, Ours<Work, Platform> ours, Peer<PeerWork>... peers) {
  const auto answer = Keep(ours.work());
  (CheckAnswer(task, peers.name, Keep(peers.work()) == answer), ...);
  if (!timing) return;
  constexpr bool hasPlatform = !std::is_same_v<Platform, NoCalls>;
  std::vector<Side> sides = {MakeSide("ours", ours.work)};
  if (hasPlatform) sides.push_back(MakeSide("platform", ours.platform));
  (sides.push_back(MakeSide(peers.name, peers.work)), ...);
  Measure(task, sides, hasPlatform);
}

}  // namespace bench

#endif  // BENCH_MEASURE_H
