// Small objects that windows of the user interface pass to each other.

#ifndef GUI_MACUI_CONSOLE_SRC_MODELOBJECTS_H_
#define GUI_MACUI_CONSOLE_SRC_MODELOBJECTS_H_

#import <Foundation/Foundation.h>

#include <cstdint>

// How many PostMessageData objects have been made.
extern uint32_t PostMessageCount;

// A command for a window.
@interface PostMessageData : NSObject {
  int commandType;
  id commandData;  // not retained: the sender keeps it
  void* handleToWindow;
  uint32_t m_count;
}
- (void*)handleToWindow;
- (void)setHandleToWindow:(void*)handle;
- (int)commandType;
- (void)setCommandType:(int)type;
- (id)commandData;
- (void)setCommandData:(id)data;
// The object's number in order of creation, from 0.
- (uint32_t)count;
@end

// A timer of a window.
@interface timerData : NSObject {
  int timerId;
  int timerValue;
  int windowHandler;
}
@property(nonatomic) int timerId;
@property(nonatomic) int timerValue;
@property(nonatomic) int windowHandler;
@end

#endif  // GUI_MACUI_CONSOLE_SRC_MODELOBJECTS_H_
