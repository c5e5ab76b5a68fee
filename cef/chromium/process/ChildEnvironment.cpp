#include "cef/chromium/process/ChildEnvironment.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace engine {

namespace {

// A list of what is allowed, since nobody can list the names that secrets have. Not PATH: what we
// start is started by its full path, and finds its own commands at their usual places.
constexpr const char* kNames[] = {"HOME",
                                  "USER",
                                  "LOGNAME",
                                  "SHELL",
                                  "TZ",
                                  "LANG",
                                  "LANGUAGE",
                                  "DISPLAY",
                                  "XAUTHORITY",
                                  "WAYLAND_DISPLAY",
                                  "SESSION_MANAGER",
                                  "ICEAUTHORITY",
                                  "DESKTOP_SESSION",
                                  "XMODIFIERS",
                                  "NO_AT_BRIDGE",
                                  "LOCALDOMAIN",
                                  "RES_OPTIONS",
                                  "HOSTALIASES",
                                  "PRINTER",
                                  "LPDEST"};

constexpr const char* kBeginnings[] = {
    "LC_",       "XDG_",    "DBUS_",      "GNOME_DESKTOP_", "KDE_",        "GTK_",      "GDK_",
    "QT_",       "GIO_",    "GSETTINGS_", "DCONF_",         "IBUS_",       "FCITX_",    "AT_SPI_",
    "XCURSOR_",  "XKB_",    "LIBGL_",     "MESA_",          "FONTCONFIG_", "FREETYPE_", "PULSE_",
    "PIPEWIRE_", "ALSA_",   "CUPS_",      "KRB5",           "SOCKS_",      "NSS_",      "SSL_",
    "P11_",      "PKCS11_", "OPENSC_",    "PCSCLITE_"};

// In either case.
constexpr const char* kProxies[] = {"http_proxy", "https_proxy", "ftp_proxy",
                                    "all_proxy",  "no_proxy",    "auto_proxy"};

}  // namespace

bool MayInherit(const std::string& name) {
  const char* const text = name.c_str();
  const auto same = [text](const char* other) { return strcmp(text, other) == 0; };
  const auto begins = [text](const char* other) {
    return strncmp(text, other, strlen(other)) == 0;
  };
  const auto alike = [text](const char* other) { return strcasecmp(text, other) == 0; };
  return std::any_of(std::begin(kNames), std::end(kNames), same) ||
         std::any_of(std::begin(kBeginnings), std::end(kBeginnings), begins) ||
         std::any_of(std::begin(kProxies), std::end(kProxies), alike);
}

std::vector<std::string> ChildEnvironment(
    const std::vector<std::pair<std::string, std::string>>& changes) {
  std::vector<std::string> result;
  for (char** entry = environ; entry && *entry; ++entry) {
    const char* equals = strchr(*entry, '=');
    const std::string name(*entry, equals ? equals - *entry : strlen(*entry));
    const bool changed = std::any_of(changes.begin(), changes.end(),
                                     [&](const auto& change) { return change.first == name; });
    if (!changed && MayInherit(name)) result.push_back(*entry);
  }
  for (const auto& [name, value] : changes) result.push_back(name + "=" + value);
  return result;
}

}  // namespace engine
