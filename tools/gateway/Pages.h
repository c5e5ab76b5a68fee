// The pages of the box: plain HTML with one small style sheet inside, nothing fetched from
// elsewhere (not even an icon, whose request would carry cookies past the steps that count them).

#ifndef TOOLS_GATEWAY_PAGES_H_
#define TOOLS_GATEWAY_PAGES_H_

#include <string>

#include "tools/gateway/Scenario.h"

enum class Look { kGateway, kIdentityProvider, kThird };

// Text with & < > " ' replaced so that it can stand in HTML text and attributes.
std::string EscapeHtml(const std::string& text);

// The look of a host ("gateway", "idp", "third").
Look LookOf(const std::string& host);

// Text as a literal of a page's script, with its quotes.
std::string ScriptText(const std::string& text);

// A page with a heading and a body, which is HTML already.
std::string Page(Look look, const std::string& title, const std::string& body);

// A page with a heading and one paragraph of plain text.
std::string Notice(Look look, const std::string& title, const std::string& text);

// The parts of a page for people, all of them optional.
struct PageParts {
  std::string title;
  std::string text;
  std::string html;    // shown below the text
  std::string script;  // run at the page's end
  std::string error;   // stands above a form
  // A form: hidden fields, and the ones the user is asked for with what is to be typed there.
  std::string action;
  Fields hidden;
  Fields asked;
  bool by_itself = false;  // fills itself in and posts itself after the page has loaded
  // Where the page goes next on its own, `after_ms` after it has loaded.
  std::string next;
  int after_ms = 0;
};
std::string WholePage(Look look, const PageParts& parts);

#endif  // TOOLS_GATEWAY_PAGES_H_
