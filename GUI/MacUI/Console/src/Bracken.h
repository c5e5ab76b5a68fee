// Sets up a process of the user interface: logging, language, catalogs.

#ifndef GUI_MACUI_CONSOLE_SRC_BRACKEN_H_
#define GUI_MACUI_CONSOLE_SRC_BRACKEN_H_

#import <Foundation/Foundation.h>

// Reports an exception that nobody caught.
void HandleException(NSException* exception);

// One per process. Whatever goes wrong in `init` is reported to the log, and the object is still
// made. Its end is the end of the log; one that an interface file makes is never released.
// Main thread.
@interface Bracken : NSObject
- (id)init;

// The catalogs' language code for the user's preferred languages, such as "de" or "zh-cn".
- (NSString*)getUserLanguage;

// The installed catalog file of the resource texts; nil when it is missing.
- (NSString*)getResourcefilePath;

// The installed catalog file of the messages; nil when it is missing.
- (NSString*)getCatalogResourcefilePath;
@end

#endif  // GUI_MACUI_CONSOLE_SRC_BRACKEN_H_
