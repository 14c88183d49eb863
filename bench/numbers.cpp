// Time, calendar and numbers as text: work of a few steps, where the call itself counts.
#include <charconv>
#include <chrono>
#include <random>

#include "bench.h"

namespace {

using namespace bench;

// A time far from both ends is put in first, on both sides.
void CompareShift(const char* input, DWORD milliseconds) {
  const std::uint64_t start = 0x01D0'0000'0000'0000u;
  const FILETIME first = {DWORD(start), DWORD(start >> 32)};
  Compare(
      {"numbers", "utFileTimeAddMilliseconds", input, 0, 1.0},
      [=, time = first]() mutable {
        time = first;
        return exports.utFileTimeAddMilliseconds(&time, milliseconds);
      },
      Peer{"64-bit add", [=, time = start](auto call) mutable {
             time = start;
             return call([&] {
               const auto ticks = std::uint64_t{milliseconds} * 10'000;
               time += ticks;
               return time >= ticks;
             });
           }});
  Compare(
      {"numbers", "utFileTimeSubMilliseconds", input, 0, 1.0},
      [=, time = first]() mutable {
        time = first;
        return exports.utFileTimeSubMilliseconds(&time, milliseconds);
      },
      Peer{"64-bit subtract", [=, time = start](auto call) mutable {
             time = start;
             return call([&] {
               const auto ticks = std::uint64_t{milliseconds} * 10'000;
               const bool holds = time >= ticks;
               time -= ticks;
               return holds;
             });
           }});
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
  Compare(
      {"numbers", operation, "dates from 1600 to 2399", 0, 1.0},
      [=, dates = Dates()]() mutable { return ask(dates.Next()); },
      Peer{"std::chrono", [=, dates = Dates()](auto call) mutable {
             const Date& date = dates.Next();
             return call([&] { return askPeer(date); });
           }});
}

void CompareCalendar() {
  using namespace std::chrono;
  const auto dayOf = [](const Date& date) { return year(date.year) / date.month / date.day; };
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
      [=](const Date& date) {
        const sys_days first = year(date.year) / January / 1;
        return (sys_days(dayOf(date)) - first).count() + 1;
      });
  CompareDates(
      "utDayOfWeek",
      [](const Date& date) { return exports.utDayOfWeek(date.year, date.month, date.day); },
      [=](const Date& date) { return weekday(sys_days(dayOf(date))).c_encoding(); });
}

template <class Value, class Read>
void CompareNumber(const char* operation, const char* input, std::string_view text, int base,
                   Read read) {
  const char* psz = text.data();
  Compare(
      {"numbers", operation, input, 0, 1.0}, [=] { return read(psz); },
      Peer{"std::from_chars", [=, size = text.size()] {
             Value value = 0;
             std::from_chars(psz, psz + size, value, base);
             return value;
           }});
}

void CompareDecimal(const char* input, std::string_view text) {
  CompareNumber<INT>("utAtoI", input, text, 10, [](LPCSTR psz) { return exports.utAtoI(psz); });
}

void CompareHexadecimal(const char* input, std::string_view text) {
  CompareNumber<DWORD>("utAtoX", input, text, 16, [](LPCSTR psz) { return exports.utAtoX(psz); });
}

// Hexadecimal text both ways, beside a table of digits and one of their values.
void CompareHexText(std::size_t bytes) {
  static const std::string_view digits = "0123456789ABCDEF";
  std::array<BYTE, 256> values = {};
  for (BYTE value = 0; value < 16; ++value) values[BYTE(digits[value])] = value;
  std::string data(bytes, '\0'), back(bytes, '\0'), text(2 * bytes, '\0');
  std::mt19937 random(1);
  for (auto& byte : data) byte = static_cast<char>(random());
  const auto* pb = reinterpret_cast<const BYTE*>(data.data());
  auto* pbBack = reinterpret_cast<BYTE*>(back.data());
  char* psz = text.data();
  Compare(
      {"hexadecimal text", "utHex2Ascii", "", bytes, 1.0},
      [&, psz] { return exports.utHex2Ascii(psz, pb, DWORD(bytes)), std::string_view(text); },
      Peer{"table of digits", [&, psz] {
             for (std::size_t i = 0; i < bytes; ++i) {
               psz[2 * i] = digits[pb[i] >> 4];
               psz[2 * i + 1] = digits[pb[i] & 15];
             }
             return std::string_view(text);
           }});
  Compare(
      {"hexadecimal text", "utAscii2Hex", "", bytes, 1.0},
      [&, psz] {
        return exports.utAscii2Hex(pbBack, psz, DWORD(2 * bytes)), std::string_view(back);
      },
      Peer{"table of values", [&, psz] {
             for (std::size_t i = 0; i < bytes; ++i) {
               pbBack[i] = BYTE(values[BYTE(psz[2 * i])] << 4 | values[BYTE(psz[2 * i + 1])]);
             }
             return std::string_view(back);
           }});
}

}  // namespace

void bench::CompareNumbers() {
  CompareShift("a millisecond", 1);
  CompareShift("a day", 86'400'000);
  CompareShift("49 days", ~DWORD{0});
  CompareCalendar();
  CompareDecimal("1 digit", "7");
  CompareDecimal("5 digits", "40960");
  CompareDecimal("10 digits and a sign", "-2147483648");
  CompareDecimal("no number", "none");
  CompareHexadecimal("1 digit", "7");
  CompareHexadecimal("4 digits", "beef");
  CompareHexadecimal("8 digits", "DEADBEEF");
  CompareHexadecimal("no number", "none");
  for (const auto bytes : Lengths()) CompareHexText(bytes);
}
