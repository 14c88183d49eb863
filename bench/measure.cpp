#include "measure.h"

#include <chrono>
#include <fstream>
#include <limits>
#include <map>
#include <stdexcept>

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;
using Plan = Catch::Benchmark::ExecutionPlan<Catch::Benchmark::FloatDuration<Clock>>;

// The sides are timed in turn this often, each time with as many samples as the harness is told to
// take, so that what else the machine does meets all of them alike.
constexpr int kTurns = 3;

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

std::string Key(const Figure& figure) {
  const auto& task = figure.task;
  return figure.family + '\t' + task.operation + '\t' + task.input + '\t' +
         std::to_string(task.size) + '\t' + figure.peer;
}

}  // namespace

const std::vector<Figure>& Figures() { return figures; }

void SaveTimes(const std::string& path) {
  std::ofstream file(path);
  for (const auto& figure : figures) {
    const auto& [ours, platform, peers] = figure.times;
    file << ours << ' ' << platform << ' ' << peers << ' ' << Key(figure) << '\n';
  }
  if (!file.flush()) throw std::runtime_error(path + " can't be written");
}

void TakeNarrowTimes(const std::string& path) {
  std::ifstream file(path);
  std::map<std::string, Times> taken;
  Times times;
  std::string key;
  while (file >> times.ours >> times.platform >> times.peers && file.get() &&
         std::getline(file, key)) {
    taken[key] = times;
  }
  for (auto& figure : figures) figure.narrow = taken.at(Key(figure));
}

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
    const double platform = hasPlatform ? timings[1].shortest : 0;
    figures.push_back({family,
                       task,
                       sides[i].name,
                       {timings[0].shortest, platform, timings[i].shortest},
                       {},
                       sides[0].allocations,
                       sides[i].allocations});
  }
}

}  // namespace bench
