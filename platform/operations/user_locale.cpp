// The user's settings, from the C library's locale data. A locale that isn't installed counts as
// "C".
#include "user_locale.h"

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "codepage.h"
#include "conversion.h"
#include "host.h"
#include "state.h"

namespace host {
namespace {

class Locale {
 public:
  Locale() : handle_(newlocale(LC_ALL_MASK, "", nullptr)) {
    if (handle_ == nullptr) handle_ = newlocale(LC_ALL_MASK, "C", nullptr);
  }
  ~Locale() { freelocale(handle_); }
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;

  std::string Get(nl_item item) const { return nl_langinfo_l(item, handle_); }

 private:
  locale_t handle_;
};

// A run of types and the items that go with it; the platform's weeks begin with Monday.
struct Run {
  LCTYPE first;
  LCTYPE count;
  nl_item item;
  LCTYPE shift;
};

constexpr Run kNames[] = {
    {LOCALE_SDAYNAME1, 7, DAY_1, 1},
    {LOCALE_SABBREVDAYNAME1, 7, ABDAY_1, 1},
    {LOCALE_SMONTHNAME1, 12, MON_1, 0},
    {LOCALE_SABBREVMONTHNAME1, 12, ABMON_1, 0},
};

// A clock of 12 hours shows them by %I or %l, the half of the day by %p, or all of it by %r.
bool HasTwelveHours(const std::string& format) {
  for (const char* conversion : {"%I", "%l", "%r", "%p"}) {
    if (format.find(conversion) != std::string::npos) return true;
  }
  return false;
}

// In the locale's own character set.
std::optional<std::string> Find(const Locale& locale, LCTYPE type) {
  if (type == LOCALE_ITIME) return HasTwelveHours(locale.Get(T_FMT)) ? "0" : "1";
  for (const auto& run : kNames) {
    if (type - run.first >= run.count) continue;
    const auto item = static_cast<nl_item>((type - run.first + run.shift) % run.count);
    const auto name = locale.Get(run.item + item);
    return name.substr(std::min(name.find_first_not_of(' '), name.size()));
  }
  return {};
}

std::optional<std::string> TextOf(LCTYPE type) {
  const auto& own = state->localeTexts;
  if (const auto found = own.find(type); found != own.end()) return found->second;
  const Locale locale;
  const auto text = Find(locale, type);
  if (!text) return {};
  Replacement replacement;
  return Narrow(Widen(*text, locale.Get(CODESET), replacement), CharsetOf(CodePage()), replacement);
}

}  // namespace

void SetLocaleText(LCTYPE type, const std::string& text) { state->localeTexts[type] = text; }

}  // namespace host

int UT_API GetLocaleInfoA(DWORD Locale, LCTYPE LCType, LPSTR lpLCData, int cchData) {
  if (host::Fails(__func__, Locale, LCType, lpLCData, cchData)) return 0;
  const auto text = host::TextOf(LCType);
  if (Locale != LOCALE_USER_DEFAULT || !text) return 0;
  const auto needed = static_cast<int>(text->size() + 1);
  if (cchData == 0) return needed;
  if (cchData < 0 || lpLCData == nullptr) return 0;
  std::memcpy(lpLCData, text->c_str(), static_cast<std::size_t>(std::min(cchData, needed)));
  return cchData < needed ? 0 : needed;
}
