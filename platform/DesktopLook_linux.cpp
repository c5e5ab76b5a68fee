#include <fontconfig/fontconfig.h>
#include <strings.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "platform/DesktopLook.h"
#include "platform/XWindows.h"

namespace {

constexpr size_t kMostOfAFile = 4 << 20;
constexpr double kUsualDpi = 96, kMostScale = 4;

std::string Variable(const char* name) {
  const char* value = getenv(name);
  return value ? value : "";
}

// A file below the folder of the user's settings; empty where there is none.
std::string Setting(const char* file) {
  std::string folder = Variable("XDG_CONFIG_HOME");
  if (folder.empty()) folder = Variable("HOME") + "/.config";
  std::ifstream in(folder + "/" + file, std::ios::binary);
  std::string text(kMostOfAFile, '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<size_t>(in.gcount()));
  return text;
}

// The value of `key=` in a [section] of an .ini file.
std::string IniValue(const std::string& text, const std::string& section, const std::string& key) {
  std::istringstream lines(text);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line[0] == '[') {
      inside = line == "[" + section + "]";
    } else if (inside && line.compare(0, key.size(), key) == 0) {
      const size_t at = line.find_first_not_of(" \t", key.size());
      if (at == std::string::npos || line[at] != '=') continue;
      const size_t value = line.find_first_not_of(" \t", at + 1);
      return value == std::string::npos ? "" : line.substr(value);
    }
  }
  return "";
}

// "Adwaita-dark", "Yaru-blue-dark", "Adwaita:dark".
bool NamesDarkTheme(const std::string& theme) {
  return theme.size() > 5 && strcasecmp(theme.c_str() + theme.size() - 4, "dark") == 0 &&
         strchr("-:_", theme[theme.size() - 5]) != nullptr;
}

// What the session's settings daemon announces: a record for each setting, of its name, filled up
// to four bytes, a serial number, and a text with its length before it.
std::string AnnouncedTheme(Display* display) {
  const std::string selection = "_XSETTINGS_S" + std::to_string(DefaultScreen(display));
  const Window owner = XGetSelectionOwner(display, XInternAtom(display, selection.c_str(), False));
  if (owner == None) return "";
  const std::string settings = BytesOfWindow(display, owner, "_XSETTINGS_SETTINGS");
  static const std::string name = std::string("Net/ThemeName") + std::string(3, '\0');
  const size_t at = settings.find(name);
  if (at == std::string::npos || at + name.size() + 8 > settings.size()) return "";
  const auto byte = [&](size_t i) {
    return static_cast<uint8_t>(settings[at + name.size() + 4 + i]);
  };
  const bool low_first = settings[0] == LSBFirst;
  const size_t length = low_first ? byte(0) | byte(1) << 8 : byte(3) | byte(2) << 8;
  return settings.substr(at + name.size() + 8, length);
}

bool KdeIsDark() {
  const std::string background =
      IniValue(Setting("kdeglobals"), "Colors:Window", "BackgroundNormal");
  int red = 0, green = 0, blue = 0;
  if (sscanf(background.c_str(), "%d,%d,%d", &red, &green, &blue) != 3) return false;
  return red + green + blue < 3 * 128;
}

}  // namespace

bool DesktopIsDark(Display* display) {
  const std::string forced = Variable("GTK_THEME");
  if (!forced.empty()) return NamesDarkTheme(forced);
  // The one setting with this value; the file is the database of GNOME's settings.
  if (Setting("dconf/user").find("prefer-dark") != std::string::npos) return true;
  if (NamesDarkTheme(AnnouncedTheme(display))) return true;
  const std::string gtk = Setting("gtk-3.0/settings.ini");
  const std::string wish = IniValue(gtk, "Settings", "gtk-application-prefer-dark-theme");
  return wish == "1" || wish == "true" ||
         NamesDarkTheme(IniValue(gtk, "Settings", "gtk-theme-name")) || KdeIsDark();
}

double ScaleOfDesktop(Display* display) {
  double scale = atof(Variable("GDK_SCALE").c_str());
  const std::string resources =
      "\n" + BytesOfWindow(display, DefaultRootWindow(display), "RESOURCE_MANAGER");
  static const std::string key = "\nXft.dpi:";
  const size_t at = resources.find(key);
  if (at != std::string::npos) {
    scale = std::max(scale, atof(resources.c_str() + at + key.size()) / kUsualDpi);
  }
  return std::clamp(scale, 1.0, kMostScale);
}

std::string SansSerifFamily() {
  FcPattern* wanted = FcNameParse(reinterpret_cast<const FcChar8*>("sans-serif"));
  FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
  FcDefaultSubstitute(wanted);
  FcResult result;
  FcPattern* found = FcFontMatch(nullptr, wanted, &result);
  FcChar8* family = nullptr;
  std::string name;
  if (found && FcPatternGetString(found, FC_FAMILY, 0, &family) == FcResultMatch) {
    name = reinterpret_cast<const char*>(family);
  }
  if (found) FcPatternDestroy(found);
  FcPatternDestroy(wanted);
  return name;
}
