#include "platform/ModalAlert.h"

#import <AppKit/AppKit.h>

#include "platform/WakeEvent.h"

// Not abortModal: it throws, and what is thrown must not pass through the queue that calls here.
void EndModalAlert() {
  if ([NSApp modalWindow] == nil) return;
  [NSApp stopModal];
  PostWakeEvent();
}
