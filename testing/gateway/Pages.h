// The pages of the box: plain HTML with one small style sheet inside, nothing fetched from
// elsewhere (not even an icon, whose request would carry cookies past the steps that count them).

#ifndef TESTING_GATEWAY_PAGES_H_
#define TESTING_GATEWAY_PAGES_H_

#include <string>
#include <utility>
#include <vector>

enum class Look { kGateway, kIdentityProvider, kThird };

using Fields = std::vector<std::pair<std::string, std::string>>;

// Text with & < > " ' replaced so that it can stand in HTML text and attributes.
std::string EscapeHtml(const std::string& text);

// A page with a heading and a body, which is HTML already.
std::string Page(Look look, const std::string& title, const std::string& body);

// A page with a heading and one paragraph of plain text.
std::string Notice(Look look, const std::string& title, const std::string& text);

// The form that asks for user and password and posts them to `action` with the hidden fields. When
// `by_itself`, the page's script fills it in and submits it after the page has loaded. `error`,
// when not empty, stands above it; `extra` is HTML below it.
struct SignInForm {
  Look look;
  std::string title;
  std::string action;
  Fields hidden;
  bool by_itself = false;
  std::string error;
  std::string extra;
};
std::string SignInPage(const SignInForm& form);

// A page that posts the fields to `action` as soon as it has loaded.
std::string PostingPage(Look look, const std::string& title, const std::string& action,
                        const Fields& fields);

// A page that goes on to `address` `milliseconds` after it has loaded.
std::string PassingPage(Look look, const std::string& title, const std::string& text,
                        const std::string& address, int milliseconds,
                        const std::string& extra = "");

// The one account that every sign-in of the box takes; the forms tell it.
inline constexpr char kUser[] = "ada";
inline constexpr char kPassword[] = "open sesame";

#endif  // TESTING_GATEWAY_PAGES_H_
