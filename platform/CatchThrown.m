#import "platform/CatchThrown.h"

id CatchObject(void (*body)(void* context), void* context) {
  @try {
    body(context);
  } @catch (id thrown) {
    return thrown;
  }
  return nil;
}
