// The browser's own questions and menus come in a package of their own.

#include <filesystem>
#include <string>
#include <vector>

#include "cef/chromium/process/InstalledChromium.h"
#include "platform/UserLanguages.h"
#include "tools/doctor/Checks.h"

namespace doctor {

Finding CheckChromiumLanguage() {
  namespace fs = std::filesystem;
  constexpr char kId[] = "chromium-language";
  std::string ignored;
  const std::vector<std::string> languages = UserLanguages();
  const auto installed = engine::FindChromiums(&ignored);
  if (languages.empty() || installed.empty()) return Ok(kId, "no language is named");
  const std::string& language = languages.front();
  const std::string code = language.substr(0, language.find('-'));
  std::error_code none;
  const fs::path texts = fs::canonical(installed.front().path, none).parent_path() / "locales";
  const auto has = [&](const std::string& name) {
    return fs::exists(texts / (name + ".pak"), none);
  };
  // One that keeps its texts elsewhere is not judged.
  if (code == "en" || !has("en-US") || has(language) || has(code)) return Ok(kId, language);
  return Warning(kId, texts.string() + " lacks " + code);
}

}  // namespace doctor
