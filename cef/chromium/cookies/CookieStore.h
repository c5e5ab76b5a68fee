// The browser's cookie jar, over DevTools.

#ifndef CEF_CHROMIUM_COOKIES_COOKIESTORE_H_
#define CEF_CHROMIUM_COOKIES_COOKIESTORE_H_

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cef/chromium/cookies/CookieRules.h"
#include "cef/chromium/devtools/DevToolsConnection.h"

namespace engine {

// Operations may be ordered from any thread and are carried out one after the other, in the order
// of the calls; their callbacks run on the IO thread. They fail on a closed connection, and when
// Chromium does not answer in time: what waits for them then goes on.
class CookieStore {
 public:
  using Cookies = std::vector<Cookie>;
  using Filter = std::function<bool(const Cookie&)>;

  explicit CookieStore(DevToolsConnection& connection) : connection_(connection) {}

  // Stores a cookie for an address, where CheckSetCookie() finds it storable.
  void Set(const std::string& url, const Cookie& cookie, std::function<void(bool stored)> done);
  // Deletes the cookies that pass; one that Chromium refuses to delete does not keep the others.
  void Delete(Filter filter, std::function<void(int deleted)> done);
  void DeleteAll(std::function<void(int deleted)> done);
  // The cookies that pass; longer paths first, as they are sent.
  void Get(Filter filter, std::function<void(const Cookies&)> done);
  // Calls back when everything ordered before has been carried out.
  void WhenSettled(std::function<void()> done);

 private:
  // Calls its argument when it is finished.
  using Operation = std::function<void(std::function<void()>)>;
  struct Reader {
    Filter filter;
    std::function<void(const Cookies&)> done;
  };
  using Readers = std::vector<Reader>;

  void Read(const std::shared_ptr<Readers>& readers, const std::function<void()>& next);
  void Enqueue(Operation operation);
  void RunNext();
  void Fetch(std::function<void(Cookies)> done);
  void Store(const std::vector<std::string>& cookies, std::function<void(bool stored)> done);
  void Erase(const Cookies& cookies, std::function<void(int deleted)> done);

  DevToolsConnection& connection_;

  // IO thread only.
  std::deque<Operation> queue_;
  std::shared_ptr<Readers> joinable_;  // of the read that is the queue's last; else null
  bool busy_ = false;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_COOKIES_COOKIESTORE_H_
