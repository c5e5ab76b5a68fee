// What is being compiled for. Product code asks no such question itself; the other headers do.

#ifndef CEF_INCLUDE_BASE_CEF_BUILD_H_
#define CEF_INCLUDE_BASE_CEF_BUILD_H_

#if defined(__APPLE__)
#elif defined(__linux__)
#else
#error "Neither macOS nor Linux"
#endif

#define WCHAR_T_IS_UTF32 1

#ifndef OVERRIDE
#define OVERRIDE override
#endif

#define WARN_UNUSED_RESULT __attribute__((warn_unused_result))

#endif  // CEF_INCLUDE_BASE_CEF_BUILD_H_
