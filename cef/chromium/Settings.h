// What CefSettings mean for Chromium.

#ifndef CEF_CHROMIUM_SETTINGS_H_
#define CEF_CHROMIUM_SETTINGS_H_

#include <string>

#include "cef/chromium/CommandLine.h"
#include "include/internal/cef_types_wrappers.h"

namespace engine {

// Appends the switches that the settings ask for. A log file that cannot be written (one in a
// missing folder, or a folder itself) is left out: Chromium then writes no log.
void ApplySettings(const CefSettings& settings, CefCommandLine& command_line);

}  // namespace engine

#endif  // CEF_CHROMIUM_SETTINGS_H_
