#include "tools/log/Filter.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace log_reader {

namespace {

constexpr std::string_view kForm = "0000/00/00 00:00:00.000";

// Whether `text` has the form of these characters, in which a 0 is any digit.
bool HasForm(std::string_view text, std::string_view form) {
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), [](char c, char wanted) {
    return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
  });
}

std::string LocalTime(time_t time) {
  tm local = {};
  char text[32];
  localtime_r(&time, &local);
  return {text, strftime(text, sizeof text, "%Y/%m/%d %H:%M:%S", &local)};
}

// What a unit stands for in seconds; 0 when it is none.
time_t Seconds(std::string_view unit) {
  constexpr struct {
    std::string_view name;
    time_t seconds;
  } kUnits[] = {{"s", 1}, {"min", 60}, {"h", 3600}, {"d", 86400}};
  for (const auto& known : kUnits) {
    if (unit == known.name) return known.seconds;
  }
  return 0;
}

}  // namespace

bool Filter::Lets(const Record& record) const {
  // Times compare as texts: the shorter one begins at its own first moment, and lasts to its end.
  return record.level <= level && (process == 0 || record.process == process) &&
         (user.empty() || record.user == user) && (program.empty() || record.program == program) &&
         (module.empty() || record.module == module || record.tag == module) &&
         (since.empty() || record.time >= since) &&
         (until.empty() || record.time.compare(0, until.size(), until) <= 0) &&
         (text.empty() || record.message.find(text) != std::string::npos);
}

std::string ReadTime(std::string text, time_t now) {
  if (text == "now") return LocalTime(now);
  constexpr size_t kDate = 10;
  for (const std::string_view clock : {kForm.substr(kDate + 1, 5), kForm.substr(kDate + 1, 8)}) {
    if (HasForm(text, clock)) return LocalTime(now).substr(0, kDate + 1) + text;
  }
  unsigned count = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  std::string_view unit(rest, static_cast<size_t>(text.data() + text.size() - rest));
  if (!unit.empty() && unit[0] == ' ') unit.remove_prefix(1);
  if (error == std::errc() && Seconds(unit) != 0) return LocalTime(now - count * Seconds(unit));
  std::replace(text.begin(), text.end(), '-', '/');
  for (const size_t size : {kDate, kDate + 6, kDate + 9, kForm.size()}) {
    if (HasForm(text, kForm.substr(0, size))) return text;
  }
  return "";
}

}  // namespace log_reader
