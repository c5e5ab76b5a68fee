// The module text of the user interface's log records.

#ifndef GUI_NEWUI_MODULENAME_H_
#define GUI_NEWUI_MODULENAME_H_

inline constexpr char kStrModuleName[] = "OrbUI";

#endif  // GUI_NEWUI_MODULENAME_H_
