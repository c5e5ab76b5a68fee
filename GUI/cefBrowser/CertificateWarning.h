// The question about a certificate that does not verify, as a modal alert.

#ifndef GUI_CEFBROWSER_CERTIFICATEWARNING_H_
#define GUI_CEFBROWSER_CERTIFICATEWARNING_H_

#include <string>

// Shows the alert and waits for the answer; the message loop stands still meanwhile. True only when
// the user chose the first button, "accept". Everything else is a refusal: the second button, a
// closed window, a signal, a missing display, texts that cannot be shown, an exception. UI thread.
bool DisplayCertWarning(const std::wstring& heading, const std::wstring& details);

#endif  // GUI_CEFBROWSER_CERTIFICATEWARNING_H_
