// What CefSettings mean for Chromium.

#ifndef CEF_CHROMIUM_PROCESS_SETTINGS_H_
#define CEF_CHROMIUM_PROCESS_SETTINGS_H_

#include <string>

#include "cef/chromium/process/CommandLine.h"
#include "include/internal/cef_types_wrappers.h"

namespace engine {

// Appends the switches that the settings ask for. Two of them are Launch's to fulfil: "no-sandbox"
// allows to do without the sandbox where it cannot be had, "log-file" receives what Chromium says.
// However low the severity, that holds warnings and errors only, never what pages write to their
// consoles: those can be seen in the developer tools. Pages are asked for in the user's languages.
void ApplySettings(const CefSettings& settings, CefCommandLine& command_line);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_SETTINGS_H_
