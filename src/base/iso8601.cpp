#include "base/iso8601.h"

#include <array>
#include <cstdio>

namespace quillo {
namespace {

std::optional<int> digits(std::string_view text, std::size_t at, std::size_t count) {
  int value = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  return value;
}

}  // namespace

std::string iso8601(Date date) {
  using namespace std::chrono;
  const auto day = floor<days>(date);
  const year_month_day ymd{day};
  const hh_mm_ss time{floor<seconds>(date - day)};
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", int(ymd.year()),
                unsigned(ymd.month()), unsigned(ymd.day()), int(time.hours().count()),
                int(time.minutes().count()), int(time.seconds().count()));
  return buffer.data();
}

std::optional<Date> dateFromIso8601(std::string_view text) {
  using namespace std::chrono;
  if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
      text[16] != ':' || text[19] != 'Z')
    return std::nullopt;
  const auto y = digits(text, 0, 4), mo = digits(text, 5, 2), d = digits(text, 8, 2),
             h = digits(text, 11, 2), mi = digits(text, 14, 2), s = digits(text, 17, 2);
  if (!y || !mo || !d || !h || !mi || !s || *h > 23 || *mi > 59 || *s > 59) return std::nullopt;
  const year_month_day ymd{year(*y), month(unsigned(*mo)), day(unsigned(*d))};
  if (!ymd.ok() || *y < 1678 || *y > 2261) return std::nullopt;  // what a Date can hold
  return sys_days(ymd) + hours(*h) + minutes(*mi) + seconds(*s);
}

}  // namespace quillo
