#include "GUI/cefBrowser/CertificateWarning.h"

#import <AppKit/AppKit.h>

#import "GUI/MacUI/Console/src/MacResourceManager.h"
#import "GUI/MacUI/Console/src/StringConversions.h"
#import "platform/CatchThrown.h"
#include "platform/Display.h"
#import "platform/RunAlert.h"

namespace {

constexpr NSAlertStyle kWarningStyle = static_cast<NSAlertStyle>(0);

void AddButton(NSAlert* alert, ResourceIdsOrbUI caption) {
  NSButton* button = [alert addButtonWithTitle:getStringFromResource(caption)];
  SetMnemonic(button, getMnemonicFromResource(caption));
}

bool Ask(NSString* heading, NSString* details) {
  NSAlert* alert = [[[NSAlert alloc] init] autorelease];
  AddButton(alert, kResourceAcceptCertificate);
  AddButton(alert, kResourceRefuseCertificate);
  [alert setMessageText:heading];
  [alert setInformativeText:details];
  [alert setAlertStyle:kWarningStyle];
  return RunAlert(alert) == NSAlertFirstButtonReturn;
}

}  // namespace

bool DisplayCertWarning(const std::wstring& heading, const std::wstring& details) {
  if (!HaveDisplay()) {
    logUIdata(@"no display for the certificate warning, the certificate is refused", 1);
    return false;
  }
  bool accepted = false;
  id thrown = CatchThrown([&] {
    NSString* title = [NSString stringWithwstring:heading];
    NSString* body = [NSString stringWithwstring:details];
    if (title != nil && body != nil) accepted = Ask(title, body);
  });
  if (thrown != nil) showNsObject(thrown);
  return accepted;
}
