#include "platform/plist_date.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace veltrix::plist {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr sys_days kEpoch = year(2001) / 1 / 1;
constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::string_view kPattern = "dddd-dd-ddTdd:dd:ddZ";

bool fitsPattern(std::string_view text) {
  if (text.size() != kPattern.size()) {
    return false;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (kPattern[i] == 'd' ? !digit : text[i] != kPattern[i]) {
      return false;
    }
  }
  return true;
}

unsigned number(std::string_view text, std::size_t at, std::size_t digits) {
  unsigned value = 0;
  for (const char c : text.substr(at, digits)) {
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  return value;
}

}  // namespace

std::optional<Date> parseDate(std::string_view text) {
  if (!fitsPattern(text)) {
    return std::nullopt;
  }
  const year_month_day day(year(static_cast<int>(number(text, 0, 4))), std::chrono::month(number(text, 5, 2)),
                           std::chrono::day(number(text, 8, 2)));
  const std::int64_t hours = number(text, 11, 2);
  const std::int64_t minutes = number(text, 14, 2);
  const std::int64_t seconds = number(text, 17, 2);
  if (!day.ok() || hours > 23 || minutes > 59 || seconds > 59) {
    return std::nullopt;
  }
  const std::int64_t daysSince = (sys_days(day) - kEpoch).count();
  return Date{static_cast<double>(daysSince * kSecondsPerDay + hours * 3600 + minutes * 60 + seconds)};
}

std::optional<std::string> formatDate(Date date) {
  constexpr double kFirst =
      static_cast<double>((sys_days(year(0) / 1 / 1) - kEpoch).count() * kSecondsPerDay);
  constexpr double kEnd =
      static_cast<double>((sys_days(year(10000) / 1 / 1) - kEpoch).count() * kSecondsPerDay);
  if (!(date.seconds >= kFirst && date.seconds < kEnd)) {
    return std::nullopt;
  }
  const auto total = static_cast<std::int64_t>(std::floor(date.seconds - kFirst));
  const year_month_day day(sys_days(year(0) / 1 / 1) + days(static_cast<int>(total / kSecondsPerDay)));
  const auto second = static_cast<unsigned>(total % kSecondsPerDay);
  char text[40];
  const int length =
      std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02u:%02u:%02uZ", static_cast<int>(day.year()),
                    static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()), second / 3600,
                    second / 60 % 60, second % 60);
  return std::string(text, static_cast<std::size_t>(length));
}

}  // namespace veltrix::plist
