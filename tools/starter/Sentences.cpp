#include "tools/starter/Sentences.h"

#include <algorithm>
#include <filesystem>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "platform/UserLanguages.h"
#include "tools/starter/BrowserLine.h"

namespace {

using ebStarter::Outcome;
using ebStarter::Verdict;

// The numbers of the catalogs.
enum Message : unsigned int {
  kNone = 0,
  kClosed = 1700,
  kTimedOut = 1701,
  kRefused = 1702,
  kUnavailable = 1703,
  kLogoutUnfinished = 1704,
  kUnreachable = 1705,
  kCertificateRefused = 1706,
  kNoAnswer = 1707,
  kCertificateQuestion = 1708,
  kNoDisplay = 1709,
  kNoBrowser = 1710,
  kHostCheckNeeded = 1711,
  kHostCheckFailed = 1712,
  kStopped = 1713,
  kProgress = 1714,
  kHint = 1715,
  kBusy = 1716,
};

Message OfReason(const std::string& reason) {
  constexpr struct {
    const char* reason;
    Message message;
  } kMessages[] = {
      {"page-unreachable", kUnreachable}, {"certificate-refused", kCertificateRefused},
      {"page-loading", kNoAnswer},        {"certificate-question", kCertificateQuestion},
      {"no-display", kNoDisplay},         {"no-browser", kNoBrowser}};
  for (const auto& entry : kMessages) {
    if (reason == entry.reason) return entry.message;
  }
  return kNone;
}

Message OfVerdict(Verdict verdict, bool logout) {
  switch (verdict) {
    case Verdict::kSignedIn:
    case Verdict::kLoggedOut:
      return kNone;
    case Verdict::kClosedByUser:
      return logout ? kLogoutUnfinished : kClosed;
    case Verdict::kTimedOut:
      return logout ? kLogoutUnfinished : kTimedOut;
    case Verdict::kRefused:
      return kRefused;
    case Verdict::kHostCheckNeeded:
      return kHostCheckNeeded;
    case Verdict::kHostCheckFailed:
      return kHostCheckFailed;
    case Verdict::kStopped:
      return kStopped;
    case Verdict::kBusy:
      return kBusy;
    default:
      return kUnavailable;
  }
}

void Fill(std::string& text, const std::string& mark, const std::string& value) {
  const size_t at = text.find(mark);
  if (at != std::string::npos) text.replace(at, mark.size(), value);
}

// The first of the user's languages that there are catalogs for.
std::string CatalogLanguage() {
  for (const std::string& language : UserLanguages()) {
    const std::string code = language.substr(0, language.find('-'));
    if (code == "en" || code == "de" || code == "fr") return code;
  }
  return "en";
}

}  // namespace

Sentences::Sentences() {
  const std::string language = CatalogLanguage();
  const std::wstring code = Utf8ToWide(language);
  if (language != "en") catalog_.loadFile(nullptr, code.c_str());
  const std::wstring branding =
      std::wstring(InstallPaths::kBrandingFolder) + L"BrandingMessageCatalog_EN.txt";
  std::error_code none;
  if (std::filesystem::exists(WideToUtf8(branding), none)) {
    catalog_.loadFile(branding.c_str(), code.c_str());
  }
}

std::string Sentences::Find(unsigned int id, const std::string& first,
                            const std::string& second) const {
  const auto found = catalog_.m_records.find(id);
  if (found == catalog_.m_records.end()) return "";
  std::string text = WideToUtf8(found->second.longDesc);
  std::replace(text.begin(), text.end(), '\n', ' ');
  Fill(text, "{0}", first);
  Fill(text, "{1}", second);
  return text;
}

std::string Sentences::DetailOf(const Outcome& outcome, ebStarter::StepType type) const {
  const bool logout = type == ebStarter::StepType::kSamlLogout;
  const ebStarter::BrowserLine line(outcome.end.browser_remark);
  Message message = OfReason(outcome.reason);
  if (message == kNone) message = OfVerdict(outcome.verdict, logout);
  std::string text = message == kNone ? "" : Find(message, line.host, line.error);
  if (text.empty()) return outcome.detail;
  // What an administrator needs to know.
  const bool technical =
      message == kUnavailable || message == kNoDisplay || message == kNoBrowser || message == kBusy;
  return technical ? text + " (" + outcome.detail + ")" : text;
}

std::string Sentences::Progress(long long seconds_left) const {
  const std::string left = std::to_string(seconds_left);
  const std::string text = Find(kProgress, left);
  return text.empty() ? "waiting for the step to end, " + left + " s left" : text;
}

std::string Sentences::Hint() const {
  const std::string text = Find(kHint);
  return text.empty()
             ? "embedded-browser-doctor shows whether this computer has what such a step needs"
             : text;
}
