#import "platform/RunAlert.h"

void SetMnemonic(NSButton*, NSString*) {}

NSInteger RunAlert(NSAlert* alert) { return [alert runModal]; }
