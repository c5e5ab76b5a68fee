// Texts of the user interface from the resource catalog, and the reports that the user interface
// writes to the log. Main thread.

#ifndef GUI_MACUI_CONSOLE_SRC_MACRESOURCEMANAGER_H_
#define GUI_MACUI_CONSOLE_SRC_MACRESOURCEMANAGER_H_

#import <Foundation/Foundation.h>

#import "GUI/MacUI/Console/src/ModelObjects.h"
#import "GUI/MacUI/Console/src/RGBConversion.h"
#import "GUI/MacUI/Console/src/StringConversions.h"
#include "libs/catalogUtil/ResourceIds.h"

// The installed application bundle of the VPN client.
NSString* getHaldenCorvaneAppPath();

// The catalog's text without its mnemonic markers: "&Continue" gives "Continue", "Cancel(&C)" gives
// "Cancel". Autoreleased. An unknown identifier gives the catalog's text for that; nil when the
// text is not valid.
NSString* getStringFromResource(ResourceIdsOrbUI resource);

// The letter that the catalog's text marks, which may be pressed as a key: "C" for "&Continue" and
// for "Cancel(&C)". Nil when it marks none.
NSString* getMnemonicFromResource(ResourceIdsOrbUI resource);

// Writes one log record. The text is the record's format: its "%" signs are interpreted. Levels
// other than 0 to 5 are written at level 5. A nil text writes nothing.
void logUIdata(NSString* text, int level);

// Reports an object that was thrown: name, reason and call stack of an NSException (subclasses do
// not count), one line for anything else. Never throws.
void showNsObject(id object);

#endif  // GUI_MACUI_CONSOLE_SRC_MACRESOURCEMANAGER_H_
