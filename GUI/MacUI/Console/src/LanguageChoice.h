// Which language the catalogs are loaded in.

#ifndef GUI_MACUI_CONSOLE_SRC_LANGUAGECHOICE_H_
#define GUI_MACUI_CONSOLE_SRC_LANGUAGECHOICE_H_

#import <Foundation/Foundation.h>

// The catalogs' code for the first of the localisations (NSString, most wanted first) that the
// product has texts for; "en" when there is none. Full language names count, codes such as "de" do
// not, except for Korean and Chinese. Case does not matter.
NSString* LanguageForLocalizations(NSArray* localizations);

#endif  // GUI_MACUI_CONSOLE_SRC_LANGUAGECHOICE_H_
