// Opening bare application windows (no tabs, no address bar) in a running Chromium, by the message
// that a second start on the same profile would send to the first.

#ifndef CEF_CHROMIUM_PROCESS_APPWINDOW_H_
#define CEF_CHROMIUM_PROCESS_APPWINDOW_H_

#include <string>
#include <vector>

namespace engine {

// Asks the Chromium that runs on the profile for a window that shows the first page. Takes two
// seconds at most. True if Chromium has accepted: the window then appears as a new page target
// without opener, its address being AppWindowUrl(host). False and a reason in *err otherwise. A
// signal that waits for the message loop ends the wait for the answer; the window may still come.
// UI thread.
bool OpenAppWindow(const std::string& profile_dir, const std::string& host, std::string* err);

// What shows while the first address is on its way: a data URL of a quiet page that names the
// product and the host (may be empty). It needs neither scripts nor the network.
std::string AppWindowUrl(const std::string& host);
// How the address of every such page of this process begins, and of no other.
std::string AppWindowUrlStart();

// What the page's title says.
std::string FirstTitle(const std::string& host);

// Chromium calls a bare window, and those that its page opens, after the address: what is in the
// first part of WM_CLASS of this process's windows and of nobody else's.
std::string AppWindowMark();
// The same name as Chromium's preferences have it, for the place of such windows.
std::string AppWindowName();

// Connects to the Chromium that runs on the profile: a close-on-exec socket, or -1. *busy (may be
// null) is true if one runs, even if it does not accept connections just now.
int ConnectToChromium(const std::string& profile_dir, bool* busy);

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_APPWINDOW_H_
