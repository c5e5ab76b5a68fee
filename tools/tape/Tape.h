// A flow tape: what the two hooks were given and answered in one run, with stand-ins for whatever
// could open something or tell who was where. docs/GATEWAY.md explains every member.

#ifndef TOOLS_TAPE_TAPE_H_
#define TOOLS_TAPE_TAPE_H_

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tape {

// Name and value; a value is a stand-in, except that status cookies show theirs.
using Cookies = std::vector<std::pair<std::string, std::string>>;

enum class Hook { kCheckIfCompleted, kProcessCookieResponse };

struct Entry {
  Hook hook = Hook::kCheckIfCompleted;
  bool part = false;    // of a page, such as a picture; else a page or a frame
  std::string address;  // with stand-ins
  Cookies cookies;      // kProcessCookieResponse: what the request carried
  int status = 0;       // of the answer, or of the redirect that followed; 0: not known
  bool answer = false;  // true: the step has ended here
  bool cut = false;     // the log had no room for all of it
  int64_t at_ms = 0;    // since the run began
};

// What the starter reported. Texts by their length only.
struct Result {
  std::string verdict;
  std::string reason;
  int post_auth_cookie = 0;
  int idp_cookies = 0;
  int logout_url = 0;
  int slo_state = 0;
};

struct Tape {
  std::string step;        // "saml-login", "custom" or "saml-logout"
  std::string scheme;      // of the address that the run began with
  Cookies launch_cookies;  // in their order; without values, status cookies apart
  std::vector<Entry> entries;
  Result result;
};

// JSON, one line an entry.
std::string ToJson(const Tape& tape);

// Throws std::runtime_error saying what is wrong and where. The text may come from anybody.
Tape FromJson(const std::string& text);

}  // namespace tape

#endif  // TOOLS_TAPE_TAPE_H_
