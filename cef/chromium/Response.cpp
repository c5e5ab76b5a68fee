#include "cef/chromium/Response.h"

namespace engine {

cef_errorcode_t Response::GetError() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.error;
}

void Response::SetError(cef_errorcode_t error) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.error = error;
}

int Response::GetStatus() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.status;
}

void Response::SetStatus(int status) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.status = status;
}

CefString Response::GetStatusText() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.status_text;
}

void Response::SetStatusText(const CefString& statusText) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.status_text = statusText;
}

CefString Response::GetMimeType() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.mime_type;
}

void Response::SetMimeType(const CefString& mimeType) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.mime_type = mimeType;
}

CefString Response::GetCharset() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.charset;
}

void Response::SetCharset(const CefString& charset) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.charset = charset;
}

CefString Response::GetURL() {
  std::lock_guard<std::mutex> lock(mutex_);
  return data_.url;
}

void Response::SetURL(const CefString& url) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.url = url;
}

CefString Response::GetHeaderByName(const CefString& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  return HeaderValue(data_.headers, name);
}

void Response::SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) {
  std::lock_guard<std::mutex> lock(mutex_);
  SetHeader(data_.headers, name, value, overwrite);
}

void Response::GetHeaderMap(HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  headerMap = data_.headers;
}

void Response::SetHeaderMap(const HeaderMap& headerMap) {
  std::lock_guard<std::mutex> lock(mutex_);
  data_.headers = headerMap;
}

}  // namespace engine
