// The one line that a fake leaves of a call.

#ifndef TESTS_SUPPORT_FAKETRACE_H_
#define TESTS_SUPPORT_FAKETRACE_H_

#include <string>

// Adds a line to the trace of the living FakeCef, if there is one.
void FakeTrace(const std::string& line);

#endif  // TESTS_SUPPORT_FAKETRACE_H_
