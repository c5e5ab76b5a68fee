#include "tests/support/FakeCefRequest.h"

#include "tests/support/FakeTrace.h"

FakeRequest::FakeRequest(const CefString& address, const CefString& cookies) : url(address) {
  if (!cookies.empty()) headers.emplace("Cookie", cookies);
}

void FakeRequest::SetFlags(int value) { FakeTrace("SetFlags(" + std::to_string(value) + ")"); }

void FakeRequestCallback::Continue(bool allow) {
  FakeTrace(allow ? "Continue(true)" : "Continue(false)");
}

void FakeRequestCallback::Cancel() { FakeTrace("Cancel()"); }

void FakeSelectClientCertificateCallback::Select(CefRefPtr<CefX509Certificate> cert) {
  FakeTrace(cert.get() ? "Select(certificate)" : "Select(none)");
}
