// Times the exports of TAVKIT beside their peers, and prints a table. With the harness's own
// options tests can be picked by family, and samples by number; --help lists all of them.
#define CATCH_CONFIG_RUNNER
#include "measure.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "exports.h"
#include "report.h"

namespace {

struct Options {
  std::string page;
  std::string plot;
  std::string notes;
  std::string save;
  std::string narrow;
  bool check = false;
  bool emulated = false;
};

std::string Subject(bool emulated) {
#ifdef TAVKIT_NATIVE
  const std::string what = "a 64-bit build of the same sources";
#else
  const std::string what = "the shipped 32-bit DLL";
#endif
  return what +
         (emulated ? ", run by an emulator: no measure of a processor" : ", run by the processor");
}

std::string Machine() {
  std::ifstream info("/proc/cpuinfo");
  std::string name = "unknown processor";
  unsigned count = 0;
  for (std::string line; std::getline(info, line);) {
    if (line.rfind("model name", 0) != 0) continue;
    name = line.substr(line.find(':') + 2);
    ++count;
  }
  return name + ", " + std::to_string(count) + " processors seen";
}

std::string ReadText(const std::string& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

template <class Write>
void WriteFile(const std::string& path, Write write) {
  if (path.empty()) return;
  std::ofstream file(path);
  write(file);
  if (!file.flush()) throw std::runtime_error(path + " can't be written");
}

int Run(int argc, char** argv) {
  Options options;
  Catch::Session session;
  session.configData().benchmarkSamples = 10;
  session.configData().benchmarkWarmupTime = 0;
  using Catch::clara::Opt;
  session.cli(session.cli() | Opt(bench::dllPath, "file")["--dll"]("the DLL to load") |
              Opt(options.page, "file")["--page"]("write the page there") |
              Opt(options.plot, "file")["--plot"]("write the plot there") |
              Opt(options.notes, "file")["--notes"]("Markdown to put into the page") |
              Opt(options.save, "file")["--save"]("write the times there, and nothing else") |
              Opt(options.narrow, "file")["--narrow"]("saved times of a run with 128-bit vectors") |
              Opt(options.check)["--check"]("compare the answers only, and time nothing") |
              Opt(options.emulated)["--emulated"]("say of the figures that an emulator ran it"));
  if (const int error = session.applyCommandLine(argc, argv); error != 0) return error;
  if (session.configData().showHelp) return session.run();
  bench::Connect();
  bench::timing = !options.check;
  if (const int failed = session.run(); failed != 0 || options.check) return failed;

  if (!options.save.empty()) return bench::SaveTimes(options.save), 0;
  if (!options.narrow.empty()) bench::TakeNarrowTimes(options.narrow);
  const bench::Run run{Subject(options.emulated), Machine(), __VERSION__,
                       std::filesystem::file_size(bench::dllPath), ReadText(options.notes)};
  bench::WriteTable(std::cout, run);
  WriteFile(options.page, [&](std::ostream& out) { bench::WritePage(out, run); });
  WriteFile(options.plot, [&](std::ostream& out) { bench::WritePlot(out, run); });
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "bench: " << error.what() << '\n';
    return 1;
  }
}
