#include "tools/gateway/Invented.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "tools/tape/StandIns.h"

namespace {

// The server takes addresses of 8 KiB, a scenario's page a name of 1000 characters.
constexpr size_t kLongestPath = 800;
constexpr size_t kLongestSegment = 200;
constexpr size_t kLongestQuery = 6000;

// What may stand in a cookie, an address, an attribute and a scenario's text alike.
std::string Harmless(std::string text) {
  for (char& c : text) {
    const bool plain = std::isalnum(static_cast<unsigned char>(c)) ||
                       std::string_view("-_.~,:/").find(c) != std::string_view::npos;
    if (!plain) c = 'x';
  }
  return text;
}

// The number, written with capital letters, behind as many "x" as fit.
std::string Filled(size_t length, size_t number) {
  std::string text(length, 'x');
  for (size_t at = length; at > 0 && number > 0; number /= 26) {
    text[--at] = static_cast<char>('A' + number % 26);
  }
  return text;
}

std::string Next(std::string& text, char mark) {
  const size_t size = std::min(text.find(mark), text.size());
  const std::string taken = text.substr(0, size);
  text.erase(0, size + 1);
  return taken;
}

}  // namespace

std::string Invented(const std::string& stand_in, size_t longest) {
  const auto read = tape::ReadStandIn(stand_in);
  if (!read) return Harmless(stand_in.substr(0, longest));
  std::string words;
  for (const std::string& word : read->words) words += Harmless(word);
  words.resize(std::min(words.size(), longest));
  const size_t length = std::min(read->length, longest);
  return Filled(length - std::min(length, words.size()), read->number) + words;
}

TapeTarget InventedTarget(const std::string& address) {
  const size_t scheme = address.find("://");
  if (scheme == std::string::npos) throw std::runtime_error(address + " is no address");
  std::string rest = address.substr(scheme + 3);
  const size_t end = std::min(rest.find_first_of("/?"), rest.size());
  TapeTarget target;
  target.host = rest.substr(0, end);
  if (target.host != "gateway" && target.host != "idp") target.host = "third";
  rest.erase(0, end);
  std::string path = Next(rest, '?');
  path.erase(0, 1);
  do {
    target.path += "/" + Invented(Next(path, '/'), kLongestSegment);
  } while (!path.empty() && target.path.size() < kLongestPath - kLongestSegment);
  for (char mark = '?'; !rest.empty() && target.query.size() < kLongestQuery; mark = '&') {
    std::string pair = Next(rest, '&');
    target.query += mark;
    const size_t left = kLongestQuery - std::min(target.query.size(), kLongestQuery);
    if (pair.find('=') != std::string::npos) target.query += Invented(Next(pair, '='), left) + "=";
    target.query += Invented(pair, left);
  }
  return target;
}
