// What one scenario file says, as the box and the tests use it. docs/GATEWAY.md explains every
// member; the defaults are here.

#ifndef TOOLS_GATEWAY_SCENARIO_H_
#define TOOLS_GATEWAY_SCENARIO_H_

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using Fields = std::vector<std::pair<std::string, std::string>>;

// An answer is given when all of this holds. Entries are "NAME" (there, and not empty) or
// "NAME=text" (there with that value).
struct Condition {
  std::string method;  // empty: any
  std::vector<std::string> cookies;
  std::vector<std::string> fields;  // of the query or of a posted form
  std::vector<std::string> headers;
};

struct CookieToSet {
  std::string text;
  int times = 1;  // {n} in the text counts from 1
};

struct SignInForm {
  std::string to;
  Fields fields;  // hidden ones
  Fields asks;    // what the user is asked for, with what is typed there
  std::string error;
};

struct PostedForm {
  std::string to;
  Fields fields;
};

struct Passage {
  std::string to;
  int after_ms = 0;
};

enum class Broken { kNo, kClose, kHalf, kEndless };

// One way to answer a request. A target is "HOST/path", with a query if need be.
struct Answer {
  Condition when;
  int status = 0;  // 0: 303 for a redirect, 200 for everything else
  Fields headers;
  std::vector<CookieToSet> set_cookies;
  int delay_ms = 0;
  std::string redirect;             // a target
  std::optional<std::string> body;  // sent as it is
  // A page, of these parts.
  std::string title;
  std::string text;
  std::string html;
  std::string script;
  std::optional<SignInForm> form;
  std::optional<PostedForm> post;
  std::optional<Passage> go;
  Broken broken = Broken::kNo;
};

// What a person does: waits until a window's title matches, then does one of the three.
struct Hand {
  std::string window;  // a regular expression
  int after = 0;       // seconds between the window and the deed
  std::vector<std::string> keys;
  std::string type;
  bool close = false;
};

// What the starter reports in the end. The texts are regular expressions for the whole value.
struct Expectation {
  std::string verdict;
  std::string reason;  // not a regular expression
  std::string post_auth_cookie;
  std::string idp_cookies;
  std::string logout_url;
  int slo_state = 0;
  std::string explain;           // a text in what the log's reader tells of the run
  std::vector<std::string> log;  // texts that the program's log holds; its errors hold one of them
};

struct Scenario {
  std::string name;  // of the file, without its extension
  std::string description;
  std::string step;      // "saml-login", "custom" or "saml-logout"
  std::string cookie;    // what the caller plants
  std::string language;  // the user's, as LANGUAGE names it; empty: as it is
  bool https = false;
  // By host: the fault of its certificate, which is also part of the name it is reached under.
  std::map<std::string, std::string> certificates;
  int timeout = 45;  // the caller's limit, in seconds
  std::vector<Hand> hands;
  bool automatic = true;  // with ?auto=1 its forms fill themselves in
  bool nightly = false;   // takes minutes
  Expectation expect;
  std::map<std::string, std::vector<Answer>> pages;  // by "HOST/path"
};

// Where every scenario begins.
inline constexpr char kStartPage[] = "gateway/start";

#endif  // TOOLS_GATEWAY_SCENARIO_H_
