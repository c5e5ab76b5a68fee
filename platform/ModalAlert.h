// Ending an alert that waits for the user. macOS only: on Linux the framework's loop does this.

#ifndef PLATFORM_MODALALERT_H_
#define PLATFORM_MODALALERT_H_

// Makes the open modal alert return, with an answer that is none of its buttons; does nothing when
// none is open. Main thread, also from within a callback of a queue: nothing is thrown.
void EndModalAlert();

#endif  // PLATFORM_MODALALERT_H_
