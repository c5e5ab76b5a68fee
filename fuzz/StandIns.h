// Both threads of the framework, its clock, its windows and its Chromium, in the hands of a fuzz
// target: in the place of base/IoThread, base/MessageLoop, process/WindowServer and process/Launch.
// One real thread takes the part of either, so that the input alone decides who runs when.

#ifndef FUZZ_STANDINS_H_
#define FUZZ_STANDINS_H_

#include <cstdint>
#include <functional>
#include <string>

#include "cef/chromium/devtools/DevToolsConnection.h"

namespace standins {

// The pipe's ends that Launch::Start() gives to the connection.
void UsePipe(int write_fd, int read_fd);

// Runs what the thread has to do now: its tasks, on the IO thread also its descriptors. False when
// there was nothing.
bool RunUi();
bool RunIo();
// Both in turn, until there is nothing left; requires that this does not go on for ever.
void Settle();
// Moves the clock. UntilNext(): until the next timer, -1 for none.
void Advance(int64_t ms);
int64_t UntilNext();

// How often signals are held back.
int Holds();

// A window of Chromium's appears or goes.
void WindowComes(uint32_t window);
void WindowGoes(uint32_t window);

// Forgets all tasks.
void Clear();

}  // namespace standins

#endif  // FUZZ_STANDINS_H_
