#include "tools/gateway/Texts.h"

#include <cstdlib>

namespace {

constexpr char kAddress[] = "{address ";
constexpr char kToken[] = "{token}";

// Where the brace that opens at `begin` closes; npos when it does not.
size_t ClosingBrace(const std::string& text, size_t begin) {
  int depth = 0;
  for (size_t at = begin; at < text.size(); ++at) {
    if (text[at] == '{') ++depth;
    if (text[at] == '}' && --depth == 0) return at;
  }
  return std::string::npos;
}

std::string Bytes(const std::string& hexadecimal) {
  std::string bytes;
  for (size_t at = 0; at < hexadecimal.size(); at += 2) {
    bytes += static_cast<char>(std::strtoul(hexadecimal.substr(at, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

}  // namespace

std::vector<std::string> AddressesIn(const std::string& text) {
  std::vector<std::string> targets;
  for (size_t at = 0; (at = text.find(kAddress, at)) != std::string::npos; ++at) {
    const size_t begin = at + sizeof kAddress - 1;
    targets.push_back(text.substr(begin, ClosingBrace(text, at) - begin));
  }
  return targets;
}

std::string TokenPattern(std::string text) {
  for (size_t at; (at = text.find(kToken)) != std::string::npos;) {
    text.replace(at, sizeof kToken - 1, "[0-9a-f]{32}");
  }
  return text;
}

std::string AsItIs(const std::string& value) { return value; }

std::string InAddress(const std::string& value) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : value) {
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       c == '-' || c == '.' || c == '_' || c == '~';
    if (plain) {
      encoded += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      encoded += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return encoded;
}

std::string Texts::Value(const std::string& word, const std::string& argument, bool* known) const {
  *known = true;
  if (word == "token") return RandomToken();
  if (word == "cookie") return visit_.Cookie(argument);
  if (word == "field") return visit_.Parameter(argument);
  if (word == "address") return Address(argument);
  if (word == "pad") return std::string(std::strtoul(argument.c_str(), nullptr, 10), 'x');
  if (word == "bytes") return Bytes(argument);
  if (word == "set") {
    const auto found = set_.find(argument);
    return found == set_.end() ? "" : found->second;
  }
  *known = false;
  return "";
}

std::string Texts::Fill(const std::string& text, Encode encode, int n) const {
  std::string filled;
  for (size_t at = 0; at < text.size();) {
    const size_t end = text[at] == '{' ? ClosingBrace(text, at) : std::string::npos;
    if (end == std::string::npos) {
      filled += text[at++];
      continue;
    }
    const std::string inside = text.substr(at + 1, end - at - 1);
    const size_t space = inside.find(' ');
    bool known = inside == "n";
    std::string value = std::to_string(n);
    if (!known) {
      value = Value(inside.substr(0, space),
                    space == std::string::npos ? "" : inside.substr(space + 1), &known);
    }
    filled += known ? encode(value) : "{";
    at = known ? end + 1 : at + 1;
  }
  return filled;
}

std::string Texts::Address(const std::string& target) const {
  const std::string filled = Fill(target, InAddress);
  const size_t slash = filled.find('/');
  const std::string host = filled.substr(0, slash);
  const auto fault = scenario_.certificates.find(host);
  std::string address =
      visit_.Origin(fault == scenario_.certificates.end() ? host : fault->second + "." + host) +
      "/" + scenario_.name + filled.substr(slash);
  if (visit_.automatic()) {
    address += (filled.find('?') == std::string::npos ? "?" : "&") + std::string("auto=1");
  }
  return address;
}

void Texts::Remember(const std::string& set_cookie) {
  const std::string pair = set_cookie.substr(0, set_cookie.find(';'));
  const size_t equals = pair.find('=');
  if (equals != std::string::npos) set_[pair.substr(0, equals)] = pair.substr(equals + 1);
}
