// The display that the window would appear on.

#include <cstdlib>
#include <string>

#include "platform/DisplayReach.h"
#include "tools/doctor/Checks.h"

namespace doctor {

Finding CheckDisplay() {
  const std::string why = WhyNoDisplay();
  return why.empty() ? Ok("display", getenv("DISPLAY")) : Failure("display", why);
}

}  // namespace doctor
