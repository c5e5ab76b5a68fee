#include "GUI/cefBrowser/CertificateWarning.h"

#import <AppKit/AppKit.h>

#import "GUI/MacUI/Console/src/MacResourceManager.h"
#import "GUI/MacUI/Console/src/StringConversions.h"
#import "platform/CatchThrown.h"
#include "platform/Display.h"

namespace {

constexpr NSAlertStyle kWarningStyle = static_cast<NSAlertStyle>(0);

bool Ask(NSString* heading, NSString* details) {
  NSAlert* alert = [[[NSAlert alloc] init] autorelease];
  [alert addButtonWithTitle:getStringFromResource(kResourceAcceptCertificate)];
  [alert addButtonWithTitle:getStringFromResource(kResourceRefuseCertificate)];
  [alert setMessageText:heading];
  [alert setInformativeText:details];
  [alert setAlertStyle:kWarningStyle];
  return [alert runModal] == NSAlertFirstButtonReturn;
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
