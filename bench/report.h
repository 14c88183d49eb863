// The figures as a table, as a page and as a plot.
#ifndef BENCH_REPORT_H
#define BENCH_REPORT_H

#include <cstdint>
#include <ostream>
#include <string>

namespace bench {

// What a page says of the run that its figures come from.
struct Run {
  std::string subject;  // what was timed, and what ran it
  std::string machine;
  std::string compiler;
  std::uintmax_t dllSize = 0;  // in bytes
  std::string notes;           // on the rows that are lost, in Markdown
};

void WriteTable(std::ostream& out, const Run& run);
void WritePage(std::ostream& out, const Run& run);

// Time for each string of a list, by the length of the list. An SVG image.
void WritePlot(std::ostream& out, const Run& run);

}  // namespace bench

#endif  // BENCH_REPORT_H
