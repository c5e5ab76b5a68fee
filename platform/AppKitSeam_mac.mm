#import "platform/AppKitSeam.h"

#import "platform/CatchThrown.h"

NSStringEncoding WideStringEncoding() {
  return CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF32LE);
}

void StartAppKitProcess() {}

// They go to the system's log.
void TakeAppKitMessages(void (*)(const char*)) {}

void CreateSharedApplication(Class application_class, void (*report)(id thrown)) {
  if (id thrown = CatchThrown([=] { [application_class sharedApplication]; })) report(thrown);
}

NSString* ResourceRootOfApplication(NSString* application_path) { return application_path; }
