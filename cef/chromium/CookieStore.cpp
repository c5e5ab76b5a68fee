#include "cef/chromium/CookieStore.h"

#include <algorithm>
#include <utility>

#include "cef/chromium/IoThread.h"

namespace engine {
namespace {

StoredCookie ParseCookie(const JsonValue& json) {
  StoredCookie cookie;
  cookie.name = TextAt(json, "name");
  cookie.value = TextAt(json, "value");
  cookie.domain = TextAt(json, "domain");
  cookie.path = TextAt(json, "path");
  cookie.http_only = FlagAt(json, "httpOnly");
  cookie.secure = FlagAt(json, "secure");
  return cookie;
}

JsonObject SetCookies(const std::vector<std::string>& cookies) {
  return JsonObject().AddJson("cookies", JsonArray(cookies));
}

// Without a leading dot Chromium takes the domain for the name of a single host. Addresses of IP
// have no hosts below them.
std::string WithDot(const std::string& domain) {
  const bool address = domain.find_first_not_of("0123456789.") == std::string::npos ||
                       domain.find_first_of("[:") != std::string::npos;
  return address || domain[0] == '.' ? domain : "." + domain;
}

std::string ToJson(const NewCookie& cookie) {
  JsonObject json;
  json.Add("name", cookie.name).Add("value", cookie.value);
  // Given as it is, an address of HTTPS would force the cookie to be Secure.
  json.Add("url", cookie.secure ? cookie.url : PlantingUrl(cookie.url));
  json.Add("secure", cookie.secure).Add("httpOnly", cookie.http_only);
  if (!cookie.domain.empty()) json.Add("domain", WithDot(cookie.domain));
  if (!cookie.path.empty()) json.Add("path", cookie.path);
  return json.str();
}

// The same cookie, long expired: Chromium has no other way to delete one without a page.
std::string Expired(const StoredCookie& cookie) {
  JsonObject json;
  json.Add("name", cookie.name).Add("value", cookie.value).Add("path", cookie.path);
  json.Add("secure", cookie.secure).Add("httpOnly", cookie.http_only).Add("expires", 1);
  if (!cookie.domain.empty() && cookie.domain[0] == '.') {
    json.Add("domain", cookie.domain);
  } else {
    // Named as a domain, the host would stand for a different cookie.
    json.Add("url", (cookie.secure ? "https://" : "http://") + cookie.domain + "/");
  }
  return json.str();
}

}  // namespace

void CookieStore::Enqueue(Operation operation) {
  IoThread::Get().PostTask([this, operation = std::move(operation)] {
    queue_.push_back(operation);
    RunNext();
  });
}

void CookieStore::RunNext() {
  if (busy_ || queue_.empty()) return;
  busy_ = true;
  const Operation operation = std::move(queue_.front());
  queue_.pop_front();
  operation([this] {
    busy_ = false;
    RunNext();
  });
}

void CookieStore::Fetch(std::function<void(Cookies)> done) {
  connection_.Send("", "Storage.getCookies", {},
                   [done = std::move(done)](const JsonValue* result, const std::string&) {
                     Cookies cookies;
                     const JsonValue* list = result ? MemberAt(*result, "cookies") : nullptr;
                     if (list && list->IsArray()) {
                       for (const JsonValue& json : list->GetArray()) {
                         cookies.push_back(ParseCookie(json));
                       }
                     }
                     std::stable_sort(cookies.begin(), cookies.end(),
                                      [](const StoredCookie& a, const StoredCookie& b) {
                                        return a.path.size() > b.path.size();
                                      });
                     done(std::move(cookies));
                   });
}

void CookieStore::Erase(const Cookies& cookies, std::function<void()> done) {
  if (cookies.empty()) {
    done();
    return;
  }
  std::vector<std::string> expired;
  for (const StoredCookie& cookie : cookies) expired.push_back(Expired(cookie));
  connection_.Send("", "Storage.setCookies", SetCookies(expired),
                   [done = std::move(done)](const JsonValue*, const std::string&) { done(); });
}

void CookieStore::Set(const NewCookie& cookie, std::function<void(bool)> done) {
  Enqueue([this, params = SetCookies({ToJson(cookie)}),
           done = std::move(done)](std::function<void()> next) {
    connection_.Send("", "Storage.setCookies", params,
                     [done, next](const JsonValue* result, const std::string&) {
                       done(result != nullptr);
                       next();
                     });
  });
}

void CookieStore::Get(Filter filter, std::function<void(const Cookies&)> done) {
  Enqueue([this, filter = std::move(filter), done = std::move(done)](std::function<void()> next) {
    Fetch([filter, done, next](Cookies cookies) {
      const auto drop = [&](const StoredCookie& cookie) { return !filter(cookie); };
      cookies.erase(std::remove_if(cookies.begin(), cookies.end(), drop), cookies.end());
      done(cookies);
      next();
    });
  });
}

void CookieStore::Delete(Filter filter, std::function<void(int)> done) {
  Enqueue([this, filter = std::move(filter), done = std::move(done)](std::function<void()> next) {
    Fetch([this, filter, done, next](Cookies cookies) {
      const auto drop = [&](const StoredCookie& cookie) { return !filter(cookie); };
      cookies.erase(std::remove_if(cookies.begin(), cookies.end(), drop), cookies.end());
      Erase(cookies, [done, next, count = static_cast<int>(cookies.size())] {
        done(count);
        next();
      });
    });
  });
}

void CookieStore::WhenSettled(std::function<void()> done) {
  Enqueue([done = std::move(done)](std::function<void()> next) {
    done();
    next();
  });
}

}  // namespace engine
