#import "platform/AppKitSeam.h"

NSStringEncoding WideStringEncoding() {
  return CFStringConvertEncodingToNSStringEncoding(kCFStringEncodingUTF32LE);
}

void StartAppKitProcess() {}

NSApplication* CreateSharedApplication(Class application_class) {
  return [application_class sharedApplication];
}

NSString* ResourceRootOfApplication(NSString* application_path) { return application_path; }

void PrepareModalWindow(NSWindow*) {}
