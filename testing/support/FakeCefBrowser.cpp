#include "testing/support/FakeCefBrowser.h"

#include "include/base/cef_bind.h"
#include "testing/support/FakeCef.h"

void FakeFrame::LoadURL(const CefString& address) {
  FakeTrace("LoadURL(id=" + std::to_string(id_) + ", url=" + address.ToString() + ")");
  if (!address.empty()) url = address;
}

void FakeFrame::ExecuteJavaScript(const CefString& code, const CefString&, int) {
  FakeTrace("ExecuteJavaScript(" + code.ToString() + ")");
}

CefRefPtr<CefFrame> FakeFrame::GetParent() {
  if (main_ || !browser_) return nullptr;
  return browser_->GetMainFrame();
}

CefRefPtr<CefBrowser> FakeBrowserHost::GetBrowser() { return browser_; }

CefRefPtr<CefClient> FakeBrowserHost::GetClient() { return browser_->client; }

CefRefPtr<CefRequestContext> FakeBrowserHost::GetRequestContext() { return browser_->context; }

void FakeBrowserHost::CloseBrowser(bool force_close) {
  FakeTrace("CloseBrowser(id=" + std::to_string(browser_->GetIdentifier()) +
            ", force=" + (force_close ? "true" : "false") + ")");
  FakeCef* fake = FakeCef::Instance();
  if (!fake || !fake->closeCallsBack || closing_) return;
  if (fake->currentThread == TID_UI) {
    Close();
  } else {
    fake->Post(TID_UI, base::Bind(&FakeBrowserHost::Close, this));
  }
}

bool FakeBrowserHost::TryCloseBrowser() {
  CloseBrowser(false);
  return closing_;
}

void FakeBrowserHost::Close() {
  if (closing_) return;
  const CefRefPtr<CefClient> client = browser_->client;
  const CefRefPtr<CefLifeSpanHandler> handler =
      client.get() ? client->GetLifeSpanHandler() : nullptr;
  if (handler.get() && handler->DoClose(browser_)) return;
  closing_ = true;
  // Bound with a reference: whoever held the browser may let go of it while it closes.
  FakeCef::Instance()->Post(TID_UI, base::Bind(&FakeBrowser::Closed, browser_));
}

FakeBrowser::FakeBrowser(int id, CefRefPtr<CefClient> client, CefRefPtr<CefRequestContext> context)
    : client(client), context(context), id_(id) {
  host = new FakeBrowserHost(this);
  mainFrame = new FakeFrame(this, id * 100, true);
  frames_.push_back(mainFrame);
}

FakeBrowser::~FakeBrowser() {
  for (const CefRefPtr<FakeFrame>& frame : frames_) frame->Detach();
}

void FakeBrowser::Closed() {
  const CefRefPtr<CefLifeSpanHandler> handler =
      client.get() ? client->GetLifeSpanHandler() : nullptr;
  if (handler.get()) handler->OnBeforeClose(this);
}

CefRefPtr<CefFrame> FakeBrowser::GetFrame(int64 identifier) {
  for (const CefRefPtr<FakeFrame>& frame : frames_) {
    if (frame->GetIdentifier() == identifier) return frame.get();
  }
  return nullptr;
}

void FakeBrowser::GetFrameIdentifiers(std::vector<int64>& identifiers) {
  identifiers.clear();
  for (const CefRefPtr<FakeFrame>& frame : frames_) identifiers.push_back(frame->GetIdentifier());
}

void FakeBrowser::GetFrameNames(std::vector<CefString>& names) {
  names.assign(frames_.size(), CefString());
}

CefRefPtr<FakeFrame> FakeBrowser::AddSubFrame() {
  const int64 id = mainFrame->GetIdentifier() + static_cast<int64>(frames_.size());
  const CefRefPtr<FakeFrame> frame = new FakeFrame(this, id, false);
  frames_.push_back(frame);
  return frame;
}

void FakeWindow::SetTitle(const CefString& title) {
  FakeTrace("SetTitle(" + title.ToString() + ")");
  title_ = title;
}
