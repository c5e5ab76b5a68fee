#include "cef/chromium/cookies/CookieStore.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "cef/chromium/base/IoThread.h"

namespace engine {
namespace {

Cookie ParseCookie(const JsonValue& json) {
  Cookie cookie;
  cookie.name = TextAt(json, "name");
  cookie.value = TextAt(json, "value");
  cookie.domain = TextAt(json, "domain");
  cookie.path = TextAt(json, "path");
  cookie.http_only = FlagAt(json, "httpOnly");
  cookie.secure = FlagAt(json, "secure");
  if (const JsonValue* key = MemberAt(json, "partitionKey")) cookie.partition = JsonText(*key);
  return cookie;
}

// Without a leading dot Chromium takes the domain for the name of a single host. Addresses of IP
// have no hosts below them.
std::string WithDot(const std::string& domain) {
  const bool address = domain.find_first_not_of("0123456789.") == std::string::npos ||
                       domain.find_first_of("[:") != std::string::npos;
  return address || domain[0] == '.' ? domain : "." + domain;
}

std::string ToJson(const std::string& url, const Cookie& cookie) {
  JsonObject json;
  json.Add("name", cookie.name).Add("value", cookie.value);
  // Given as it is, an address of HTTPS would force the cookie to be Secure.
  json.Add("url", cookie.secure ? url : PlantingUrl(url));
  json.Add("secure", cookie.secure).Add("httpOnly", cookie.http_only);
  if (!cookie.domain.empty()) json.Add("domain", WithDot(cookie.domain));
  if (!cookie.path.empty()) json.Add("path", cookie.path);
  return json.str();
}

// The same cookie, long expired: Chromium has no other way to delete one without a page. Its value
// does not matter, but name and value must not both be empty.
std::string Expired(const Cookie& cookie) {
  JsonObject json;
  json.Add("name", cookie.name).Add("value", "expired").Add("path", cookie.path);
  if (!cookie.partition.empty()) json.AddJson("partitionKey", cookie.partition);
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
    joinable_ = nullptr;
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
  connection_.Send(
      "", "Storage.getCookies", {},
      [done = std::move(done)](const JsonValue* result, const std::string&) {
        Cookies cookies;
        const JsonValue* list = result ? MemberAt(*result, "cookies") : nullptr;
        if (list && list->IsArray()) {
          for (const JsonValue& json : list->GetArray()) {
            cookies.push_back(ParseCookie(json));
          }
        }
        std::stable_sort(cookies.begin(), cookies.end(), [](const Cookie& a, const Cookie& b) {
          return a.path.size() > b.path.size();
        });
        done(std::move(cookies));
      },
      DevToolsConnection::kFirstPageLimit);
}

void CookieStore::Store(const std::vector<std::string>& cookies, std::function<void(bool)> done) {
  connection_.Send(
      "", "Storage.setCookies", JsonObject().AddJson("cookies", JsonArray(cookies)),
      [done = std::move(done)](const JsonValue* result, const std::string&) {
        done(result != nullptr);
      },
      DevToolsConnection::kFirstPageLimit);
}

// Chromium takes all of a batch or nothing.
void CookieStore::Erase(const Cookies& cookies, std::function<void(int)> done) {
  if (cookies.empty()) {
    done(0);
    return;
  }
  std::vector<std::string> expired;
  for (const Cookie& cookie : cookies) expired.push_back(Expired(cookie));
  Store(expired, [this, expired, done = std::move(done)](bool stored) {
    if (stored || expired.size() == 1) {
      done(stored ? static_cast<int>(expired.size()) : 0);
      return;
    }
    const auto deleted = std::make_shared<int>(0);
    const auto left = std::make_shared<size_t>(expired.size());
    for (const std::string& one : expired) {
      Store({one}, [deleted, left, done](bool gone) {
        *deleted += gone ? 1 : 0;
        if (--*left == 0) done(*deleted);
      });
    }
  });
}

void CookieStore::Set(const std::string& url, const Cookie& cookie,
                      std::function<void(bool)> done) {
  Enqueue([this, json = ToJson(url, cookie), done = std::move(done)](std::function<void()> next) {
    Store({json}, [done, next](bool stored) {
      done(stored);
      next();
    });
  });
}

void CookieStore::Get(Filter filter, std::function<void(const Cookies&)> done) {
  // Reads that wait one after the other are answered together: a page's parts come in crowds, and
  // after each answer the cookies are read.
  IoThread::Get().PostTask([this, reader = Reader{std::move(filter), std::move(done)}] {
    if (!joinable_) {
      joinable_ = std::make_shared<Readers>();
      queue_.push_back([this, readers = joinable_](const std::function<void()>& next) {
        if (joinable_ == readers) joinable_ = nullptr;
        Read(readers, next);
      });
    }
    joinable_->push_back(reader);
    RunNext();
  });
}

void CookieStore::Read(const std::shared_ptr<Readers>& readers, const std::function<void()>& next) {
  Fetch([readers, next](const Cookies& cookies) {
    for (const Reader& reader : *readers) {
      Cookies passed;
      std::copy_if(cookies.begin(), cookies.end(), std::back_inserter(passed), reader.filter);
      reader.done(passed);
    }
    next();
  });
}

void CookieStore::Delete(Filter filter, std::function<void(int)> done) {
  Enqueue([this, filter = std::move(filter), done = std::move(done)](std::function<void()> next) {
    Fetch([this, filter, done, next](Cookies cookies) {
      const auto drop = [&](const Cookie& cookie) { return !filter(cookie); };
      cookies.erase(std::remove_if(cookies.begin(), cookies.end(), drop), cookies.end());
      Erase(cookies, [done, next](int deleted) {
        done(deleted);
        next();
      });
    });
  });
}

// Also those that cannot be named, having odd bytes in their names.
void CookieStore::DeleteAll(std::function<void(int)> done) {
  Enqueue([this, done = std::move(done)](std::function<void()> next) {
    Fetch([this, done, next](Cookies cookies) {
      connection_.Send(
          "", "Storage.clearCookies", {},
          [done, next, count = static_cast<int>(cookies.size())](const JsonValue* result,
                                                                 const std::string&) {
            done(result ? count : 0);
            next();
          },
          DevToolsConnection::kFirstPageLimit);
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
