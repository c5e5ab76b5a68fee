// Cookies as the log may show them to everybody.

#ifndef GUI_CEFBROWSER_COOKIESTANDINS_H_
#define GUI_CEFBROWSER_COOKIESTANDINS_H_

#include <string>

// The cookie list with "LENGTH.MARK" for each value: its bytes in decimal, and eight hexadecimal
// digits that are the same for equal values of this process, and unrelated in another. The
// gateway's status cookies keep their values, which say how a step went and open nothing.
std::string CookieStandIns(const std::string& cookies);

#endif  // GUI_CEFBROWSER_COOKIESTANDINS_H_
