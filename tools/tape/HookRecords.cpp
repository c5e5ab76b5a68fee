#include "tools/tape/HookRecords.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string_view>

namespace tape {

namespace {

using std::string_view;

constexpr string_view kAsked = "CheckIfCompleted(";
constexpr string_view kAnswered = "ProcessCookieResponse(";
// Written before the first hook is called; names the other one.
constexpr string_view kLoad = "EmbBrowserHandler::OnResourceResponse(URL:";
constexpr string_view kType = ", Media type = ";
// Written before the second hook is called; and for a redirect, which no hook is asked about.
constexpr string_view kStatus = "OnResourceResponse(";
constexpr string_view kRedirect = "OnResourceRedirect(";
constexpr string_view kResult = ") = ";
constexpr string_view kCookies = " cookies [";

bool Begins(string_view text, string_view with) { return text.substr(0, with.size()) == with; }

int64_t Milliseconds(const std::string& time) {
  std::tm parts = {};
  int thousandths = 0;
  if (std::sscanf(time.c_str(), "%d/%d/%d %d:%d:%d.%d", &parts.tm_year, &parts.tm_mon,
                  &parts.tm_mday, &parts.tm_hour, &parts.tm_min, &parts.tm_sec,
                  &thousandths) != 7) {
    return 0;
  }
  parts.tm_year -= 1900;
  parts.tm_mon -= 1;
  parts.tm_isdst = -1;
  return int64_t{std::mktime(&parts)} * 1000 + thousandths;
}

Cookies ReadCookies(string_view list, StandIns& stand_ins) {
  Cookies cookies;
  while (!list.empty()) {
    const size_t end = std::min(list.find("; "), list.size());
    const string_view item = list.substr(0, end);
    list.remove_prefix(std::min(end + 2, list.size()));
    const size_t equals = item.find('=');
    if (equals == item.npos) continue;  // cut in its name
    const string_view name = item.substr(0, equals);
    cookies.emplace_back(stand_ins.Name(name),
                         stand_ins.LoggedCookie(name, item.substr(equals + 1)));
  }
  return cookies;
}

}  // namespace

bool IsOfHooks(const log_reader::Record& record) {
  // The session names its function, too, with empty parentheses.
  return Begins(record.message, kAsked) || Begins(record.message, kStatus) ||
         Begins(record.message, kRedirect) ||
         (Begins(record.message, kAnswered) && record.message[kAnswered.size()] != ')') ||
         (Begins(record.message, kLoad) && record.message.find(kType) != std::string::npos);
}

std::vector<Entry> ReadEntries(const std::vector<log_reader::Record>& records, pid_t process,
                               std::chrono::system_clock::time_point begin, StandIns& stand_ins) {
  using std::chrono::milliseconds;
  const int64_t begin_ms =
      std::chrono::duration_cast<milliseconds>(begin.time_since_epoch()).count();
  std::map<std::string, bool, std::less<>> parts;  // addresses, as last asked for
  std::string answered;                            // the address of the status
  int status = 0;
  std::vector<Entry> entries;
  for (const log_reader::Record& record : records) {
    if (record.process != process) continue;
    string_view text = record.message;
    if (Begins(text, kLoad)) {
      const size_t type = text.rfind(kType);
      if (type == text.npos) continue;
      const std::string address(text.substr(kLoad.size(), type - kLoad.size()));
      // 0 is a page, 1 a frame.
      parts[address] = std::string(text.substr(type + kType.size())) > "1";
      continue;
    }
    if (Begins(text, kStatus) || Begins(text, kRedirect)) {
      const bool redirect = Begins(text, kRedirect);
      text.remove_prefix((redirect ? kRedirect : kStatus).size());
      const size_t end = text.find(kResult);
      if (end == text.npos) continue;
      answered = text.substr(0, end);
      status = std::atoi(std::string(text.substr(end + kResult.size(), 3)).c_str());
      if (!redirect) continue;
      const std::string shown = stand_ins.Address(answered);
      const auto asked = std::find_if(entries.rbegin(), entries.rend(),
                                      [&](const Entry& entry) { return entry.address == shown; });
      if (asked != entries.rend()) asked->status = status;
      continue;
    }
    Entry entry;
    const bool asked = Begins(text, kAsked);
    entry.hook = asked ? Hook::kCheckIfCompleted : Hook::kProcessCookieResponse;
    text.remove_prefix((asked ? kAsked : kAnswered).size());
    // An address holds no blank.
    const size_t end = std::min(text.find(kResult), text.size());
    const string_view address = text.substr(0, end);
    text.remove_prefix(std::min(end + kResult.size(), text.size()));
    entry.cut = record.cut || text.empty();
    entry.answer = text.substr(0, 1) == "1";
    entry.address = stand_ins.Address(std::string(address));
    if (!asked && address == answered) entry.status = status;
    const auto part = parts.find(address);
    entry.part = part != parts.end() && part->second;
    if (!asked && Begins(text.substr(std::min<size_t>(1, text.size())), kCookies)) {
      text.remove_prefix(1 + kCookies.size());
      entry.cookies =
          ReadCookies(text.substr(0, entry.cut ? text.npos : text.rfind(']')), stand_ins);
    }
    const int64_t before = entries.empty() ? 0 : entries.back().at_ms;
    entry.at_ms = std::max(before, Milliseconds(record.time) - begin_ms);
    entries.push_back(std::move(entry));
  }
  return entries;
}

}  // namespace tape
