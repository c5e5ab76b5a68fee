// Reads the text of one message that Chromium has sent.

#ifndef CEF_CHROMIUM_DEVTOOLS_DEVTOOLSMESSAGE_H_
#define CEF_CHROMIUM_DEVTOOLS_DEVTOOLSMESSAGE_H_

#include <rapidjson/document.h>

#include <string>

namespace engine {

// The method of an event as far as it can be told from the text's beginning, else "". Cheap: most
// events interest nobody and need not be read.
std::string EventMethod(const std::string& text);

// Reads a message. Chromium writes bytes that are no UTF-8 as single halves of surrogate pairs,
// which JSON does not allow: each becomes U+FFFD.
//
// False when the text still is no JSON. `message` then holds what stands before the fault of
// the message's own members and of its params, if they are texts or numbers: as a rule enough to
// say what it was about.
bool ReadMessage(const std::string& text, rapidjson::Document* message);

}  // namespace engine

#endif  // CEF_CHROMIUM_DEVTOOLS_DEVTOOLSMESSAGE_H_
