// A run's story as a drawing.

#ifndef TOOLS_LOG_PICTURE_H_
#define TOOLS_LOG_PICTURE_H_

#include <ostream>

#include "tools/log/Story.h"

namespace log_reader {

// Writes an SVG document: the program and each host as a lane, time from top to bottom, a mark for
// each thing that happened, the ending with its reasons below. It holds no scripts and nothing from
// elsewhere, whatever the records hold.
void Draw(const Story& story, std::ostream& out);

}  // namespace log_reader

#endif  // TOOLS_LOG_PICTURE_H_
