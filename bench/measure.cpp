#include "measure.h"

#include <chrono>
#include <limits>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;
using Plan = Catch::Benchmark::ExecutionPlan<Catch::Benchmark::FloatDuration<Clock>>;

// The sides are timed in turn this often, each time with as many samples as the harness is told to
// take, so that what else the machine does meets all of them alike.
constexpr int kTurns = 5;

std::vector<Figure> figures;

const Catch::IConfig& Config() {
  static const auto config = Catch::getCurrentContext().getConfig();
  return *config;
}

auto Environment() { return Catch::Benchmark::Detail::measure_environment<Clock>(); }

struct Timing {
  explicit Timing(const Side& side) : plan(side.loop.prepare<Clock>(Config(), Environment())) {
    // A pause in the trial run makes the samples too short, one in both is rare.
    const auto again = side.loop.prepare<Clock>(Config(), Environment());
    plan.iterations_per_sample = std::max(plan.iterations_per_sample, again.iterations_per_sample);
  }

  void Run() {
    for (const auto& sample : plan.run<Clock>(Config(), Environment())) {
      shortest = std::min(shortest, sample.count());
    }
  }

  Plan plan;
  double shortest = std::numeric_limits<double>::infinity();
};

}  // namespace

const std::vector<Figure>& Figures() { return figures; }

const std::vector<std::size_t>& Lengths() {
  static const auto lengths = [] {
    std::vector<std::size_t> all;
    for (std::size_t length = 0; length <= 32; ++length) all.push_back(length);
    all.insert(all.end(), {64, 256, 4'096});
    return all;
  }();
  return lengths;
}

std::u16string Keep(const std::vector<std::string>* strings) {
  std::u16string kept;
  for (const auto& string : *strings) kept += Keep(std::string_view(string)) + u'\0';
  return kept;
}

void CheckAnswer(const Task& task, const std::string& peer, bool isSame) {
  INFO(task.operation << ", " << task.input << ", " << task.size << ", beside " << peer);
  CHECK(isSame);
}

void Measure(const Task& task, const std::vector<Side>& sides, bool hasPlatform) {
  std::vector<Timing> timings(sides.begin(), sides.end());
  for (int turn = 0; turn < kTurns; ++turn) {
    for (auto& side : timings) side.Run();
  }
  const std::string family = Catch::getResultCapture().getCurrentTestName();
  for (std::size_t i = hasPlatform ? 2 : 1; i < sides.size(); ++i) {
    figures.push_back({family, task, timings[0].shortest, hasPlatform ? timings[1].shortest : 0,
                       sides[0].allocations, sides[i].name, timings[i].shortest,
                       sides[i].allocations});
  }
}

}  // namespace bench
