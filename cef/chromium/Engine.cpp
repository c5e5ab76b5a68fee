#include "cef/chromium/Engine.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/base/Say.h"
#include "cef/chromium/browser/DisplayEvents.h"
#include "cef/chromium/browser/FrameEvents.h"
#include "cef/chromium/browser/RequestContext.h"
#include "cef/chromium/browser/TitleText.h"
#include "cef/chromium/process/AppWindow.h"
#include "cef/chromium/process/Settings.h"
#include "platform/IconPixels.h"

namespace engine {
namespace {

// Chromium ends without its display; this is for one that does not notice.
constexpr int64_t kWithoutDisplayMs = 1000;

// Unless it is given, the X libraries put this name together in a buffer that all threads share,
// and several connect at the same time.
void NameAuthorityFile() {
  const char* home = getenv("HOME");
  if (home) setenv("XAUTHORITY", (std::string(home) + "/.Xauthority").c_str(), 0);
}

}  // namespace

Engine& Engine::Get() {
  static Engine* engine = new Engine;
  return *engine;
}

Engine::Engine() { Wire(); }

void Engine::Wire() {
  const auto by_message = [this](const std::string& url, std::string* err) {
    IoThread::Get().PostTask(
        [this, title = FirstTitle(HostToShow(url))] { server_.SetFirstTitle(title); });
    return OpenAppWindow(launch_.profile_dir(), HostToShow(url), err);
  };
  const auto by_target = [this](const std::string& url, std::string*) { return OpenByTarget(url); };
  factory_.SetUp({by_message, by_target}, [this] {
    // Nothing else would end the run.
    if (table_.empty()) MessageLoop::Get().Quit();
  });

  certificates_.SetFaultSource(
      [this](const std::string& host, uint32_t fault,
             std::chrono::milliseconds wait) -> std::optional<CertVerdict> {
        const std::shared_ptr<NetLog> log = launch_.net_log();
        if (!log) return std::nullopt;
        return log->Fault(host, fault, wait);
      });
  load_errors_.OnGivenUp([this](const std::string& target, const std::string& url) {
    hooks_.NavigationGone(target, url);
  });
  hooks_.OnDocumentFailing(
      [this](const JsonValue& request, bool begun, std::function<void()> go_on) {
        load_errors_.OnFailing(request, begun, std::move(go_on));
      });
  load_errors_.OnPageFailed(
      [this](const std::string& target, const std::string& url) { windows_.Failed(target, url); });
  targets_.OnGone([this](const CefRefPtr<Browser>& browser) {
    hooks_.BrowserGone(browser->target_id());
    certificates_.BrowserGone(browser->target_id());
    load_errors_.BrowserGone(browser->target_id());
    if (!chromium_ended_ && table_.empty()) SayWhatWasClosed(*browser.get());
  });
  targets_.SetBarrier([this](std::function<void()> done) { cookies_.WhenSettled(done); });

  targets_.Subscribe();
  hooks_.Subscribe();
  certificates_.Subscribe();
  load_errors_.Subscribe();
  SubscribeFrameEvents(connection_, table_,
                       [this](const std::string& session, const JsonValue& frame, Arrival arrival) {
                         // A top frame has its page's id.
                         windows_.Shows(TextAt(frame, "id"), frame, arrival);
                         if (arrival != Arrival::kWritten) load_errors_.OnDocument(session, frame);
                       });
  SubscribeDisplayEvents(connection_, table_, windows_);
  connection_.OnClosed([this] { OnConnectionClosed(); });
  MessageLoop::Get().OnDisplayLost([this] { OnDisplayLost(); });
  MessageLoop::Get().OnSignal([this] { SayWhatIsShown(); });
}

bool Engine::OpenByTarget(const std::string& url) {
  connection_.Send("", "Target.createTarget",
                   JsonObject().Add("url", AppWindowUrl(HostToShow(url))).Add("newWindow", true),
                   [this](const JsonValue* result, const std::string& error) {
                     if (result) return;
                     MessageLoop::Get().PostTask([this, error] { factory_.Note(error); });
                   });
  return true;
}

// A Chromium that never answered is gone as well, but nothing depends on it yet.
void Engine::OnConnectionClosed() {
  if (!running_) return;
  const std::vector<CefRefPtr<Browser>> open = table_.All();
  const bool unasked = std::any_of(open.begin(), open.end(), [](const CefRefPtr<Browser>& browser) {
    return !browser->IsForcedToClose();
  });
  if (unasked) MessageLoop::Get().PostTask([this] { SayWhatEndedIt(); });
  chromium_ended_ = true;
  targets_.AllGone();
  MessageLoop::Get().PostTask([this] { factory_.FailAll(); });
  MessageLoop::Get().BreakAlerts();
}

// Without its display Chromium ends as well, and may be the first to notice.
void Engine::SayWhatEndedIt() {
  if (MessageLoop::Get().DisplayIsLost()) {
    OnDisplayLost();
    return;
  }
  const std::string words = launch_.LastWords();
  Say("Chromium exited on its own" + (words.empty() ? "" : "; it says: " + words));
}

// Of a window that the user has closed.
void Engine::SayWhatWasClosed(const Browser& last) {
  const Shown shown = last.shown();
  if (last.IsForcedToClose() || shown.error.empty() || shown.host.empty()) return;
  Say("closed by the user after " + shown.host + " could not be reached: " + shown.error);
}

// When a signal comes, unless the run has an end already.
void Engine::SayWhatIsShown() {
  const std::vector<CefRefPtr<Browser>> open = table_.All();
  const bool ends = std::any_of(open.begin(), open.end(), [](const CefRefPtr<Browser>& browser) {
    return browser->IsForcedToClose();
  });
  if (ends || open.empty()) return;
  const Shown shown = open.back()->shown();
  if (shown.host.empty()) {
    Say("ended while nothing had come");
  } else if (!shown.error.empty()) {
    Say("ended while " + shown.host + " could not be reached: " + shown.error);
  } else if (shown.loading) {
    Say("ended while " + shown.host + " was being loaded");
  } else {
    Say("ended while the page of " + shown.host + " was shown");
  }
}

void Engine::OnDisplayLost() {
  if (display_lost_) return;
  display_lost_ = true;
  Say("the display has gone");
  MessageLoop::Get().PostDelayedTask([this] { connection_.Drop(); }, kWithoutDisplayMs);
}

bool Engine::Initialize(const CefSettings& settings, CefRefPtr<CefApp> app) {
  if (running_) return true;
  // A client that was built with other headers than these would be misread.
  if (settings.size != sizeof(cef_settings_t)) return false;

  NameAuthorityFile();
  const bool loop = MessageLoop::Get().Init();
  // A Chromium that has gone must not take this process with it.
  signal(SIGPIPE, SIG_IGN);

  command_line_ = new CommandLine;
  ApplySettings(settings, *command_line_.get());
  if (app.get()) app->OnBeforeCommandLineProcessing("", command_line_.get());
  command_line_->Freeze();
  targets_.SetUserAgent(CefString(&settings.user_agent).ToString());

  std::string error = "no descriptors left";
  const std::string cache_path = CefString(&settings.cache_path).ToString();
  const auto enable = [this] {
    targets_.Enable();
    hooks_.Enable();
    certificates_.Enable();
  };
  bool started = false;
  try {
    if (loop) MessageLoop::Get().GuardSignals();
    started = loop && IoThread::Get().Start() &&
              IoThread::Get().PostTask([this] { server_.Start(); }) &&
              launch_.Start(cache_path, command_line_->switches(), enable, &error);
  } catch (const std::system_error& no_thread) {
    error = std::string("no thread can be had: ") + no_thread.what();
  }
  if (!started) {
    Say("Chromium could not be started: " + error);
    return false;
  }
  app_ = app;
  global_context_ = new RequestContext(cookies_, nullptr);
  running_ = true;
  static const int registered = std::atexit([] { Engine::Get().Shutdown(); });
  static_cast<void>(registered);
  // While Chromium is busy with the first window.
  MessageLoop::Get().PostTask([this] {
    IoThread::Get().PostTask([this, icon = IconPixels(EB_ICON_DIR)] { server_.SetIcon(icon); });
  });

  const CefRefPtr<CefBrowserProcessHandler> handler =
      app.get() ? app->GetBrowserProcessHandler() : nullptr;
  if (handler.get()) handler->OnContextInitialized();
  return true;
}

void Engine::Shutdown() {
  if (!running_.exchange(false)) return;
  launch_.End();
}

void Engine::RunMessageLoop() {
  if (running_) {
    MessageLoop::Get().Run();
  } else {
    // One of them may be why the framework does not run.
    MessageLoop::Get().HandOverSignals();
  }
}

bool Engine::CreateBrowser(BrowserOrder order) {
  if (!running_) return false;
  if (!order.context.get()) order.context = global_context_;
  factory_.Order(std::move(order));
  return true;
}

CefRefPtr<CefRequestContext> Engine::ShareContext(CefRefPtr<CefRequestContext> other,
                                                  CefRefPtr<CefRequestContextHandler> handler) {
  if (!other.get() || !handler.get()) return other;
  return new RequestContext(cookies_, handler);
}

}  // namespace engine
