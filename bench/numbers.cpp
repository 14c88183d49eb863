// Time, calendar and numbers as text: work of a few steps, where the call itself counts.
#include <charconv>
#include <chrono>
#include <cstring>
#include <random>

#include "exports.h"
#include "measure.h"

#ifdef BENCH_NETTLE
#include <nettle/base16.h>
#endif

namespace {

using namespace bench;

// A function of its own, that can't be worked into its caller: what calling costs a peer.
template <class Work>
[[gnu::noinline]] auto Call(Work& work) {
  return work();
}

// Beside a peer as the compiler works it into its caller, and as a function that is called.
template <class OurWork, class PeerWork>
void CompareBoth(const Task& task, OurWork ours, const char* inlined, const char* called,
                 PeerWork peer) {
  Compare(task, Ours{ours}, Peer{inlined, peer},
          Peer{called, [peer]() mutable { return Call(peer); }});
}

// A time of day far from both ends, shifted further at each call.
void CompareShift(const char* input, DWORD milliseconds) {
  const std::uint64_t start = 0x01D0'0000'0000'0000u;
  const auto ft = [=] { return FILETIME{DWORD(start), DWORD(start >> 32)}; };
  CompareBoth(
      {"utFileTimeAddMilliseconds", input, 0, 1.0},
      [=, time = ft()]() mutable { return exports.utFileTimeAddMilliseconds(&time, milliseconds); },
      "64-bit add", "64-bit add, called",
      [=, time = start]() mutable {
        const auto ticks = std::uint64_t{Opaque(milliseconds)} * 10'000;
        time += ticks;
        return time >= ticks;
      });
  CompareBoth(
      {"utFileTimeSubMilliseconds", input, 0, 1.0},
      [=, time = ft()]() mutable { return exports.utFileTimeSubMilliseconds(&time, milliseconds); },
      "64-bit subtract", "64-bit subtract, called",
      [=, time = start]() mutable {
        const auto ticks = std::uint64_t{Opaque(milliseconds)} * 10'000;
        const bool holds = time >= ticks;
        time -= ticks;
        return holds;
      });
}

struct Date {
  WORD year, month, day;
};

// Dates in no order, one after the other.
class Dates {
 public:
  Dates() {
    std::mt19937 random(1);
    for (auto& [year, month, day] : dates_) {
      year = static_cast<WORD>(1600 + random() % 800);
      month = static_cast<WORD>(1 + random() % 12);
      day = static_cast<WORD>(1 + random() % 28);
    }
  }
  const Date& Next() { return dates_[next_++ % std::size(dates_)]; }

 private:
  Date dates_[256];
  unsigned next_ = 0;
};

template <class Ask, class AskPeer>
void CompareDates(const char* operation, Ask ask, AskPeer askPeer) {
  CompareBoth(
      {operation, "dates from 1600 to 2399", 0, 1.0},
      [=, dates = Dates()]() mutable { return ask(dates.Next()); }, "std::chrono",
      "std::chrono, called", [=, dates = Dates()]() mutable { return askPeer(dates.Next()); });
}

std::chrono::year_month_day DayOf(const Date& date) {
  return std::chrono::year(date.year) / date.month / date.day;
}

TEST_CASE("Shifts of a time, calendar") {
  CompareShift("a millisecond", 1);
  CompareShift("a day", 86'400'000);
  CompareShift("49 days", ~DWORD{0});

  using namespace std::chrono;
  CompareDates(
      "utIsLeapYear", [](const Date& date) { return exports.utIsLeapYear(date.year); },
      [](const Date& date) { return year(date.year).is_leap(); });
  CompareDates(
      "utDaysInMonth",
      [](const Date& date) { return exports.utDaysInMonth(date.year, date.month); },
      [](const Date& date) { return unsigned((year(date.year) / date.month / last).day()); });
  CompareDates(
      "utDayOfYear",
      [](const Date& date) { return exports.utDayOfYear(date.year, date.month, date.day); },
      [](const Date& date) {
        const sys_days first = year(date.year) / January / 1;
        return (sys_days(DayOf(date)) - first).count() + 1;
      });
  CompareDates(
      "utDayOfWeek",
      [](const Date& date) { return exports.utDayOfWeek(date.year, date.month, date.day); },
      [](const Date& date) { return weekday(sys_days(DayOf(date))).c_encoding(); });
}

void CompareNumber(const char* input, std::string_view text) {
  const char* psz = text.data();
  Compare({"utAtoI", input, 0, 1.0}, Ours{[=] { return exports.utAtoI(psz); }},
          Peer{"std::from_chars", [=] {
                 INT value = 0;
                 std::from_chars(psz, psz + text.size(), value);
                 return value;
               }});
}

void CompareHexNumber(const char* input, std::string_view text) {
  const char* psz = text.data();
  Compare({"utAtoX", input, 0, 1.0}, Ours{[=] { return exports.utAtoX(psz); }},
          Peer{"std::from_chars", [=] {
                 DWORD value = 0;
                 std::from_chars(psz, psz + text.size(), value, 16);
                 return value;
               }});
}

TEST_CASE("Numbers as text") {
  CompareNumber("1 digit", "7");
  CompareNumber("5 digits", "40960");
  CompareNumber("10 digits and a sign", "-2147483648");
  CompareNumber("no number", "none");
  CompareHexNumber("1 digit", "7");
  CompareHexNumber("4 digits", "beef");
  CompareHexNumber("8 digits", "DEADBEEF");
  CompareHexNumber("no number", "none");
}

#ifdef BENCH_NETTLE

double HexGoal(std::size_t bytes) { return bytes < 256 ? 1.0 : 0.5; }

// Hexadecimal text, whose letters may have either case.
struct HexText {
  std::string_view text;
};
std::u16string Keep(HexText hex) {
  std::u16string kept = bench::Keep(hex.text);
  for (auto& digit : kept) digit |= 0x20;
  return kept;
}

void CompareHex(std::size_t bytes) {
  std::string data(bytes, '\0');
  std::mt19937 random(1);
  for (auto& byte : data) byte = static_cast<char>(random());
  std::string text(2 * bytes, '\0');
  const auto* pb = reinterpret_cast<const BYTE*>(data.data());
  char* psz = text.data();
  Compare({"utHex2Ascii", "", bytes, HexGoal(bytes)}, Ours{[=] {
            exports.utHex2Ascii(psz, pb, DWORD(bytes));
            return HexText{{psz, 2 * bytes}};
          }},
          Peer{"nettle", [=] {
                 base16_encode_update(psz, bytes, pb);
                 return HexText{{psz, 2 * bytes}};
               }});

  std::string back(bytes, '\0');
  auto* pbBack = reinterpret_cast<BYTE*>(back.data());
  const auto View = [=] { return std::string_view(reinterpret_cast<char*>(pbBack), bytes); };
  Compare({"utAscii2Hex", "", bytes, HexGoal(bytes)},
          Ours{[=] { return exports.utAscii2Hex(pbBack, psz, DWORD(2 * bytes)), View(); }},
          Peer{"nettle", [=] {
                 base16_decode_ctx state;
                 base16_decode_init(&state);
                 std::size_t stored = bytes;
                 base16_decode_update(&state, &stored, pbBack, 2 * bytes, psz);
                 return View();
               }});
}

TEST_CASE("Hexadecimal text") {
  for (const auto bytes : Lengths()) CompareHex(bytes);
}

#endif

}  // namespace
