// Which API a framework and its client were built for.

#ifndef CEF_INCLUDE_CEF_API_HASH_H_
#define CEF_INCLUDE_CEF_API_HASH_H_

#include "include/internal/cef_export.h"

// Changes whenever what crosses the border between client and framework changes.
#define CEF_API_HASH_PLATFORM "eb-cef-80.2"

extern "C" {

// Implemented by the framework: the hash of the headers it was built with. `entry` is 0.
CEF_EXPORT const char* cef_api_hash(int entry);

}  // extern "C"

#endif  // CEF_INCLUDE_CEF_API_HASH_H_
