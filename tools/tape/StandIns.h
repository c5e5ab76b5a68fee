// What a tape has in the place of whatever could open something or tell who was where.
//
// A stand-in is LENGTH.NUMBER: the bytes of the value, and a number that equal values of one tape
// share and other values of that length do not have. It says nothing else of the value. Behind it
// may come, each in parentheses, words that the value holds and that decide how a step goes on.

#ifndef TOOLS_TAPE_STANDINS_H_
#define TOOLS_TAPE_STANDINS_H_

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tape/Tape.h"

namespace tape {

// Makes the stand-ins of one tape.
class StandIns {
 public:
  // The address that the run begins with; its host is "gateway".
  explicit StandIns(const std::string& begin_address);

  // "https://idp/8.1(.aspx)?SAMLRequest=812.1". The first other host is "idp", the second "third",
  // then "other1" and so on; ports are dropped, as are users and fragments.
  std::string Address(const std::string& address);
  // A cookie of which the log shows LENGTH.MARK, or a status.
  std::string LoggedCookie(std::string_view name, std::string_view value);
  // The name of a cookie or a parameter: itself, or a stand-in when it looks like a value.
  std::string Name(std::string_view name);

 private:
  std::string Value(std::string_view value);
  std::string Number(size_t length, const std::string& key);
  std::string Host(std::string_view authority);

  std::map<std::string, std::string> hosts_;
  std::map<size_t, std::map<std::string, size_t>> numbers_;  // by length and value
};

// Of a status cookie: what it says, which is no secret; nothing for other cookies, and for what no
// status says.
std::optional<std::string> StatusOf(std::string_view name, std::string_view value);

// The words that decide how a logout goes on, where they occur in a text.
std::vector<std::string> DecidingWords(std::string_view text);

// A stand-in taken apart.
struct StandIn {
  size_t length = 0;
  size_t number = 0;
  std::vector<std::string> words;
};
std::optional<StandIn> ReadStandIn(std::string_view text);

}  // namespace tape

#endif  // TOOLS_TAPE_STANDINS_H_
