#include "report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "measure.h"

namespace bench {
namespace {

constexpr std::size_t kSweepEnd = 32;

// On any size.
bool IsSameWork(const Figure& a, const Figure& b) {
  return a.family == b.family && a.task.operation == b.task.operation &&
         a.task.input == b.task.input && a.peer == b.peer;
}

// Figures that make one line of a table: the same work on one size, or on a sweep of small sizes.
class Line {
 public:
  explicit Line(const Figure& figure) : figures_{figure} {}

  const Figure& front() const { return figures_.front(); }

  bool Takes(const Figure& figure) const {
    return IsSameWork(front(), figure) && front().task.size <= kSweepEnd &&
           figure.task.size <= kSweepEnd;
  }
  void Take(const Figure& figure) { figures_.push_back(figure); }

  // Over the whole sweep.
  Times Mean(Times Figure::* run) const {
    Times mean;
    const auto count = static_cast<double>(figures_.size());
    for (const auto& figure : figures_) {
      const auto& [ours, platform, peers] = figure.*run;
      mean.ours += ours / count;
      mean.platform += platform / count;
      mean.peers += peers / count;
    }
    return mean;
  }

  unsigned long Most(unsigned long Figure::* count) const {
    unsigned long most = 0;
    for (const auto& figure : figures_) most = std::max(most, figure.*count);
    return most;
  }

  std::string Input() const {
    std::string sizes = Grouped(front().task.size);
    if (figures_.size() > 1) sizes += " to " + Grouped(figures_.back().task.size);
    if (sizes == "0") return front().task.input;
    return front().task.input.empty() ? sizes : sizes + ", " + front().task.input;
  }

  bool IsLost(Times Figure::* run = &Figure::times) const {
    return Exceeds(Mean(run).Ratio()) || Exceeds((Worst(run).*run).Ratio());
  }

  bool HasNarrow() const { return front().narrow.peers != 0; }

  std::string Verdict() const {
    if (front().task.goal == 0) return "stated";
    if (!IsLost()) return "met";
    if (HasNarrow() && !IsLost(&Figure::narrow)) return "met at 128 bits";
    if (Exceeds(Mean(&Figure::times).Ratio())) return "lost";
    return "lost at " + std::to_string(Worst(&Figure::times).task.size);
  }

  // The length of a sweep with the highest ratio.
  std::string WorstText() const {
    if (figures_.size() == 1) return "";
    const auto& worst = Worst(&Figure::times);
    return Text("%.2f at %zu", worst.times.Ratio(), worst.task.size);
  }

  template <class... Arguments>
  static std::string Text(const char* format, Arguments... arguments) {
    char text[128];
    std::snprintf(text, sizeof text, format, arguments...);
    return text;
  }

  static std::string Grouped(std::uintmax_t number) {
    std::string digits = std::to_string(number);
    for (int at = static_cast<int>(digits.size()) - 3; at > 0; at -= 3) {
      digits.insert(static_cast<std::size_t>(at), ",");
    }
    return digits;
  }

 private:
  const Figure& Worst(Times Figure::* run) const {
    return *std::max_element(figures_.begin(), figures_.end(), [=](const auto& a, const auto& b) {
      return (a.*run).Ratio() < (b.*run).Ratio();
    });
  }

  // By the two decimals that are printed.
  bool Exceeds(double ratio) const {
    return front().task.goal != 0 && std::round(ratio * 100) > std::round(front().task.goal * 100);
  }

  std::vector<Figure> figures_;
};

std::string Time(double nanoseconds) {
  if (nanoseconds < 999.5) return Line::Text("%.1f ns", nanoseconds);
  if (nanoseconds < 999'500) return Line::Text("%.2f us", nanoseconds / 1'000);
  return Line::Text("%.2f ms", nanoseconds / 1'000'000);
}

// In the order in which the works were first done, each with its sizes together.
std::vector<Line> Lines() {
  std::vector<std::vector<Figure>> works;
  for (const auto& figure : Figures()) {
    const auto found = std::find_if(works.begin(), works.end(), [&](const auto& work) {
      return IsSameWork(work.front(), figure);
    });
    if (found == works.end()) {
      works.push_back({figure});
    } else {
      found->push_back(figure);
    }
  }
  std::vector<Line> lines;
  for (const auto& work : works) {
    for (const auto& figure : work) {
      if (!lines.empty() && lines.back().Takes(figure)) {
        lines.back().Take(figure);
      } else {
        lines.emplace_back(figure);
      }
    }
  }
  return lines;
}

using Row = std::vector<std::string>;

const Row kTitles = {"operation", "input",       "ours",  "platform",    "peer", "peer's time",
                     "ratio",     "at 128 bits", "worst", "allocations", "goal", "outcome"};

Row RowOf(const Line& line) {
  const auto& figure = line.front();
  const Times times = line.Mean(&Figure::times);
  return {figure.task.operation,
          line.Input(),
          Time(times.ours),
          times.platform == 0 ? "" : Time(times.platform),
          figure.peer,
          Time(times.peers),
          Line::Text("%.2f", times.Ratio()),
          line.HasNarrow() ? Line::Text("%.2f", line.Mean(&Figure::narrow).Ratio()) : "",
          line.WorstText(),
          Line::Text("%lu : %lu", line.Most(&Figure::allocations),
                     line.Most(&Figure::peersAllocations)),
          figure.task.goal == 0 ? "" : Line::Text("%.1f", figure.task.goal),
          line.Verdict()};
}

void WriteMarkdown(std::ostream& out, const Row& row) {
  for (const auto& cell : row) out << "| " << cell << ' ';
  out << "|\n";
}

void WriteTitles(std::ostream& out) {
  WriteMarkdown(out, kTitles);
  WriteMarkdown(out, Row(kTitles.size(), "---"));
}

// What is plotted: the time of an operation on a list, for each of its strings.
struct Curve {
  const char* label;
  const char* operation;
  const char* input;
  const char* colour;
};

constexpr Curve kCurves[] = {
    {"build (utCopyNextAsciiz)", "utCopyNextAsciiz", "build a list", "#1b6ca8"},
    {"count (utMultiAsciizStringCount)", "utMultiAsciizStringCount", "", "#2a9d4e"},
    {"size (utMultiAsciizSize)", "utMultiAsciizSize", "", "#c77f0a"},
    {"scan (utScanMultiAsciiz)", "utScanMultiAsciiz", "no match", "#8a3ab9"},
    {"append one (utAppendMultiAsciiz)", "utAppendMultiAsciiz", "one string, and take it back",
     "#c0392b"},
};

double TimeOf(const Curve& curve, std::size_t count) {
  for (const auto& figure : Figures()) {
    const auto& task = figure.task;
    if (task.operation == curve.operation && task.input == curve.input && task.size == count) {
      return figure.times.ours;
    }
  }
  return 0;
}

// What a string more in the list adds to an append, in nanoseconds.
double AppendSlope() {
  const auto& append = kCurves[4];
  return (TimeOf(append, 100'000) - TimeOf(append, 1'000)) / 99'000;
}

void WriteGrowth(std::ostream& out) {
  Row titles = {"nanoseconds for each string"};
  for (const auto count : kCounts) titles.push_back(Line::Grouped(count));
  WriteMarkdown(out, titles);
  WriteMarkdown(out, Row(titles.size(), "---"));
  for (const auto& curve : kCurves) {
    Row row = {curve.label};
    for (const auto count : kCounts) {
      row.push_back(Line::Text("%.2f", TimeOf(curve, count) / static_cast<double>(count)));
    }
    WriteMarkdown(out, row);
  }
}

}  // namespace

void WriteTable(std::ostream& out, const Run& run) {
  const auto lines = Lines();
  std::vector<Row> rows = {kTitles};
  for (const auto& line : lines) rows.push_back(RowOf(line));
  std::vector<std::size_t> widths(kTitles.size());
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  out << "Figures: " << run.subject << "\n\n";
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      out << row[i] << std::string(widths[i] + 2 - row[i].size(), ' ');
    }
    out << '\n';
  }
  const auto lost = std::count_if(lines.begin(), lines.end(), [](auto& l) { return l.IsLost(); });
  out << "\nrows: " << lines.size() << ", lost: " << lost << '\n';
}

void WritePage(std::ostream& out, const Run& run) {
  const auto lines = Lines();
  out << "# Speed\n\n"
         "Written by `script/bench`, the plot too; not to be edited. Notes are in "
         "`bench/notes.md`.\n\n"
      << "- Timed: " << run.subject << "\n- Machine: " << run.machine
      << "\n- Compiler: " << run.compiler
      << "\n- Size of TAVKIT.DLL: " << Line::Grouped(run.dllSize) << R"( bytes

Each row is one piece of work, done by an export and by a peer in the same process: what a user
would pick instead. Both give the same answer, which is checked first. They are timed in turn, and
the shortest of the samples counts, so that what else the machine does stays out. `ratio` is our
time for the peer's, and `outcome` compares it with the goal. Where characters of the code page are
stepped over, the platform's own calls (`platform`) are taken off our time first. A row of a sweep,
0 to 32, has the mean times, the ratio over all of it, and as `worst` the length with the highest
ratio; it is lost if any length is. `allocations` is ours : the peer's, for the work done once; in a
sweep, the most.

Each export is called through an address, as a program calls an imported function. A peer marked
`called` stands in a function of its own; the compiler works the others into their callers where it
can. A change of a list is taken back in the same piece of work, and a text to be trimmed is put
back first, on both sides and in both times. PCRE2 and nettle take part where a library of the
program's width is installed. A vector of strings knows its count, so it has no row beside
`utMultiAsciizStringCount`.

The C library picks its functions by the processor: at 64 bits those with vectors of 256 or 512 bits
where there are any, while at 32 bits it has none above 128, which are also all that TAVKIT
takes for granted. So a 64-bit run is made once more with the C library held to 128 bits: `at 128
bits` is the ratio there, the nearer one to a 32-bit program. A row lost against the wide vectors
alone says so.

)";
  out << "## Rows that are lost\n\n";
  WriteTitles(out);
  for (const auto& line : lines) {
    if (line.IsLost()) WriteMarkdown(out, RowOf(line));
  }
  out << '\n' << run.notes;
  out << "\n## Growth\n\n![Time for each string of a list](growth.svg)\n\n";
  WriteGrowth(out);
  out << "\nAn append walks the list: each string in the list adds "
      << Line::Text("%.2f", AppendSlope()) << " ns to it (from 1,000 to 100,000 strings).\n";
  std::string family;
  for (const auto& line : lines) {
    if (line.front().family != family) {
      family = line.front().family;
      out << "\n## " << family << "\n\n";
      WriteTitles(out);
    }
    WriteMarkdown(out, RowOf(line));
  }
}

void WritePlot(std::ostream& out, const Run& run) {
  // Both axes are logarithmic: 10 to 100,000 strings, 0.1 to 1,000 ns.
  const auto x = [](double count) { return 70 + 120 * (std::log10(count) - 1); };
  const auto y = [](double time) { return 340 - 75 * (std::log10(time) + 1); };
  out << R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 800 400"
 font-family="sans-serif" font-size="12">
<rect width="800" height="400" fill="white"/>
<text x="70" y="20" font-size="14">Time for each string of a list, by its length</text>
)";
  for (const double time : {0.1, 1.0, 10.0, 100.0, 1'000.0}) {
    out << Line::Text("<path d=\"M70 %.0fH550\" stroke=\"#ddd\"/>", y(time))
        << Line::Text("<text x=\"62\" y=\"%.0f\" text-anchor=\"end\">%g ns</text>\n", y(time) + 4,
                      time);
  }
  for (const auto count : kCounts) {
    out << Line::Text("<text x=\"%.0f\" y=\"360\" text-anchor=\"middle\">",
                      x(static_cast<double>(count)))
        << Line::Grouped(count) << "</text>\n";
  }
  double legend = 60;
  for (const auto& curve : kCurves) {
    out << "<polyline fill=\"none\" stroke-width=\"2\" stroke=\"" << curve.colour << "\" points=\"";
    for (const auto count : kCounts) {
      const auto strings = static_cast<double>(count);
      out << Line::Text("%.1f,%.1f ", x(strings), y(TimeOf(curve, count) / strings));
    }
    out << "\"/>" << Line::Text("<text x=\"565\" y=\"%.0f\" fill=\"", legend) << curve.colour
        << "\">" << curve.label << "</text>\n";
    legend += 20;
  }
  out << Line::Text("<text x=\"565\" y=\"%.0f\">Append one: %.2f ns for</text>\n", legend + 20,
                    AppendSlope())
      << Line::Text("<text x=\"565\" y=\"%.0f\">each string in the list</text>\n", legend + 36)
      << "<text x=\"70\" y=\"388\">strings in the list; " << run.subject << "</text>\n</svg>\n";
}

}  // namespace bench
