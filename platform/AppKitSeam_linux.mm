#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#import <Foundation/NSDistributedNotificationCenter.h>
#import <objc/runtime.h>

#import "platform/AppKitSeam.h"
#import "platform/CatchThrown.h"
#include "platform/DisplayLoss.h"

namespace {

// AppKit's X backend installs handlers of its own for SIGINT and SIGTERM, which end the application
// from within the signal. Without this the process's own handlers for them are lost.
class KeptSignalHandlers {
 public:
  KeptSignalHandlers() {
    for (int i = 0; i < kCount; ++i) sigaction(kNumbers[i], nullptr, &actions_[i]);
  }
  ~KeptSignalHandlers() {
    for (int i = 0; i < kCount; ++i) sigaction(kNumbers[i], &actions_[i], nullptr);
  }

 private:
  static constexpr int kCount = 3;
  static constexpr int kNumbers[kCount] = {SIGHUP, SIGINT, SIGTERM};
  struct sigaction actions_[kCount];
};

// AppKit replaces the handler by one that opens a modal panel. Without this an uncaught exception
// hangs a process that nobody watches.
class KeptExceptionHandler {
 public:
  KeptExceptionHandler() : handler_(NSGetUncaughtExceptionHandler()) {}
  ~KeptExceptionHandler() { NSSetUncaughtExceptionHandler(handler_); }

 private:
  NSUncaughtExceptionHandler* handler_;
};

// Foundation copies arguments and environment when it is loaded, and ends the process at the first
// text that is not UTF-8: a cookie, a folder's name from an older system. So what is not ASCII is
// kept out of its sight until it has started; nothing in it is meant for Foundation. The launch
// request goes for good, to a place of its own.
char** s_Hidden = nullptr;
char* s_FirstHidden = nullptr;

#define EB_BEFORE_ALL_ELSE __attribute__((no_sanitize("address", "thread", "undefined")))

EB_BEFORE_ALL_ELSE size_t LengthUnlessAscii(const char* text) {
  bool ascii = true;
  size_t length = 0;
  for (; text[length]; ++length) ascii = ascii && static_cast<signed char>(text[length]) >= 0;
  return ascii ? 0 : length;
}

EB_BEFORE_ALL_ELSE void HideFromFoundation(int count, char** arguments, char** environment) {
  char** end = environment;
  while (*end) ++end;
  char** const last = end;
  for (char** entry = environment; entry < end;) {
    if (LengthUnlessAscii(*entry) == 0) {
      ++entry;
      continue;
    }
    char* const hidden = *entry;
    *entry = *--end;
    *end = hidden;
  }
  if (end != last) {
    s_Hidden = end;
    s_FirstHidden = *end;
    *end = nullptr;
  }
  // All of it, ASCII or not: it shows in process lists as long as it stands here, and loading all
  // the libraries takes a while.
  size_t length = 0;
  while (count > 0 && arguments[0][length]) ++length;
  if (length == 0) return;
  void* const room =
      mmap(nullptr, length + 1, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (room == MAP_FAILED) return;
  static const char kName[] = "EmbeddedBrowser";
  for (size_t i = 0; i < length; ++i) {
    static_cast<char*>(room)[i] = arguments[0][i];
    arguments[0][i] = i < sizeof kName ? kName[i] : '\0';
  }
  arguments[0] = static_cast<char*>(room);
}

// Runs before the libraries' constructors.
__attribute__((section(".preinit_array"), used)) void (*s_First)(int, char**,
                                                                 char**) = HideFromFoundation;

id DoNothing(id, SEL, ...) { return nil; }

// Without this AppKit enters the process under its name into a folder that all runs share, and
// where it cannot use that folder, a panel asks the user whether to abort.
void StayUnregistered() {
  Method found = class_getInstanceMethod(NSClassFromString(@"GSServicesManager"),
                                         @selector(registerAsServiceProvider));
  if (found) method_setImplementation(found, DoNothing);
}

// Without this AppKit's backend, which asks what pictures could be dropped on it, has ImageMagick
// load every decoder it has: more than a hundred libraries. AppKit reads ours without it.
void LeaveImageMagick() {
  Class reader = NSClassFromString(@"GSImageMagickImageRep");
  if (reader) [NSImageRep unregisterImageRepClass:reader];
}

// A program that was killed while it had the lock, which it has for milliseconds, would keep this
// one waiting for 20 seconds.
void BreakStaleDefaultsLock() {
  NSString* path = [GSDefaultsRootForUser(NSUserName())
      stringByAppendingPathComponent:@".lck/.GNUstepDefaults.lck"];
  // A lock in a folder that does not exist yet is complained about.
  if (![[NSFileManager defaultManager] fileExistsAtPath:path]) return;
  NSDistributedLock* lock = [NSDistributedLock lockWithPath:path];
  NSDate* made = [lock lockDate];
  if (made != nil && [made timeIntervalSinceNow] < -1) [lock breakLock];
}

Class s_ApplicationClass = Nil;
void (*s_Report)(id thrown) = nullptr;

}  // namespace

// Loading AppKit's backend, its fonts and its theme takes longer than all else that comes before
// Chromium's start, so it waits until the framework, for which Chromium is on its way, asks for it.
@interface ApplicationMaker : NSObject
@end

@implementation ApplicationMaker
+ (void)makeApplication:(NSNotification*)notification {
  (void)notification;
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  KeptSignalHandlers signals;
  KeptExceptionHandler exceptions;
  id thrown = CatchThrown([] {
    LeaveImageMagick();
    ThrowDisplayLoss();
    [s_ApplicationClass sharedApplication];
    WatchDisplay(nullptr);
  });
  if (!thrown) return;
  // What is half connected is not to be used.
  LeaveDisplay();
  s_Report(thrown);
}
@end

// Without this the first use of AppKit starts a notification daemon, which costs most of a second
// and outlives the process by a minute. Nothing here posts or observes across processes.
@implementation NSDistributedNotificationCenter (Quiet)
+ (id)defaultCenter {
  return nil;
}
@end

// Without this AppKit tells other applications about this one through a file, waits up to half a
// second for its lock, which a killed run leaves behind, and has a child process look for all
// applications and write them down below the user's home.
@implementation NSWorkspace (Quiet)
+ (NSWorkspace*)sharedWorkspace {
  return nil;
}
@end

@implementation NSBundle (InterfaceFiles)
- (BOOL)loadNibNamed:(NSString*)name owner:(id)owner topLevelObjects:(NSArray**)objects {
  (void)objects;
  NSDictionary* table = [NSDictionary dictionaryWithObject:owner forKey:NSNibOwner];
  return [self loadNibFile:name externalNameTable:table withZone:NULL];
}
@end

NSStringEncoding WideStringEncoding() { return NSUTF32LittleEndianStringEncoding; }

void StartAppKitProcess() {
  static bool started = false;
  if (started) return;
  started = true;

  // Without this the process name, which shows in messages and window classes, is a tail of the
  // launch request, and further arguments are opened as documents.
  static char name[] = "EmbeddedBrowser";
  static char* arguments[] = {name, nullptr};
  GSInitializeProcess(1, arguments, environ);
  if (s_Hidden) *s_Hidden = s_FirstHidden;

  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  BreakStaleDefaultsLock();
  // Without these a stray icon window and a floating menu appear beside the browser.
  NSDictionary* defaults = [NSDictionary dictionaryWithObjectsAndKeys:@"YES", @"GSSuppressAppIcon",
                                                                      @"NSWindows95InterfaceStyle",
                                                                      @"NSMenuInterfaceStyle", nil];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
  StayUnregistered();
  // Without a run loop of its own the thread performs queued selectors at once.
  [NSRunLoop currentRunLoop];
  [pool drain];
}

namespace {
void (*s_TakeMessage)(const char*) = nullptr;
void TakeMessage(NSString* message) { s_TakeMessage([message UTF8String]); }
}  // namespace

void TakeAppKitMessages(void (*take)(const char*)) {
  s_TakeMessage = take;
  _NSLog_printf_handler = TakeMessage;
}

void CreateSharedApplication(Class application_class, void (*report)(id thrown)) {
  s_ApplicationClass = application_class;
  s_Report = report;
  [[NSNotificationCenter defaultCenter] addObserver:[ApplicationMaker class]
                                           selector:@selector(makeApplication:)
                                               name:kDisplayWanted
                                             object:nil];
}

NSString* ResourceRootOfApplication(NSString* application_path) {
  // Resources are looked for directly below the given folder, where an application installed for
  // macOS has none.
  return [application_path stringByAppendingPathComponent:@"Contents"];
}
