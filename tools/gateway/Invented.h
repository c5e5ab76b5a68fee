// Values that a scenario has in the place of a tape's stand-ins.

#ifndef TOOLS_GATEWAY_INVENTED_H_
#define TOOLS_GATEWAY_INVENTED_H_

#include <string>

// One address of a tape as the box can serve it.
struct TapeTarget {
  std::string host;   // "gateway", "idp" or "third", which stands in for all others, too
  std::string path;   // begins with a slash
  std::string query;  // begins with a question mark, or is empty
};

// A value of the stand-in's length, equal for equal stand-ins, with its words; of other texts, what
// may stand in a cookie or an address. At most `longest` characters.
std::string Invented(const std::string& stand_in, size_t longest = 4000);

// Throws std::runtime_error for what is no address of a tape. What is too long for a server is cut.
TapeTarget InventedTarget(const std::string& address);

#endif  // TOOLS_GATEWAY_INVENTED_H_
