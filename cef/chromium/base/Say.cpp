#include "cef/chromium/base/Say.h"

#include <cstdio>

namespace engine {

void Say(const std::string& text) {
  fprintf(stderr, "cef: %s\n", text.c_str());
  fflush(stderr);
}

}  // namespace engine
