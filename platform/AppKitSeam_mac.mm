#import "platform/AppKitSeam.h"

#import "platform/CatchThrown.h"

NSStringEncoding WideStringEncoding() {
  return CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF32LE);
}

void StartAppKitProcess() {}

void CreateSharedApplication(Class application_class, void (*report)(id thrown)) {
  if (id thrown = CatchThrown([=] { [application_class sharedApplication]; })) report(thrown);
}

NSString* ResourceRootOfApplication(NSString* application_path) { return application_path; }

void PrepareModalWindow(NSWindow*) {}
