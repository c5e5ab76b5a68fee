#include "testing/support/FakeCefRequest.h"

#include <strings.h>

#include "testing/support/FakeCef.h"

namespace {

bool SameName(const CefString& a, const CefString& b) {
  return strcasecmp(a.ToString().c_str(), b.ToString().c_str()) == 0;
}

CefString FindHeader(const CefRequest::HeaderMap& headers, const CefString& name) {
  for (const auto& header : headers) {
    if (SameName(header.first, name)) return header.second;
  }
  return CefString();
}

void SetHeader(CefRequest::HeaderMap& headers, const CefString& name, const CefString& value,
               bool overwrite) {
  for (auto header = headers.begin(); overwrite && header != headers.end();) {
    header = SameName(header->first, name) ? headers.erase(header) : std::next(header);
  }
  headers.emplace(name, value);
}

}  // namespace

FakeRequest::FakeRequest(const CefString& address, const CefString& cookies) : url(address) {
  if (!cookies.empty()) headers.emplace("Cookie", cookies);
}

CefString FakeRequest::GetHeaderByName(const CefString& name) { return FindHeader(headers, name); }

void FakeRequest::SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) {
  SetHeader(headers, name, value, overwrite);
}

void FakeRequest::SetFlags(int value) {
  FakeTrace("SetFlags(" + std::to_string(value) + ")");
  flags = value;
}

CefString FakeResponse::GetHeaderByName(const CefString& name) { return FindHeader(headers, name); }

void FakeResponse::SetHeaderByName(const CefString& name, const CefString& value, bool overwrite) {
  SetHeader(headers, name, value, overwrite);
}

void FakeRequestCallback::Continue(bool allow) {
  FakeTrace(allow ? "Continue(true)" : "Continue(false)");
}

void FakeRequestCallback::Cancel() { FakeTrace("Cancel()"); }

void FakeSelectClientCertificateCallback::Select(CefRefPtr<CefX509Certificate> cert) {
  FakeTrace(cert.get() ? "Select(certificate)" : "Select(none)");
}
