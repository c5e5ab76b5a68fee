#include "platform/RaiseWindow.h"

// The window is Chromium's, which puts it to the front as it opens.
void RaiseWindow(void* /*window_handle*/) {}
