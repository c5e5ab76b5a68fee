#include "cef/chromium/browser/BrowserTable.h"

#include <algorithm>

#include "cef/chromium/browser/Browser.h"

namespace engine {
namespace {

// Of frames, and of sessions, in all: more than Chromium lets pages have. Those beyond are not
// known, as if they came from nowhere.
constexpr size_t kMost = 4096;

}  // namespace

BrowserTable::BrowserTable() = default;
BrowserTable::~BrowserTable() = default;

void BrowserTable::Add(const CefRefPtr<Browser>& browser) {
  std::lock_guard<std::mutex> lock(mutex_);
  browsers_.push_back(browser);
  sessions_[browser->session()] = browser->target_id();
  FrameRecord& main = frames_[browser->target_id()];
  main.target_id = browser->target_id();
  main.session = browser->session();
}

CefRefPtr<Browser> BrowserTable::Remove(const std::string& target_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  const CefRefPtr<Browser> browser = Find(target_id);
  if (!browser.get()) return nullptr;
  browsers_.erase(std::find(browsers_.begin(), browsers_.end(), browser));
  for (auto it = sessions_.begin(); it != sessions_.end();) {
    it = it->second == target_id ? sessions_.erase(it) : std::next(it);
  }
  for (auto it = frames_.begin(); it != frames_.end();) {
    it = it->second.target_id == target_id ? frames_.erase(it) : std::next(it);
  }
  return browser;
}

CefRefPtr<Browser> BrowserTable::Find(const std::string& target_id) const {
  for (const CefRefPtr<Browser>& browser : browsers_) {
    if (browser->target_id() == target_id) return browser;
  }
  return nullptr;
}

CefRefPtr<Browser> BrowserTable::ByTarget(const std::string& target_id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  return Find(target_id);
}

CefRefPtr<Browser> BrowserTable::BySession(const std::string& session) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = sessions_.find(session);
  return found == sessions_.end() ? CefRefPtr<Browser>() : Find(found->second);
}

CefRefPtr<Browser> BrowserTable::ByFrame(const std::string& frame_id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = frames_.find(frame_id);
  return found == frames_.end() ? CefRefPtr<Browser>() : Find(found->second.target_id);
}

CefRefPtr<Browser> BrowserTable::Newest() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return browsers_.empty() ? CefRefPtr<Browser>() : browsers_.back();
}

std::vector<CefRefPtr<Browser>> BrowserTable::All() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return browsers_;
}

bool BrowserTable::empty() const {
  std::lock_guard<std::mutex> lock(mutex_);
  return browsers_.empty();
}

void BrowserTable::AddSession(const std::string& session, const std::string& target_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (sessions_.size() < kMost || sessions_.count(session)) sessions_[session] = target_id;
}

void BrowserTable::RemoveSession(const std::string& session) {
  std::lock_guard<std::mutex> lock(mutex_);
  sessions_.erase(session);
}

void BrowserTable::SetFrame(const std::string& session, const std::string& frame_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  // Events may still come for a browser that has gone.
  const auto owner = sessions_.find(session);
  if (owner == sessions_.end() || frame_id.empty()) return;
  if (frames_.size() >= kMost && frames_.count(frame_id) == 0) return;
  FrameRecord& frame = frames_[frame_id];
  frame.target_id = owner->second;
  frame.session = session;
}

void BrowserTable::RemoveFrame(const std::string& frame_id) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = frames_.find(frame_id);
  // A main frame goes with its browser.
  if (found != frames_.end() && found->second.target_id != frame_id) frames_.erase(found);
}

std::string BrowserTable::SessionOfFrame(const std::string& frame_id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = frames_.find(frame_id);
  return found == frames_.end() ? std::string() : found->second.session;
}

void BrowserTable::SetLoader(const std::string& frame_id, const std::string& loader) {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = frames_.find(frame_id);
  if (found != frames_.end()) found->second.loader = loader;
}

std::string BrowserTable::LoaderOfFrame(const std::string& frame_id) const {
  std::lock_guard<std::mutex> lock(mutex_);
  const auto found = frames_.find(frame_id);
  return found == frames_.end() ? std::string() : found->second.loader;
}

}  // namespace engine
