// Opening bare application windows (no tabs, no address bar) in a running Chromium, by the message
// that a second start on the same profile would send to the first.

#ifndef CEF_CHROMIUM_PROCESS_APPWINDOW_H_
#define CEF_CHROMIUM_PROCESS_APPWINDOW_H_

#include <string>
#include <vector>

namespace engine {

// Asks the Chromium that runs on the profile for a window that shows an empty page with the title
// (UTF-8). Takes two seconds at most. True if Chromium has accepted: the window then appears as a
// new page target without opener, its address being AppWindowUrl(title). False and a reason in *err
// otherwise. A signal that waits for the message loop ends the wait for the answer; the window may
// still come. UI thread.
bool OpenAppWindow(const std::string& profile_dir, const std::string& title, std::string* err);

// The address of the empty page: a data URL.
std::string AppWindowUrl(const std::string& title);

// Connects to the Chromium that runs on the profile: a close-on-exec socket, or -1. *busy (may be
// null) is true if one runs, even if it does not accept connections just now.
int ConnectToChromium(const std::string& profile_dir, bool* busy);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_APPWINDOW_H_
