// Where the AppKit of this system differs from the one the program is written against.
//
// Everything here belongs to the main thread.

#ifndef PLATFORM_APPKITSEAM_H_
#define PLATFORM_APPKITSEAM_H_

#import <AppKit/AppKit.h>

// The encoding of a wide string's bytes: UTF-32, little-endian.
NSStringEncoding WideStringEncoding();

// Prepares the process for AppKit; to be called before its first Objective-C call. Later calls do
// nothing.
void StartAppKitProcess();

// From now on what AppKit has to say to developers goes to `take`, one message in UTF-8 a call,
// instead of standard error. `take` lives as long as the process and may be called by any thread.
void TakeAppKitMessages(void (*take)(const char* message));

// [application_class sharedApplication], at once or, where that takes its time, not before
// ConnectDisplay(). What it throws goes to `report`: without a display an NSException, after which
// NSApp exists but cannot show anything. The process keeps its signal handlers and its
// uncaught-exception handler.
void CreateSharedApplication(Class application_class, void (*report)(id thrown));

// The folder that [NSBundle bundleWithPath:] needs to find the resources of an installed
// application.
NSString* ResourceRootOfApplication(NSString* application_path);

#ifdef GNUSTEP
// Posted by ConnectDisplay().
static NSString* const kDisplayWanted = @"DisplayWanted";

// What AppKit has had since macOS 10.8. The array is filled with nothing. Without this the main
// menu cannot be loaded: the message is not understood.
@interface NSBundle (InterfaceFiles)
- (BOOL)loadNibNamed:(NSString*)name owner:(id)owner topLevelObjects:(NSArray**)objects;
@end
#endif

#endif  // PLATFORM_APPKITSEAM_H_
