// The windows of an X display and what is written on them.
//
// Linux only. A window that has gone, or a property that is not there or of another kind, gives
// empty answers. For the thread that owns the connection.

#ifndef PLATFORM_XWINDOWS_H_
#define PLATFORM_XWINDOWS_H_

#include <X11/Xlib.h>

#include <optional>
#include <string>
#include <vector>

// While one lives, errors of X are passed over: other programs' windows go away at any time. To be
// used around calls that name such windows.
class PassOverXErrors {
 public:
  explicit PassOverXErrors(Display* display);
  ~PassOverXErrors();
  PassOverXErrors(const PassOverXErrors&) = delete;
  PassOverXErrors& operator=(const PassOverXErrors&) = delete;

 private:
  Display* display_;
  int (*former_)(Display*, XErrorEvent*);
};

// A property of bytes, such as a text, or of numbers (cardinals, windows, atoms); 256 KiB at most.
std::string BytesOfWindow(Display* display, Window window, const char* property);
std::vector<unsigned long> NumbersOfWindow(Display* display, Window window, const char* property);

// Sets a property to atoms of these names, to numbers of the given type.
void SetAtomsOfWindow(Display* display, Window window, const char* property,
                      const std::vector<const char*>& names);
void SetNumbersOfWindow(Display* display, Window window, const char* property, Atom type,
                        const std::vector<unsigned long>& numbers);

// Where a visible window stands, without its frame, in pixels from the screen's upper left corner.
struct WindowPlace {
  int x, y, width, height;
};
std::optional<WindowPlace> PlaceOfWindow(Display* display, Window window);

#endif  // PLATFORM_XWINDOWS_H_
