// The last part of a run: the return data's way into shared memory.

#ifndef GUI_CEFBROWSER_RETURNCHANNEL_H_
#define GUI_CEFBROWSER_RETURNCHANNEL_H_

#include <string>

#include "GUI/newUI/CEFJsonUtils.h"

// With the folder `channel` it makes the key of the segment.
inline constexpr char kReturnProjectId = 'R';

// Writes `data` as JSON into the segment that the folder `channel` names. When the text is longer
// than the segment, the identity provider's cookies, the largest and least needed member, are
// dropped: a signed-in user must not lose the sign-in to a fat cookie. Nothing is written when it
// is still too long. False when the data could not be serialised or the segment not be had; every
// failure is logged.
bool WriteReturnData(EmbBrowserReturnData data, const std::string& channel);

#endif  // GUI_CEFBROWSER_RETURNCHANNEL_H_
