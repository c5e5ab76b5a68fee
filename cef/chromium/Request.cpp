#include "cef/chromium/Request.h"

namespace engine {

CefString Request::GetURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.url;
}

void Request::SetURL(const CefString& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!url.empty()) data_.url = url.ToString();
}

CefString Request::GetMethod() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.method;
}

void Request::SetMethod(const CefString& method) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.method = method.ToString();
}

void Request::SetReferrer(const CefString& referrer_url, ReferrerPolicy policy) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.referrer = referrer_url.ToString();
  data_.referrer_policy = policy;
}

CefString Request::GetReferrerURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.referrer;
}

CefRequest::ReferrerPolicy Request::GetReferrerPolicy() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.referrer_policy;
}

void Request::GetHeaderMap(HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  headerMap = data_.headers;
}

void Request::SetHeaderMap(const HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.headers = headerMap;
}

CefString Request::GetHeaderByName(const CefString& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  return HeaderValue(data_.headers, name);
}

void Request::SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) {
  std::lock_guard<std::mutex> lock(mutex_);
  SetHeader(data_.headers, name, value, overwrite);
}

int Request::GetFlags() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.flags;
}

void Request::SetFlags(int flags) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.flags = flags;
}

CefString Request::GetFirstPartyForCookies() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.first_party;
}

void Request::SetFirstPartyForCookies(const CefString& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.first_party = url.ToString();
}

CefRequest::ResourceType Request::GetResourceType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.resource_type;
}

CefRequest::TransitionType Request::GetTransitionType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.transition_type;
}

uint64 Request::GetIdentifier() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.identifier;
}

}  // namespace engine
