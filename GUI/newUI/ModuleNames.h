// The names by which the program's log records say where they come from.

#ifndef GUI_NEWUI_MODULENAMES_H_
#define GUI_NEWUI_MODULENAMES_H_

// The module text of the user interface's records.
inline constexpr char kStrModuleName[] = "OrbUI";

// That of the driver, the sessions and the handler.
inline constexpr char kCefModule[] = "CEF";

// The name by which the process introduces itself to the log.
inline constexpr char kLogModuleName[] = "cefBrowser";

#endif  // GUI_NEWUI_MODULENAMES_H_
