// Puts a browser's window where the user sees it.

#ifndef GUI_CEFBROWSER_BRINGTOFRONT_H_
#define GUI_CEFBROWSER_BRINGTOFRONT_H_

// `windowHandle`: CefBrowserHost::GetWindowHandle(); null does nothing. UI thread.
void BringToFront(void* windowHandle);

#endif  // GUI_CEFBROWSER_BRINGTOFRONT_H_
