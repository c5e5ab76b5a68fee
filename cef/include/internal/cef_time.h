// A moment in UTC, broken into calendar fields.

#ifndef CEF_INCLUDE_INTERNAL_CEF_TIME_H_
#define CEF_INCLUDE_INTERNAL_CEF_TIME_H_

#include <ctime>

extern "C" {

typedef struct _cef_time_t {
  int year;          // Four digits.
  int month;         // 1 to 12.
  int day_of_week;   // 0 is Sunday.
  int day_of_month;  // From 1.
  int hour;
  int minute;
  int second;
  int millisecond;
} cef_time_t;

// All return 1, or 0 when a pointer is null or the moment cannot be represented. Seconds count from
// 1970; the double forms keep the milliseconds.
int cef_time_to_timet(const cef_time_t* cef_time, time_t* time);
int cef_time_from_timet(time_t time, cef_time_t* cef_time);
int cef_time_to_doublet(const cef_time_t* cef_time, double* time);
int cef_time_from_doublet(double time, cef_time_t* cef_time);
int cef_time_now(cef_time_t* cef_time);

}  // extern "C"

#endif  // CEF_INCLUDE_INTERNAL_CEF_TIME_H_
