#include "tests/support/FakeCefBrowser.h"

#include "include/base/cef_bind.h"
#include "include/wrapper/cef_closure_task.h"
#include "tests/support/FakeCef.h"

void FakeFrame::LoadURL(const CefString& address) {
  FakeTrace("LoadURL(id=" + std::to_string(id_) + ", url=" + address.ToString() + ")");
}

CefRefPtr<CefRequestContext> FakeBrowserHost::GetRequestContext() { return browser_->context; }

void FakeBrowserHost::CloseBrowser(bool force_close) {
  FakeTrace("CloseBrowser(id=" + std::to_string(browser_->GetIdentifier()) +
            ", force=" + (force_close ? "true" : "false") + ")");
  FakeCef* fake = FakeCef::Instance();
  if (!fake || !fake->callsBack || closing_) return;
  closing_ = true;
  fake->Post(TID_UI, CefCreateClosureTask(base::Bind(&FakeBrowser::Closed, browser_)));
}

void FakeBrowser::Closed() {
  const CefRefPtr<CefLifeSpanHandler> handler = client->GetLifeSpanHandler();
  if (!handler->DoClose(this)) handler->OnBeforeClose(this);
}

FakeBrowser::FakeBrowser(int id, CefRefPtr<CefClient> client, CefRefPtr<CefRequestContext> context)
    : client(client), context(context), id_(id) {
  host = new FakeBrowserHost(this);
  mainFrame = new FakeFrame(id * 100, true);
}

void FakeWindow::SetTitle(const CefString& title) {
  FakeTrace("SetTitle(" + title.ToString() + ")");
}
