// Full-width forms aside, the rows were measured on the platform.
#include "best_fit.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

// A run of units from `first` on and what stands for each, in so many bytes; a dot where nothing
// does.
struct Run {
  std::string_view charset;
  std::size_t width;
  char16_t first;
  std::string_view fits;
};

constexpr Run kRuns[] = {
    {"CP1252", 1, 0x100,
     "AaAaAaCcCcCcCcDd\320dEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIi..JjKk.LlLlLl..LlNnNnNn...OoOoOo.."
     "RrRrRrSsSsSs..TtTtTtUuUuUuUuUuUuWwYy.ZzZz...b........\320.......\203.....I..l....OOo........."
     "t..TUu.....z.........|..!.........AaIiOoUuUuUuUuUu.Aa....GgGgKkOoOo..j"},
    {"CP1252", 1, 0x261, "g"},
    {"CP1252", 1, 0x2B9, "'\".'.......^...'\257\264`._"},
    {"CP1252", 1, 0x2DA, "\260"},
    {"CP1252", 1, 0x300, "`\264^~\257\257..\250.\260...\""},
    {"CP1252", 1, 0x327, "\270.........__"},
    {"CP1252", 1, 0x37E, ";"},
    {"CP1252", 1, 0x393, "G....T"},
    {"CP1252", 1, 0x3A3, "S..F..O.......a\337.de......\265...p..st.f"},
    {"CP1252", 1, 0x4BB, "h"},
    {"CP1252", 1, 0x589, ":"},
    {"CP1252", 1, 0x66A, "%"},
    {"CP1252", 1, 0x2000, "       .........--.....="},
    {"CP1252", 1, 0x2024, "\267"},
    {"CP1252", 1, 0x2032, "'..`"},
    {"CP1252", 1, 0x2044, "/"},
    {"CP1252", 1, 0x2070, "\260...45678......n0123456789"},
    {"CP1252", 1, 0x20A1, "\242..\243..P"},
    {"CP1252", 1, 0x2102, "C....E..gHHHh.IILl.N..PPQRRR......Z...Z.K\305BCeeEF.Mo"},
    {"CP1252", 1, 0x2205, "\330"},
    {"CP1252", 1, 0x2212, "-\261./\\*\260\267v...8....|.....n"},
    {"CP1252", 1, 0x2236, ":.....~"},
    {"CP1252", 1, 0x2248, "\230"},
    {"CP1252", 1, 0x2261, "=..==....\253\273"},
    {"CP1252", 1, 0x22C5, "\267"},
    {"CP1252", 1, 0x2302, "\246^"},
    {"CP1252", 1, 0x2310, "\254"},
    {"CP1252", 1, 0x2320, "().......<>"},
    {"CP1252", 1, 0x2500, "-.\246.........+...+...+...+...+.......\246.......-.......-.......+"},
    {"CP1252", 1, 0x2550, "-\246++++++++++++\246\246\246\246\246\246------+++"},
    {"CP1252", 1, 0x2580, "\257..._...\246...\246...\246\246\246\246"},
    {"CP1252", 1, 0x25A0, "\246"},
    {"CP1252", 1, 0x263C, "\244"},
    {"CP1252", 1, 0x2758, "|"},
    {"CP1252", 1, 0x3000, " .......<>\253\273"},
    {"CP1252", 1, 0x301A, "[]"},
    {"CP1252", 1, 0x30FB, "\267"},
    {"CP932", 1, 0xA1,
     "!....|..ca..-R...23.....1o.....AAAAAAACEEEEIIIIDNOOOOO.OUUUUYTsaaaaaaaceeeeiiiidnooooo."
     "ouuuuyty"},
    {"CP932", 1, 0xF8F0, "\240\375\376\377"},
    {"CP932", 2, 0xAB, "\201\341"},
    {"CP932", 2, 0xAF, "\201P"},
    {"CP932", 2, 0xB5, "\203\312"},
    {"CP932", 2, 0xB7, "\201E"},
    {"CP932", 2, 0xB8, "\201C"},
    {"CP932", 2, 0xBB, "\201\342"},
    {"CP932", 2, 0x3094, "\203\224"},
};

constexpr char16_t kFirstFullWidth = 0xFF01;
constexpr std::string_view kFullWidth =
    "!\"#$%&'()*+,-./"
    "0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~";

// The dash, the double bar, the overline, the minus and the wave: iconv's code page 932 has them.
constexpr std::u16string_view kLackingIn932 = u"\u2014\u2016\u203E\u2212\u301C";

}  // namespace

std::string_view BestFit(std::string_view charset, char16_t unit) {
  if (charset == "CP1252" && unit >= kFirstFullWidth &&
      unit - kFirstFullWidth < std::ssize(kFullWidth)) {
    return kFullWidth.substr(unit - kFirstFullWidth, 1);
  }
  for (const auto& [of, width, first, fits] : kRuns) {
    if (unit < first || (unit - first) * width >= fits.size() || of != charset) continue;
    const auto fit = fits.substr((unit - first) * width, width);
    if (fit != ".") return fit;
  }
  return {};
}

bool IsLacking(std::string_view charset, char16_t unit) {
  return charset == "CP932" && kLackingIn932.find(unit) != kLackingIn932.npos;
}

}  // namespace host
