// Prints the rows, tab-separated: family, operation, input, size, peer, goal, and in nanoseconds
// our time, that of the platform's calls in it, the peer's called and inlined, and the noise.
#include <codepage.h>
#include <module.h>
#include <operation_table.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <regex>
#include <stdexcept>

#include "bench.h"
#include "platform.h"

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

std::regex wanted;
bool checkOnly = false;
PlatformCalls calls;

// Loads the DLL and fills in the addresses of its exports, by ordinal.
void Connect(const char* path) {
  static const host::Module module(host::ReadFile(path), host::FindPlatformOperation);
#define UT_ENTRY(ordinal, name, bytes) \
  exports.name = reinterpret_cast<decltype(exports.name)>(module.Find(ordinal));
#include <exports.inc>
#undef UT_ENTRY
}

double Nanoseconds(const Loop& loop, unsigned long times) {
  const auto start = Clock::now();
  loop(times);
  return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

constexpr double kBatch = 40'000;  // nanoseconds: the clock's own steps are less than a thousandth
constexpr int kBatches = 25;

// One side of a comparison: what a piece of its work took, in each batch.
struct Side {
  Loop loop;
  unsigned long times = 1;
  std::vector<double> batches = {};

  // Twice, as a pause makes a batch look long enough.
  explicit Side(Loop work) : loop(std::move(work)) {
    while (Nanoseconds(loop, times) < kBatch || Nanoseconds(loop, times) < kBatch) times *= 2;
  }
  void Run() { batches.push_back(Nanoseconds(loop, times) / double(times)); }

  double Quartile(int which) {
    const auto at = batches.begin() + which * kBatches / 4;
    std::nth_element(batches.begin(), at, batches.end());
    return *at;
  }
  double Time() { return Quartile(1); }  // what else the machine does only adds to a batch
  double Noise() { return Quartile(1) - Quartile(0); }
};

}  // namespace

const std::vector<std::size_t>& Lengths() {
  static const auto lengths = [] {
    std::vector<std::size_t> all;
    for (std::size_t length = 1; length <= 32; ++length) all.push_back(length);
    all.insert(all.end(), {64, 256, 4'096});
    return all;
  }();
  return lengths;
}

bool IsWanted(const Task& task) {
  return std::regex_search(task.family + (": " + task.operation) + ", " + task.input, wanted);
}

void StartRecord(const Task& task) {
  host::SetCodePage(task.codePage);
  calls.Start();
}

void StopRecord() {
  calls.Stop();
  host::SetCodePage(1252);
}

void Report(const Task& task, const Loop& ours, const std::vector<PeerLoops>& peers) {
  for (const auto& peer : peers) {
    if (peer.isSame || task.codePage != 1252) continue;
    throw std::runtime_error("another answer: " + task.operation + ", " + task.input + ", " +
                             std::to_string(task.size) + ", beside " + peer.name);
  }
  if (checkOnly) return;

  const auto inCodePage = [&](auto work) {
    return [&task, work](unsigned long times) {
      host::SetCodePage(task.codePage);
      work(times);
      host::SetCodePage(1252);
    };
  };
  std::vector<Side> sides;
  sides.emplace_back(inCodePage(ours));
  sides.emplace_back(inCodePage([](unsigned long times) {
    for (; times != 0; --times) calls.Make();
  }));
  sides.emplace_back([](unsigned long times) {
    for (; times != 0; --times) calls.Walk();
  });
  for (const auto& peer : peers) {
    sides.emplace_back(peer.called);
    sides.emplace_back(peer.inlined ? peer.inlined : peer.called);
  }
  for (int batch = 0; batch < kBatches; ++batch) {
    for (auto& side : sides) side.Run();
  }
  const double platform = calls.empty() ? 0 : std::max(0.0, sides[1].Time() - sides[2].Time());
  const double noise = sides[0].Noise() + (calls.empty() ? 0 : sides[1].Noise());
  for (std::size_t i = 0; i < peers.size(); ++i) {
    std::printf("%s\t%s\t%s\t%zu\t%s\t%g\t%.3f\t%.3f\t%.3f\t", task.family, task.operation.c_str(),
                task.input.c_str(), task.size, peers[i].name, task.goal, sides[0].Time(), platform,
                sides[3 + 2 * i].Time());
    if (peers[i].inlined) std::printf("%.3f", sides[4 + 2 * i].Time());
    std::printf("\t%.3f\n", noise);
  }
}

}  // namespace bench

// Usage: bench [--check] DLL FILTER      --check: only compares the answers
int main(int argc, char** argv) {
  try {
    bench::checkOnly = argc > 1 && std::strcmp(argv[1], "--check") == 0;
    if (bench::checkOnly) --argc, ++argv;
    if (argc != 3) throw std::invalid_argument("usage: bench [--check] DLL FILTER");
    bench::Connect(argv[1]);
    bench::wanted = argv[2];
    bench::CompareStrings();
    bench::CompareLists();
    bench::CompareUncNames();
    bench::CompareXBufs();
    bench::CompareNumbers();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bench: %s\n", error.what());
    return 2;
  }
}
