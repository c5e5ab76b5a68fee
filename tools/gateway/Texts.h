// What stands in braces in the texts of a scenario.

#ifndef TOOLS_GATEWAY_TEXTS_H_
#define TOOLS_GATEWAY_TEXTS_H_

#include <map>
#include <string>
#include <vector>

#include "tools/gateway/Scenario.h"
#include "tools/gateway/Visit.h"

// The targets of all {address TARGET} in a text.
std::vector<std::string> AddressesIn(const std::string& text);

// A regular expression in which {token} stands for the pattern of one.
std::string TokenPattern(std::string text);

// How a value is written so that it can stand in a text of that kind.
using Encode = std::string (*)(const std::string& value);
std::string AsItIs(const std::string& value);
std::string InAddress(const std::string& value);

// Fills in the texts of one answer: {token}, {n}, {pad N}, {bytes HEX}, {cookie NAME}, {field
// NAME}, {set NAME} and {address TARGET}. Other braces stay.
class Texts {
 public:
  Texts(const Visit& visit, const Scenario& scenario) : visit_(visit), scenario_(scenario) {}

  // `n` is what {n} becomes. Only what is filled in is encoded.
  std::string Fill(const std::string& text, Encode encode = AsItIs, int n = 0) const;
  // The filled-in target as an address of the box, with the scheme and the port of the visit, and
  // with "auto=1" when the visit came with it.
  std::string Address(const std::string& target) const;
  // Makes the value of a Set-Cookie text known to {set NAME}.
  void Remember(const std::string& set_cookie);

 private:
  std::string Value(const std::string& word, const std::string& argument, bool* known) const;

  const Visit& visit_;
  const Scenario& scenario_;
  std::map<std::string, std::string> set_;
};

#endif  // TOOLS_GATEWAY_TEXTS_H_
