// Arguments of the process and of a browser window.

#ifndef CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
#define CEF_INCLUDE_INTERNAL_CEF_LINUX_H_

// As wide as on macOS, where it is a view: what takes a window handle there takes it here as well.
typedef void* CefWindowHandle;

// The framework takes its switches from the settings and the application, none from here.
class CefMainArgs {
 public:
  CefMainArgs() = default;
  CefMainArgs(int /*argc*/, char** /*argv*/) {}
};

// Place and parent of a browser window: always left to the framework.
class CefWindowInfo {};

#endif  // CEF_INCLUDE_INTERNAL_CEF_LINUX_H_
