// What tests that show windows share.

#ifndef TESTS_WINDOW_WINDOWTEST_H_
#define TESTS_WINDOW_WINDOWTEST_H_

#include "tests/support/VirtualDisplay.h"

// The display of this test process, with a window manager. Made at the first call, ended with the
// process.
VirtualDisplay& TestDisplay();

// Makes the product's application object on TestDisplay(); once per process, later calls do
// nothing.
void StartTestApplication();

#endif  // TESTS_WINDOW_WINDOWTEST_H_
