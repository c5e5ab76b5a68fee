#include "tools/tape/StandIns.h"

#include <algorithm>
#include <charconv>

#include "tools/log/Secrets.h"

namespace tape {

namespace {

using std::string_view;

constexpr string_view kWords[] = {"vora-na/auth/logout.cgi", "welcome.cgi", "SAMLRequest",
                                  "SAMLResponse", "about:blank"};
// Every gateway has them.
constexpr string_view kKnownSegments[] = {"vora-na", "auth", "logout.cgi", "welcome.cgi"};
constexpr size_t kLongestName = 40;
constexpr size_t kLongestStatus = 40;

constexpr char kLower[] = "abcdefghijklmnopqrstuvwxyz";
constexpr char kPlain[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

// Takes off the front what stands before the mark, and the mark.
string_view Take(string_view& text, char mark) {
  const size_t size = std::min(text.find(mark), text.size());
  const string_view taken = text.substr(0, size);
  text.remove_prefix(std::min(size + 1, text.size()));
  return taken;
}

bool IsPlain(string_view text, const std::string& more = "") {
  return text.find_first_not_of(kPlain + more) == text.npos;
}

// ".aspx" of "sign-in.aspx".
std::string Extension(string_view segment) {
  const size_t dot = segment.rfind('.');
  if (dot == segment.npos || dot == 0) return "";
  const string_view letters = segment.substr(dot + 1);
  const bool usual =
      letters.size() > 1 && letters.size() < 5 && letters.find_first_not_of(kLower) == letters.npos;
  return usual ? "(." + std::string(letters) + ")" : "";
}

bool TakeNumber(string_view& text, size_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  return true;
}

// The host and port of an address, in small letters.
std::string AuthorityOf(string_view& address) {
  const size_t scheme = address.find("://");
  if (scheme != address.npos) address.remove_prefix(scheme + 3);
  const size_t size = std::min(address.find_first_of("/?#"), address.size());
  string_view authority = address.substr(0, size);
  address.remove_prefix(size);
  const size_t user = authority.rfind('@');
  if (user != authority.npos) authority.remove_prefix(user + 1);
  std::string lower(authority);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace

std::vector<std::string> DecidingWords(string_view text) {
  std::vector<std::string> found;
  for (const string_view word : kWords) {
    if (text.find(word) != text.npos) found.emplace_back(word);
  }
  return found;
}

std::optional<std::string> StatusOf(string_view name, string_view value) {
  const bool status = name.find("EBSTATUS") != name.npos && value.size() <= kLongestStatus &&
                      IsPlain(value, ",") && !ReadStandIn(value);
  return status ? std::optional<std::string>(value) : std::nullopt;
}

std::optional<StandIn> ReadStandIn(string_view text) {
  StandIn stand_in;
  if (!TakeNumber(text, stand_in.length) || text.substr(0, 1) != ".") return {};
  text.remove_prefix(1);
  if (!TakeNumber(text, stand_in.number)) return {};
  while (!text.empty()) {
    const size_t end = text.find(')');
    if (text[0] != '(' || end == text.npos) return {};
    stand_in.words.emplace_back(text.substr(1, end - 1));
    text.remove_prefix(end + 1);
  }
  return stand_in;
}

StandIns::StandIns(const std::string& begin_address) {
  string_view address = begin_address;
  hosts_[AuthorityOf(address)] = "gateway";
}

std::string StandIns::Host(string_view authority) {
  const std::string key(authority);
  const auto known = hosts_.find(key);
  if (known != hosts_.end()) return known->second;
  const size_t others = hosts_.size();
  return hosts_[key] = others == 1   ? "idp"
                       : others == 2 ? "third"
                                     : "other" + std::to_string(others - 2);
}

std::string StandIns::Number(size_t length, const std::string& key) {
  auto& known = numbers_[length];
  const size_t number = known.emplace(key, known.size() + 1).first->second;
  return std::to_string(length) + "." + std::to_string(number);
}

std::string StandIns::Value(string_view value) {
  std::string shown = Number(value.size(), "value " + std::string(value));
  for (const std::string& word : DecidingWords(value)) shown += "(" + word + ")";
  return shown;
}

std::string StandIns::Name(string_view name) {
  const bool plain = !name.empty() && name.size() <= kLongestName && IsPlain(name, ".") &&
                     !ReadStandIn(name) && log_reader::HideSecrets(name) == name;
  return plain ? std::string(name) : Value(name);
}

std::string StandIns::LoggedCookie(string_view name, string_view value) {
  if (const std::optional<std::string> status = StatusOf(name, value)) return *status;
  const std::optional<StandIn> logged = [value]() -> std::optional<StandIn> {
    size_t length = 0;
    string_view rest = value;
    if (!TakeNumber(rest, length) || rest.substr(0, 1) != ".") return {};
    return StandIn{length, 0, {}};
  }();
  if (!logged) return Value(value);
  return Number(logged->length, "mark " + std::string(value));
}

std::string StandIns::Address(const std::string& address) {
  string_view rest = address;
  const std::string scheme = rest.rfind("https:", 0) == 0 ? "https" : "http";
  std::string shown = scheme + "://" + Host(AuthorityOf(rest));
  rest = rest.substr(0, rest.find('#'));
  string_view path = Take(rest, '?');
  while (!path.empty()) {
    path.remove_prefix(1);  // the slash
    const string_view segment = path.substr(0, path.find('/'));
    path.remove_prefix(segment.size());
    const bool known = std::find(std::begin(kKnownSegments), std::end(kKnownSegments), segment) !=
                       std::end(kKnownSegments);
    shown += '/';
    if (known || segment.empty()) {
      shown += segment;
    } else {
      const std::string value = Value(segment);
      shown += value.back() == ')' ? value : value + Extension(segment);
    }
  }
  for (char mark = '?'; !rest.empty(); mark = '&') {
    string_view pair = Take(rest, '&');
    const bool named = pair.find('=') != pair.npos;
    shown += mark;
    if (named) shown += Name(Take(pair, '=')) + "=";
    if (!pair.empty()) shown += Value(pair);
  }
  return shown;
}

}  // namespace tape
