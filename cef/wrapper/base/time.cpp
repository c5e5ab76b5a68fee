#include <chrono>
#include <cmath>

#include "include/internal/cef_time.h"

namespace {

constexpr long long kMillisecondsPerSecond = 1000;

// Milliseconds since 1970.
bool ToMilliseconds(const cef_time_t* time, long long& milliseconds) {
  if (!time || time->millisecond < 0 || time->millisecond >= kMillisecondsPerSecond) return false;
  std::tm fields = {};
  fields.tm_year = time->year - 1900;
  fields.tm_mon = time->month - 1;
  fields.tm_mday = time->day_of_month;
  fields.tm_hour = time->hour;
  fields.tm_min = time->minute;
  fields.tm_sec = time->second;
  std::tm normal = fields;
  const time_t seconds = timegm(&normal);
  // timegm makes a moment of anything; 31 February is not meant by anybody.
  if (normal.tm_year != fields.tm_year || normal.tm_mon != fields.tm_mon ||
      normal.tm_mday != fields.tm_mday || normal.tm_hour != fields.tm_hour ||
      normal.tm_min != fields.tm_min || normal.tm_sec != fields.tm_sec) {
    return false;
  }
  milliseconds = static_cast<long long>(seconds) * kMillisecondsPerSecond + time->millisecond;
  return true;
}

bool FromMilliseconds(long long milliseconds, cef_time_t* time) {
  if (!time) return false;
  long long seconds = milliseconds / kMillisecondsPerSecond;
  long long rest = milliseconds % kMillisecondsPerSecond;
  if (rest < 0) {
    rest += kMillisecondsPerSecond;
    --seconds;
  }
  const time_t whole = static_cast<time_t>(seconds);
  std::tm fields = {};
  if (!gmtime_r(&whole, &fields)) return false;
  *time = {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_wday, fields.tm_mday,
           fields.tm_hour,        fields.tm_min,     fields.tm_sec,  static_cast<int>(rest)};
  return true;
}

}  // namespace

int cef_time_to_timet(const cef_time_t* cef_time, time_t* time) {
  double seconds = 0;
  if (!time || !cef_time_to_doublet(cef_time, &seconds)) return 0;
  *time = static_cast<time_t>(std::floor(seconds));
  return 1;
}

int cef_time_from_timet(time_t time, cef_time_t* cef_time) {
  return FromMilliseconds(static_cast<long long>(time) * kMillisecondsPerSecond, cef_time);
}

int cef_time_to_doublet(const cef_time_t* cef_time, double* time) {
  long long milliseconds = 0;
  if (!time || !ToMilliseconds(cef_time, milliseconds)) return 0;
  *time = static_cast<double>(milliseconds) / kMillisecondsPerSecond;
  return 1;
}

int cef_time_from_doublet(double time, cef_time_t* cef_time) {
  // Beyond this no calendar field fits; it also keeps out what is not a number.
  if (!(std::fabs(time) < 1e14)) return 0;
  return FromMilliseconds(std::llround(time * kMillisecondsPerSecond), cef_time);
}

int cef_time_now(cef_time_t* cef_time) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return FromMilliseconds(std::chrono::duration_cast<std::chrono::milliseconds>(now).count(),
                          cef_time);
}
