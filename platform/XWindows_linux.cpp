#include <X11/Xatom.h>

#include "platform/XWindows.h"

namespace {

constexpr long kMostLongs = 64 * 1024;

// Calls take(bytes, count of items) for the property if its items have that many bits.
template <class Take>
void ReadProperty(Display* display, Window window, const char* property, int bits, Take take) {
  PassOverXErrors errors(display);
  Atom type = None;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char* data = nullptr;
  const int status =
      XGetWindowProperty(display, window, XInternAtom(display, property, False), 0, kMostLongs,
                         False, AnyPropertyType, &type, &format, &count, &rest, &data);
  if (status != Success || data == nullptr) return;
  if (format == bits) take(data, count);
  XFree(data);
}

}  // namespace

PassOverXErrors::PassOverXErrors(Display* display) : display_(display) {
  XSync(display_, False);
  former_ = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
}

PassOverXErrors::~PassOverXErrors() {
  XSync(display_, False);
  XSetErrorHandler(former_);
}

std::string BytesOfWindow(Display* display, Window window, const char* property) {
  std::string text;
  ReadProperty(display, window, property, 8, [&](const unsigned char* data, unsigned long count) {
    text.assign(reinterpret_cast<const char*>(data), count);
  });
  return text;
}

std::vector<unsigned long> NumbersOfWindow(Display* display, Window window, const char* property) {
  std::vector<unsigned long> numbers;
  ReadProperty(display, window, property, 32, [&](const unsigned char* data, unsigned long count) {
    const auto* first = reinterpret_cast<const unsigned long*>(data);
    numbers.assign(first, first + count);
  });
  return numbers;
}

void SetAtomsOfWindow(Display* display, Window window, const char* property,
                      const std::vector<const char*>& names) {
  std::vector<unsigned long> atoms;
  for (const char* name : names) atoms.push_back(XInternAtom(display, name, False));
  SetNumbersOfWindow(display, window, property, XA_ATOM, atoms);
}

void SetNumbersOfWindow(Display* display, Window window, const char* property, Atom type,
                        const std::vector<unsigned long>& numbers) {
  XChangeProperty(display, window, XInternAtom(display, property, False), type, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(numbers.data()),
                  static_cast<int>(numbers.size()));
}

std::optional<WindowPlace> PlaceOfWindow(Display* display, Window window) {
  PassOverXErrors errors(display);
  XWindowAttributes seen;
  if (!XGetWindowAttributes(display, window, &seen) || seen.map_state != IsViewable) return {};
  WindowPlace place = {0, 0, seen.width, seen.height};
  Window child;
  XTranslateCoordinates(display, window, seen.root, 0, 0, &place.x, &place.y, &child);
  return place;
}
