// What tests that show windows share.

#ifndef TESTS_WINDOW_WINDOWTEST_H_
#define TESTS_WINDOW_WINDOWTEST_H_

#include "tests/support/VirtualDisplay.h"

// The display of this test process. Made at the first call, which says whether there is a window
// manager, ended with the process.
VirtualDisplay& TestDisplay(bool managed = true);

// Makes the product's application object on TestDisplay(); once per process, later calls do
// nothing.
void StartTestApplication(bool managed = true);

#endif  // TESTS_WINDOW_WINDOWTEST_H_
