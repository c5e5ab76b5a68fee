// Marks what the framework exports by name.

#ifndef CEF_INCLUDE_INTERNAL_CEF_EXPORT_H_
#define CEF_INCLUDE_INTERNAL_CEF_EXPORT_H_

#define CEF_EXPORT __attribute__((visibility("default")))

#endif  // CEF_INCLUDE_INTERNAL_CEF_EXPORT_H_
