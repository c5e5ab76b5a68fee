#include "tools/log/Secrets.h"

#include <algorithm>
#include <cctype>

namespace log_reader {

namespace {

using std::string_view;

constexpr size_t kToken = 24;
constexpr string_view kQuotes = "\"'`";
// Punctuation around an address or a value, which is none of its own.
constexpr string_view kClosers = ")]},.=:";

bool IsUpper(unsigned char c) { return std::isupper(c); }
bool IsLower(unsigned char c) { return std::islower(c); }
bool IsDigit(unsigned char c) { return std::isdigit(c); }
bool IsOneOf(unsigned char c, string_view more) {
  return std::isalnum(c) || more.find(static_cast<char>(c)) != more.npos;
}
bool Consists(string_view text, string_view more) {
  return std::all_of(text.begin(), text.end(), [more](char c) { return IsOneOf(c, more); });
}

std::string Hidden(string_view value) {
  return value.empty() ? "" : "<" + std::to_string(value.size()) + " hidden>";
}

// Takes off the front what stands before the first of these characters, and that character, which
// comes back in `mark`.
string_view Take(string_view& text, string_view marks, string_view& mark) {
  const size_t size = std::min(text.find_first_of(marks), text.size());
  const string_view taken = text.substr(0, size);
  mark = text.substr(size, 1);
  text.remove_prefix(size + mark.size());
  return taken;
}

// Takes the punctuation off the end.
string_view TakeClosers(string_view& text) {
  const size_t size = text.find_last_not_of(kClosers) + 1;
  const string_view closers = text.substr(size);
  text = text.substr(0, size);
  return closers;
}

// Words change seldom between small and capital letters and have few digits; what is random does
// not.
bool LooksRandom(string_view text) {
  if (text.size() < kToken) return false;
  size_t digits = 0, changes = 0, run = 0, longest = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool change = i > 0 && IsUpper(text[i]) && IsLower(text[i - 1]);
    digits += IsDigit(text[i]);
    changes += change;
    run = change || !IsOneOf(text[i], "") ? 0 : run + 1;
    longest = std::max(longest, run);
  }
  return digits > 2 || longest >= kToken || (changes + digits) * 5 > text.size();
}

// Hides what looks random among other text.
std::string Tokens(string_view text) {
  std::string shown;
  while (!text.empty()) {
    const auto end =
        std::find_if_not(text.begin(), text.end(), [](char c) { return IsOneOf(c, "-_+%/=~"); });
    string_view run = text.substr(0, static_cast<size_t>(end - text.begin()));
    // A path is more than its last part, a text in base 64 is not.
    const bool is_path = !run.empty() && run[0] == '/';
    std::string parts;
    bool any = false;
    for (string_view rest = run, slash; !rest.empty();) {
      const string_view part = Take(rest, "/", slash);
      const bool random = LooksRandom(part);
      any = any || random;
      parts += random ? Hidden(part) : std::string(part);
      parts += slash;
    }
    shown += any && !is_path ? Hidden(run) : parts;
    text.remove_prefix(run.size());
    if (!text.empty()) shown += text[0];
    text.remove_prefix(std::min<size_t>(1, text.size()));
  }
  return shown;
}

// Both kinds of sign-in have a status cookie; what it says is no secret.
bool IsStatus(string_view name, string_view value) {
  return name.find("EBSTATUS") != name.npos && value.size() <= kToken && Consists(value, "-_,");
}

// LENGTH.MARK, which the log has in place of a value.
bool IsStandIn(string_view value) {
  const size_t dot = std::min(value.find('.'), value.size());
  return dot > 0 && value.size() == dot + 9 && value.find_first_not_of("0123456789") == dot &&
         value.find_first_not_of("0123456789abcdef", dot + 1) == value.npos;
}

std::string Cookies(string_view cookies) {
  std::string shown;
  for (string_view mark; !cookies.empty(); shown += mark) {
    const string_view cookie = Take(cookies, ";", mark);
    const size_t equals = cookie.find('=');
    // A cookie without a name is all value.
    const size_t name = equals == cookie.npos ? cookie.find_first_not_of(' ') : equals + 1;
    const string_view value = cookie.substr(std::min(name, cookie.size()));
    const string_view before = cookie.substr(0, cookie.size() - value.size());
    shown += before;
    shown += IsStatus(before, value) || IsStandIn(value) ? std::string(value) : Hidden(value);
  }
  return shown;
}

// A piece of text that may have the form NAME=VALUE.
std::string Pair(string_view piece) {
  const size_t equals = piece.find('=');
  if (equals == piece.npos) return Tokens(piece);
  string_view value = piece.substr(equals + 1);
  const string_view closers = TakeClosers(value);
  size_t begin = equals;
  while (begin > 0 && IsOneOf(piece[begin - 1], "_-")) --begin;
  const bool is_status = IsStatus(piece.substr(begin, equals - begin), value);
  return Tokens(piece.substr(0, equals)) + "=" + (is_status ? std::string(value) : Hidden(value)) +
         std::string(closers);
}

// A parameter. What has no name is a value; what is encoded in a name may be one.
std::string Parameter(string_view piece) {
  const size_t equals = piece.find('=');
  if (equals == piece.npos) return Hidden(piece);
  const string_view name = piece.substr(0, equals);
  const bool is_name = name.size() < kToken && name.find('%') == name.npos;
  return (is_name ? std::string(name) : Hidden(name)) + "=" + Hidden(piece.substr(equals + 1));
}

// An address behind its host.
std::string Path(string_view path) {
  std::string shown;
  string_view mark;
  string_view rest = Take(path, "?#", mark);
  for (string_view slash; !rest.empty(); shown += slash) {
    string_view part = Take(rest, "/;", slash);
    // Another address may be in it.
    const size_t at = part.rfind('@');
    if (at != part.npos) shown += Hidden(part.substr(0, at)), part.remove_prefix(at);
    shown += part.find('=') != part.npos || !LooksRandom(part) ? Pair(part) : Hidden(part);
  }
  while (!mark.empty()) {
    shown += mark;
    rest = Take(path, mark == "?" ? "#" : "", mark);
    for (string_view between; !rest.empty(); shown += between) {
      shown += Parameter(Take(rest, "&", between));
    }
  }
  return shown;
}

// An address, or what was taken for one.
std::string Address(string_view address) {
  const size_t slashes = address.find("://");
  if (slashes == address.npos || address.find_first_of("?#=;@") < slashes) return Path(address);
  const size_t authority = slashes + 3;
  const size_t end = std::min(address.find_first_of("/?#\\", authority), address.size());
  const size_t at = address.substr(0, end).rfind('@');
  const size_t host = at == address.npos || at < authority ? authority : at + 1;
  const string_view user = address.substr(authority, host - authority);
  const auto behind = std::find_if_not(address.begin() + static_cast<long>(host), address.end(),
                                       [](char c) { return IsOneOf(c, ".:-_[]"); });
  const auto path = static_cast<size_t>(behind - address.begin());
  return std::string(address.substr(0, authority)) +
         (user.empty() ? "" : Hidden(user.substr(0, user.size() - 1)) + "@") +
         std::string(address.substr(host, path - host)) + Path(address.substr(path));
}

// Whether a word names something secret.
bool NamesSecret(string_view word) {
  constexpr string_view kNames[] = {"token",      "secret",       "passw",        "credential",
                                    "assertion",  "samlrequest",  "samlresponse", "sessionid",
                                    "session_id", "authorization"};
  std::string small(word);
  std::transform(small.begin(), small.end(), small.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return std::any_of(std::begin(kNames), std::end(kNames),
                     [&](string_view name) { return small.find(name) != small.npos; });
}

// Text without spaces and quotes.
std::string Word(string_view word) {
  std::string shown;
  const size_t slashes = word.find("://");
  if (slashes != word.npos && word.find('=') > slashes) {
    size_t begin = slashes;
    while (begin > 0 && IsOneOf(word[begin - 1], "+.-")) --begin;
    string_view address = word.substr(begin);
    const string_view closers = TakeClosers(address);
    return Tokens(word.substr(0, begin)) + Address(address) + std::string(closers);
  }
  if (word[0] == '/') {
    const string_view closers = TakeClosers(word);
    return Path(word) + std::string(closers);
  }
  const size_t colon = std::min(word.find(':'), word.size());
  const size_t data = word.find("data:");
  const size_t comma = word.find(',', std::min(data, word.size()));
  if (data != word.npos && comma != word.npos) {
    return std::string(word.substr(0, comma + 1)) + Hidden(word.substr(comma + 1));
  }
  if (NamesSecret(word.substr(0, colon)) && colon + 1 < word.size()) {
    return std::string(word.substr(0, colon + 1)) + Hidden(word.substr(colon + 1));
  }
  for (string_view mark; !word.empty(); shown += mark) shown += Pair(Take(word, ";&?", mark));
  return shown;
}

// What nobody has promised the form of: pages' titles and console messages among it.
std::string Text(string_view text) {
  constexpr string_view kBetween(" \t\r\n\v\f\0\"'`", 10);
  std::string shown;
  bool named = false;    // the word before names something secret
  bool follows = false;  // and this is it
  while (!text.empty()) {
    if (kQuotes.find(text[0]) != kQuotes.npos && follows) {
      const size_t end = std::min(text.find(text[0], 1), text.size());
      shown += text[0] + Hidden(text.substr(1, end - 1));
      text.remove_prefix(end);
      follows = false;
    }
    string_view mark;
    string_view word = Take(text, kBetween, mark);
    if (!word.empty()) {
      const bool assigns = word[0] == ':' || word[0] == '=';
      if (named && assigns && word.size() > 1) {
        shown += word.substr(0, 1);
        word.remove_prefix(1);
        follows = true;
      }
      const bool scheme = word == "Bearer" || word == "Basic";
      shown += follows && !scheme ? Hidden(word) : Word(word);
      named = (word.find('/') == word.npos && NamesSecret(word)) || (named && assigns);
      follows = scheme || (!follows && named && (word.back() == ':' || word.back() == '='));
      // NAME="VALUE"
      if (word.size() > 1 && word.back() == '=' && !mark.empty() &&
          kQuotes.find(mark[0]) != kQuotes.npos) {
        follows = true;
      }
    }
    if (!mark.empty() && kQuotes.find(mark[0]) != kQuotes.npos && follows) {
      text = {mark.data(), text.size() + 1};
    } else {
      shown += mark;
    }
  }
  return shown;
}

std::string Host(string_view host) {
  return Consists(host, ".:-_[]") ? std::string(host) : Text(host);
}

std::string Name(string_view name) {
  return name.find_first_of(" =;") == name.npos ? std::string(name) : Text(name);
}

// Where the client's programs write what is known to be an address, a host or cookies: in messages
// that begin with `start`, from behind `before` to the last `after`, or to the end.
constexpr struct {
  string_view start, before, after;
  std::string (*show)(string_view);
} kKnown[] = {
    {"eb_saml_stateid", " = ", " eb_saml_status = ", Cookies},
    {"CefSAMLLogin::ProcessCookieResponse", " cookie:[", "] kSamlAuthCookieStateID:[", Cookies},
    {"CefSAMLLogin::ProcessCookieResponse", " eb_stateid:[", "]", Cookies},
    {"CefSAMLLogin::ProcessCookieResponse", " urlDomain:[", "] m_url_domain:[", Host},
    {"CefSAMLLogin::ProcessCookieResponse", " m_url_domain:[", "]", Host},
    {"CefSAMLLogin::OnContextInitialized", " url domain to: [", "]", Host},
    {"CefSAMLLogin::OnContextInitialized", " all cookies (", ")", Address},
    {"ProcessCookieResponse()", " IdP(", ") cookies of size", Host},
    {"ProcessCookieResponse(", " cookies [", "]", Cookies},
    {"Setting _urlIdpHost", " to ", "", Host},
    {"inside Visitor::Visit", " name=[", "] value.size():", Name},
    {"Visit(", "(", ") = ", Name},
    {"Visit(", " = ", " /", Host},
    {"manager->SetCookie", " url:", ") ret = ", Address},
    {"type = ", " url ", "", Address},
};

}  // namespace

std::string HideSecrets(string_view message) {
  std::string shown;
  string_view rest = message;
  for (const auto& known : kKnown) {
    if (message.substr(0, known.start.size()) != known.start) continue;
    const size_t at = rest.find(known.before);
    if (at == rest.npos) continue;
    shown += Text(rest.substr(0, at)) + std::string(known.before);
    rest.remove_prefix(at + known.before.size());
    const size_t end = known.after.empty() ? rest.npos : rest.rfind(known.after);
    shown += known.show(rest.substr(0, end));
    rest.remove_prefix(std::min(end, rest.size()));
  }
  return shown + Text(rest);
}

Record WithoutSecrets(Record record) {
  const std::string hidden = HideSecrets(record.message);
  record.text.replace(record.text.size() - record.message.size(), std::string::npos, hidden);
  record.message = hidden;
  return record;
}

}  // namespace log_reader
