#include "tools/log/Events.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string_view>

namespace log_reader {

namespace {

// Each % stands for a word of any length, which ends where what follows the % begins.
struct Message {
  std::string_view pattern;
  What what;
};

constexpr Message kMessages[] = {
    {"inside cefBrowser", What::kBegan},
    {"type = % url %", What::kStep},
    {"CefSAMLLogin::OnContextInitialized Clearing all cookies (%)", What::kCookiesCleared},
    {"manager->SetCookie (name:% url:%) ret = %", What::kPlanted},
    {"calling CefRunMessageLoop", What::kLoopBegins},
    {"EmbBrowserHandler::OnAfterCreated", What::kWindowOpened},
    {"EmbBrowserHandler::OnResourceResponse(URL:%, Media type = %", What::kRequest},
    {"CheckIfCompleted(%) = %", What::kChecked},
    {"OnResourceRedirect(%) = % to %", What::kRedirect},
    {"OnResourceResponse(%) = %", What::kResponse},
    {"CefSAMLLogin::ProcessCookieResponse url:[%] ", What::kSamlAnswer},
    {"eb_saml_stateid = % eb_saml_status = % ", What::kSamlState},
    {"successful saml auth ", What::kSignedIn},
    {"Setting _urlIdpHost to %", What::kProvider},
    {" cookies from response = %", What::kCustomAnswer},
    {"session end = % hc_needed % hc_failed %", What::kCustomStatus},
    {"got post auth cookie", What::kCustomSession},
    {"Found cookies for Custom Sign-in HC", What::kHostCheckNeeded},
    {"Found cookies for Custom Sign-in HC Failed", What::kHostCheckFailed},
    {"invalid response", What::kNoSession},
    {"SAML SLO URL: % State:%", What::kLogoutState},
    {"CheckIfCompleted returning true", What::kLogoutDone},
    {"ProcessCookieResponse(%) = % cookies [%]", What::kAnswered},
    {"inside Visitor::Visit - cookie name=[%] value.size():%", What::kStored},
    {"Visit(%) = % %", What::kStoredFor},
    {"EmbBrowserHandler::OnTitleChange %", What::kTitle},
    {"Message: % Source: %", What::kConsole},
    {"Failed to laod URL (%), with error (%) errorCode (%)", What::kLoadError},
    {"ERR_ABORTED ....", What::kLoadBrokenOff},
    {"inside OnCertificateError", What::kQuestion},
    {"OnCertificateError(%) = %", What::kCertificate},
    {"OnCertificateError(%) answered %", What::kQuestionAnswered},
    {"inside OnCertificateError() closing the browser because of certificate warning",
     What::kCertificateRefused},
    {"Handling the Signal:% received", What::kSignal},
    {"EmbBrowserHandler::DoClose", What::kClosing},
    {"EmbBrowserHandler::OnBeforeClose", What::kClosed},
    {"Calling CefQuitMessageLoop", What::kLoopEnds},
    {"Calling CefCookieManager::FlushStore", What::kFlush},
    {"Failed to Parse request ", What::kBadRequest},
    {"failed to load resource file [%]", What::kNoTexts},
    {"Error loading some or all Message Catalog files.", What::kNoTexts},
    {"m_pBrowserCtrl is NULL. Aborting the navigation.", What::kUnknownStep},
    {"failed to load cef library", What::kNoFramework},
    {"CefInitialize failed, no browser could be started", What::kNoBrowser},
    {"the message loop has ended, but no browser has opened", What::kNoWindow},
    {"return data of % bytes is too long, dropping the IdP cookies", What::kIdpCookiesDropped},
    {"return data of % bytes does not fit, nothing is written", What::kNotWritten},
    {"Failed to attach shared memory", What::kNotWritten},
    {"Failed to set Embedded browser return data to shared memory", What::kNotWritten},
    {"createRequestForEmbBrowserReturnData() failed", What::kNotWritten},
};

// What says the same as another message, or belongs to it.
constexpr std::string_view kSilent[] = {"EmbBrowserHandler::OnLoadError error = %"};

// A message that was cut may end within any of its words; the others are then empty.
std::optional<std::vector<std::string>> Match(std::string_view pattern, std::string_view text,
                                              bool cut) {
  std::vector<std::string> words;
  while (true) {
    const size_t mark = std::min(pattern.find('%'), pattern.size());
    if (text.substr(0, mark) != pattern.substr(0, mark)) return {};
    text.remove_prefix(mark);
    if (mark == pattern.size()) {
      if (!text.empty()) return {};
      return words;
    }
    pattern.remove_prefix(mark + 1);
    const std::string_view behind = pattern.substr(0, pattern.find('%'));
    const size_t end = behind.empty() ? text.size() : text.find(behind);
    if (end == text.npos && cut) {
      words.emplace_back(text);
      words.resize(words.size() + std::count(pattern.begin(), pattern.end(), '%'));
      return words;
    }
    if (end == text.npos) return {};
    words.emplace_back(text.substr(0, end));
    text.remove_prefix(end);
  }
}

long long Milliseconds(const std::string& time) {
  std::tm parts = {};
  int thousandth = 0;
  std::sscanf(time.c_str(), "%d/%d/%d %d:%d:%d.%d", &parts.tm_year, &parts.tm_mon, &parts.tm_mday,
              &parts.tm_hour, &parts.tm_min, &parts.tm_sec, &thousandth);
  parts.tm_year -= 1900;
  parts.tm_mon -= 1;
  return timegm(&parts) * 1000LL + thousandth;
}

}  // namespace

long long Between(const Record& from, const Record& to) {
  return std::max(0LL, Milliseconds(to.time) - Milliseconds(from.time));
}

std::vector<Event> EventsOf(const Run& run) {
  std::vector<Event> events;
  for (const Record& record : run.records) {
    Event event;
    event.at = Between(run.records.front(), record);
    event.record = &record;
    const auto known =
        std::find_if(std::begin(kMessages), std::end(kMessages), [&](const Message& message) {
          const auto words = Match(message.pattern, record.message, record.cut);
          if (words) event.words = *words;
          return words.has_value();
        });
    if (known != std::end(kMessages)) {
      event.what = known->what;
    } else {
      const bool silent =
          std::any_of(std::begin(kSilent), std::end(kSilent), [&](std::string_view pattern) {
            return Match(pattern, record.message, false).has_value();
          });
      if (record.level != 1 || silent) continue;
      event.words = {record.message};
    }
    events.push_back(std::move(event));
  }
  return events;
}

}  // namespace log_reader
