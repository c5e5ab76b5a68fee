#include "tools/starter/Sentences.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "libs/kxaccess/InstallPaths.h"
#include "libs/kxaccess/utf8.h"
#include "platform/UserLanguages.h"
#include "tools/starter/BrowserLine.h"

namespace {

using ebStarter::Message;
using ebStarter::Outcome;
using ebStarter::Verdict;
using orb::CatalogUtil::MessageCatalog;
using orb::CatalogUtil::VariantPaths;

constexpr wchar_t kEnglish[] = L"en";

Message OfReason(const std::string& reason) {
  constexpr struct {
    const char* reason;
    Message message;
  } kMessages[] = {{"page-unreachable", Message::kUnreachable},
                   {"certificate-refused", Message::kCertificateRefused},
                   {"page-loading", Message::kNoAnswer},
                   {"certificate-question", Message::kCertificateQuestion},
                   {"no-display", Message::kNoDisplay},
                   {"no-browser", Message::kNoBrowser}};
  for (const auto& entry : kMessages) {
    if (reason == entry.reason) return entry.message;
  }
  return Message::kNone;
}

Message OfVerdict(Verdict verdict, bool logout) {
  switch (verdict) {
    case Verdict::kSignedIn:
    case Verdict::kLoggedOut:
      return Message::kNone;
    case Verdict::kClosedByUser:
      return logout ? Message::kLogoutUnfinished : Message::kClosed;
    case Verdict::kTimedOut:
      return logout ? Message::kLogoutUnfinished : Message::kTimedOut;
    case Verdict::kRefused:
      return Message::kRefused;
    case Verdict::kHostCheckNeeded:
      return Message::kHostCheckNeeded;
    case Verdict::kHostCheckFailed:
      return Message::kHostCheckFailed;
    case Verdict::kStopped:
      return Message::kStopped;
    case Verdict::kBusy:
      return Message::kBusy;
    default:
      return Message::kUnavailable;
  }
}

void Fill(std::string& text, const std::string& mark, const std::string& value) {
  const size_t at = text.find(mark);
  if (at != std::string::npos) text.replace(at, mark.size(), value);
}

bool Exists(const std::wstring& path) {
  std::error_code none;
  return std::filesystem::exists(WideToUtf8(path), none);
}

// The first of the user's languages that one of the message catalogs is there in.
std::wstring CatalogLanguage() {
  std::vector<std::wstring> files;
  MessageCatalog().getFilepaths(files);
  for (const std::string& name : UserLanguages()) {
    const std::wstring language = Utf8ToWide(name);
    if (language.substr(0, language.find(L'-')) == kEnglish) break;
    for (const std::wstring& file : files) {
      const std::vector<std::wstring> variants = VariantPaths(file, language);
      if (std::any_of(variants.begin(), variants.end(), Exists)) return language;
    }
  }
  return kEnglish;
}

}  // namespace

Sentences::Sentences() {
  const std::wstring language = CatalogLanguage();
  if (language != kEnglish) catalog_.loadFile(nullptr, language.c_str());
  const std::wstring branding =
      std::wstring(InstallPaths::kBrandingFolder) + L"BrandingMessageCatalog_EN.txt";
  if (Exists(branding)) catalog_.loadFile(branding.c_str(), language.c_str());
}

std::string Sentences::Find(Message message, const std::string& first,
                            const std::string& second) const {
  const auto found = catalog_.m_records.find(static_cast<unsigned int>(message));
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
  if (message == Message::kNone) message = OfVerdict(outcome.verdict, logout);
  std::string text = message == Message::kNone ? "" : Find(message, line.host, line.error);
  if (text.empty()) return outcome.detail;
  // What an administrator needs to know.
  const bool technical = message == Message::kUnavailable || message == Message::kNoDisplay ||
                         message == Message::kNoBrowser || message == Message::kBusy;
  return technical ? text + " (" + outcome.detail + ")" : text;
}

std::string Sentences::Progress(long long seconds_left) const {
  const std::string left = std::to_string(seconds_left);
  const std::string text = Find(Message::kProgress, left);
  return text.empty() ? "waiting for the step to end, " + left + " s left" : text;
}

std::string Sentences::Hint() const {
  const std::string text = Find(Message::kHint);
  return text.empty()
             ? "embedded-browser-doctor shows whether this computer has what such a step needs"
             : text;
}
