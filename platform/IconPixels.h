// The program's icon as X11 wants it.
//
// Linux only.

#ifndef PLATFORM_ICONPIXELS_H_
#define PLATFORM_ICONPIXELS_H_

#include <cstdint>
#include <string>
#include <vector>

// The pictures embedded-browser-16.png to -128.png of the folder, in the form of _NET_WM_ICON: for
// each its width, its height and its pixels (ARGB, not premultiplied). Those that are missing are
// left out. Main thread.
std::vector<uint32_t> IconPixels(const std::string& folder);

#endif  // PLATFORM_ICONPIXELS_H_
