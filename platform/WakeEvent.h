// Ending AppKit's wait for an event.

#ifndef PLATFORM_WAKEEVENT_H_
#define PLATFORM_WAKEEVENT_H_

// Gives the application an event that means nothing. AppKit goes on waiting after it has served a
// descriptor or a queue, and an alert's loop looks at what has been decided only when an event has
// come. Main thread.
void PostWakeEvent();

#endif  // PLATFORM_WAKEEVENT_H_
