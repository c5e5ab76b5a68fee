#import "GUI/MacUI/Console/src/ModelObjects.h"

uint32_t PostMessageCount = 0;

@implementation PostMessageData

- (id)init {
  self = [super init];
  if (self != nil) m_count = PostMessageCount++;
  return self;
}

- (void)dealloc {
  [super dealloc];
}

- (void*)handleToWindow {
  return handleToWindow;
}

- (void)setHandleToWindow:(void*)handle {
  handleToWindow = handle;
}

- (int)commandType {
  return commandType;
}

- (void)setCommandType:(int)type {
  commandType = type;
}

- (id)commandData {
  return commandData;
}

- (void)setCommandData:(id)data {
  commandData = data;
}

- (uint32_t)count {
  return m_count;
}

@end

@implementation timerData
@synthesize timerId;
@synthesize timerValue;
@synthesize windowHandler;
@end
