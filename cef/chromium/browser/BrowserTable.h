// Who is who among browsers, DevTools sessions and frames.

#ifndef CEF_CHROMIUM_BROWSER_BROWSERTABLE_H_
#define CEF_CHROMIUM_BROWSER_BROWSERTABLE_H_

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "include/cef_base.h"

namespace engine {

class Browser;

// Holds a reference to every open browser. Any thread.
class BrowserTable {
 public:
  BrowserTable();
  ~BrowserTable();

  void Add(const CefRefPtr<Browser>& browser);
  // Removes a browser with its sessions and frames; null when there is none.
  CefRefPtr<Browser> Remove(const std::string& target_id);

  // Null when there is none.
  CefRefPtr<Browser> ByTarget(const std::string& target_id) const;
  CefRefPtr<Browser> BySession(const std::string& session) const;
  CefRefPtr<Browser> ByFrame(const std::string& frame_id) const;
  CefRefPtr<Browser> Newest() const;

  // In the order of their creation.
  std::vector<CefRefPtr<Browser>> All() const;
  bool empty() const;

  // A session that speaks for a part of a browser: a frame of another process, a worker.
  void AddSession(const std::string& session, const std::string& target_id);
  void RemoveSession(const std::string& session);

  // Records a frame of the browser that `session` speaks for, or that it has moved there.
  void SetFrame(const std::string& session, const std::string& frame_id);
  void RemoveFrame(const std::string& frame_id);
  // The session that last spoke for the frame; "" for an unknown frame.
  std::string SessionOfFrame(const std::string& frame_id) const;
  // The request that has brought the frame's document; "" when unknown.
  void SetLoader(const std::string& frame_id, const std::string& loader);
  std::string LoaderOfFrame(const std::string& frame_id) const;

 private:
  // The main frame's id is the id of the browser's target.
  struct FrameRecord {
    std::string target_id;  // of its browser
    std::string session;    // that last spoke for the frame
    std::string loader;
  };

  CefRefPtr<Browser> Find(const std::string& target_id) const;  // with mutex_ held

  mutable std::mutex mutex_;
  std::vector<CefRefPtr<Browser>> browsers_;     // guarded by mutex_
  std::map<std::string, std::string> sessions_;  // to target ids; guarded by mutex_
  std::map<std::string, FrameRecord> frames_;    // guarded by mutex_
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BROWSER_BROWSERTABLE_H_
