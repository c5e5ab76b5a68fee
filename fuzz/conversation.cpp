// Whole conversations: the input plays Chromium, the client and both threads' luck against the real
// framework. Messages come in any order, twice, never, cut, and with any field missing or wrong.
//
// An input is a text of operations, a letter and what it needs: A event, C reply, D time, E client,
// F odds and ends, G how the client answers. See Play().

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>

#include <deque>
#include <iterator>
#include <memory>
#include <set>
#include <vector>

#include "cef/chromium/Engine.h"
#include "cef/chromium/base/IoThread.h"
#include "cef/chromium/base/MessageLoop.h"
#include "cef/chromium/devtools/DevToolsCalls.h"
#include "fuzz/Events.h"
#include "fuzz/Fuzz.h"
#include "fuzz/StandIns.h"

namespace {

constexpr char kCookies[] =
    R"({"cookies":[{"name":"a","value":"1","domain":"bad.test","path":"/","secure":true},)"
    R"({"name":"b","value":"2","domain":".bad.test","path":"/in","httpOnly":true,)"
    R"("partitionKey":{"topLevelSite":"https://x.test"}}]})";

// Browsers hold one; so it tells whether they are all gone.
struct Context : CefRequestContext {
  Context() { ++alive; }
  ~Context() override { --alive; }
  CefRefPtr<CefCookieManager> GetCookieManager(CefRefPtr<CefCompletionCallback>) override {
    return nullptr;
  }
  void CloseAllConnections(CefRefPtr<CefCompletionCallback>) override {}

  static inline int alive = 0;
  IMPLEMENT_REFCOUNTING(Context);
};

using BrowserRef = CefRefPtr<CefBrowser>;
using FrameRef = CefRefPtr<CefFrame>;
using RequestRef = CefRefPtr<CefRequest>;
using CallbackRef = CefRefPtr<CefRequestCallback>;

// Answers as the bits of `ways` say, and requires that it is asked in order: of a browser on the UI
// thread, after its first word and before its last.
struct Client : CefClient,
                CefLifeSpanHandler,
                CefLoadHandler,
                CefDisplayHandler,
                CefRequestHandler,
                CefResourceRequestHandler,
                CefCookieVisitor {
  CefRefPtr<CefDisplayHandler> GetDisplayHandler() override { return this; }
  CefRefPtr<CefLifeSpanHandler> GetLifeSpanHandler() override { return this; }
  CefRefPtr<CefLoadHandler> GetLoadHandler() override { return this; }
  CefRefPtr<CefRequestHandler> GetRequestHandler() override { return this; }

  std::vector<BrowserRef>::iterator Find(const BrowserRef& browser) {
    Require(engine::MessageLoop::Get().OnUiThread());
    const auto is_it = [&](const BrowserRef& other) { return other->IsSame(browser); };
    return std::find_if(open.begin(), open.end(), is_it);
  }
  void Check(const BrowserRef& browser) { Require(Find(browser) != open.end()); }

  void OnAfterCreated(BrowserRef browser) override {
    Require(Find(browser) == open.end() && ever.insert(browser->GetIdentifier()).second);
    open.push_back(browser);
  }
  bool DoClose(BrowserRef browser) override {
    Check(browser);
    return (ways & 64) != 0;
  }
  void OnBeforeClose(BrowserRef browser) override {
    Check(browser);
    open.erase(Find(browser));
  }
  void OnLoadError(BrowserRef browser, FrameRef frame, ErrorCode, const CefString&,
                   const CefString& url) override {
    Check(browser);
    Require(!url.empty());
    if (ways & 128) frame->LoadURL("data:text/html;base64,PGI+");
  }
  void OnTitleChange(BrowserRef browser, const CefString&) override { Check(browser); }
  bool OnConsoleMessage(BrowserRef browser, cef_log_severity_t, const CefString&, const CefString&,
                        int) override {
    Check(browser);
    return true;
  }
  CefRefPtr<CefResourceRequestHandler> GetResourceRequestHandler(BrowserRef, FrameRef, RequestRef,
                                                                 bool, bool, const CefString&,
                                                                 bool&) override {
    Require(engine::IoThread::Get().OnIoThread());
    return this;
  }
  ReturnValue OnBeforeResourceLoad(BrowserRef, FrameRef, RequestRef, CallbackRef held) override {
    if ((ways & 3) == 3) callbacks.push_back(held);
    return (ways & 3) == 3 ? RV_CONTINUE_ASYNC : (ways & 3) == 2 ? RV_CANCEL : RV_CONTINUE;
  }
  bool OnResourceResponse(BrowserRef browser, FrameRef, RequestRef,
                          CefRefPtr<CefResponse>) override {
    if (ways & 4) browser->GetHost()->CloseBrowser(true);
    return (ways & 4) != 0;
  }
  bool OnCertificateError(BrowserRef browser, cef_errorcode_t, const CefString&,
                          CefRefPtr<CefSSLInfo>, CallbackRef held) override {
    Check(browser);
    if ((ways & 24) == 0) held->Continue(true);
    if ((ways & 24) == 8) callbacks.push_back(held);
    if ((ways & 24) == 16) browser->GetHost()->CloseBrowser(true);
    return (ways & 24) < 16;
  }
  bool Visit(const CefCookie&, int, int, bool& remove) override {
    remove = (ways & 32) != 0;
    return true;
  }

  std::vector<BrowserRef> open;
  std::set<int> ever;
  std::deque<CallbackRef> callbacks;
  int ways = 0;
  IMPLEMENT_REFCOUNTING(Client);
};

int g_flood = 64;  // how many messages an input may multiply, and four times their length

const rlimit g_stack = {kStack, kStack};
const int g_stack_is_set = setrlimit(RLIMIT_STACK, &g_stack);

}  // namespace

namespace engine {

class Conversation {
 public:
  explicit Conversation(std::string input) : input_(std::move(input)) {
    Require(pipe(commands_) == 0 && pipe(events_) == 0);
    for (const int fd : {commands_[0], events_[1]}) fcntl(fd, F_SETFL, O_NONBLOCK);
    standins::UsePipe(commands_[1], events_[0]);
    // Chromium's other way to open a window is a socket.
    const auto open = [this](const std::string& url, std::string*) {
      return engine_->OpenByTarget(url);
    };
    engine_->factory_.SetUp({open}, [] {});
    Require(engine_->Initialize(CefSettings(), nullptr));
    Order();
    standins::Settle();
  }

  // Once Chromium has gone and all time limits have passed, nothing goes on and nothing is left.
  ~Conversation() {
    client_->ways = 0;
    for (const int fd : {commands_[0], events_[1]}) close(fd);
    Rest();
    client_->callbacks.clear();
    Rest();
    Require(client_->open.empty() && engine_->table_.empty());
    Require(Context::alive == 0 && standins::Holds() == 0);
    engine_->Shutdown();
    engine_.reset();
    standins::Clear();
    for (const int fd : {commands_[1], events_[0]}) close(fd);
  }

  void Play() {
    static constexpr void (Conversation::*kOperations[])(int) = {
        &Conversation::Event, &Conversation::Event, &Conversation::Event,  &Conversation::Reply,
        &Conversation::Pass,  &Conversation::Act,   &Conversation::Oddity, &Conversation::Ways};
    const size_t before = Heap();
    while (at_ < input_.size()) {
      const int operation = Byte();
      const int what = Byte();
      (this->*kOperations[operation & 7])(what);
      if ((operation & 8) == 0) standins::Settle();
      if ((operation & 24) == 8) standins::RunIo();
      ReadCommands();
    }
    // However much Chromium says, little of it is kept.
    Require(Heap() < before + (32 << 20));
  }

 private:
  static size_t Heap() { return mallinfo2().uordblks + mallinfo2().hblkhd; }
  int Byte() { return at_ < input_.size() ? static_cast<unsigned char>(input_[at_++]) : 0; }

  void Event(int kind) {
    kind_ = (static_cast<size_t>(kind) + 3 * std::size(kEvents) - 'A') % std::size(kEvents);
    ids_ = Byte();
    const std::string text = EventText(kind_, ids_, std::to_string((ids_ >> 4) & 7));
    const int how = Byte();
    Write((how & 0xC0) == 0xC0 ? Twisted(text, how & 63, Byte()) : text);
  }

  void Write(std::string message, bool ends = true) {
    last_message_ = message;
    if (ends) message += '\0';
    for (size_t done = 0; done < message.size();) {
      const ssize_t count = write(events_[1], &message[done], message.size() - done);
      done += static_cast<size_t>(std::max<ssize_t>(count, 0));
      if (count <= 0 && (errno != EAGAIN || !standins::RunIo())) return;
    }
  }

  // All commands are whole, known, and numbered in order.
  void ReadCommands() {
    char piece[4096];
    if (deaf_) return;
    for (ssize_t count; (count = read(commands_[0], piece, sizeof piece)) > 0;) {
      unread_.append(piece, static_cast<size_t>(count));
    }
    for (size_t nul; (nul = unread_.find('\0')) != std::string::npos; unread_.erase(0, nul + 1)) {
      rapidjson::Document command;
      command.Parse(unread_.c_str());
      Require(!command.HasParseError() && MemberAt(command, "params")->IsObject());
      Require(NumberAt(command, "id") == ++last_id_);
      const std::string method = TextAt(command, "method");
      const auto is_it = [&](const DevToolsCall& call) { return method == call.method; };
      Require(std::any_of(std::begin(kDevToolsCalls), std::end(kDevToolsCalls), is_it));
      unanswered_.push_back({last_id_, method});
    }
  }

  void Reply(int which) {
    const int how = Byte();
    if (unanswered_.empty()) return;
    const auto found = unanswered_.begin() + which % static_cast<int>(unanswered_.size());
    const std::string id = "{\"id\":" + std::to_string(found->first);
    const std::string result = found->second == "Storage.getCookies" ? kCookies : "{\"a\":1}";
    if ((how & 8) == 0) unanswered_.erase(found);
    const int way = how & 7;
    constexpr const char* kEnds[] = {R"(,"error":{"code":-32000,"message":"invalid URL"}})",
                                     R"(,"error":{"code":-32601,"message":"not found"}})",
                                     ",\"result\":{"};
    const std::string whole = id + ",\"result\":" + result + "}";
    const int twist = way == 1 ? Byte() : 0;
    Write(way == 1             ? Twisted(whole, twist, Byte())
          : way > 1 && way < 5 ? id + kEnds[way - 2]
                               : whole);
  }

  void Pass(int how) {
    constexpr int kTimes[] = {0, 30, 50, 700, 1000, 3000, 20000, 45000};
    if (how & 8) standins::RunUi();
    standins::Advance(kTimes[how & 7]);
  }

  void Ways(int ways) { client_->ways = ways; }
  void Order() { engine_->CreateBrowser({client_, new Context, "https://gw.test/"}); }

  void Act(int what) {
    constexpr const char* kUrls[] = {"https://bad.test/a", "bad.test", "about:blank",
                                     "nonsense:", "data:text/html,x"};
    const std::string url = kUrls[Byte() % std::size(kUrls)];
    const auto cookies = engine_->global_context()->GetCookieManager(nullptr);
    const bool any = !client_->open.empty();
    const BrowserRef browser =
        any ? client_->open[static_cast<size_t>(what >> 4) % client_->open.size()] : nullptr;
    CefCookie cookie;
    CefString(&cookie.name).FromString("n");
    CefString(&cookie.domain).FromString(what & 16 ? ".bad.test" : "");
    switch (what & 7) {
      case 0:
      case 1:
        if (any) browser->GetHost()->CloseBrowser((what & 7) == 0);
        break;
      case 2:
        if (any) browser->GetMainFrame()->LoadURL(url);
        break;
      case 3:
        if (++orders_ < 8) Order();
        break;
      case 4:
        cookies->SetCookie(url, cookie, nullptr);
        break;
      case 5:
        cookies->VisitUrlCookies(url, (what & 16) != 0, client_.get());
        break;
      case 6:
        cookies->DeleteCookies(what & 16 ? url : "", what & 32 ? "a" : "", nullptr);
        break;
      default:
        if (client_->callbacks.empty()) break;
        if (what & 16) client_->callbacks.front()->Continue((what & 32) != 0);
        client_->callbacks.pop_front();
    }
  }

  void Oddity(int what) {
    switch (what & 7) {
      case 0:  // once more
        return Write(last_message_);
      case 1:  // cut
        return Write(last_message_.substr(0, static_cast<size_t>(Byte()) * 2), (what & 8) != 0);
      case 2: {  // anything
        const std::string text = input_.substr(at_, static_cast<size_t>(Byte()));
        at_ = std::min(at_ + text.size(), input_.size());
        return Write(text, (what & 8) == 0);
      }
      case 3:
        return standins::WindowComes(static_cast<uint32_t>(1 + (what >> 3)));
      case 4:
        return standins::WindowGoes(static_cast<uint32_t>(1 + (what >> 3)));
      case 5:  // reads no commands any more
        deaf_ = (what & 8) != 0;
        return;
      case 6:  // the same again and again
        for (; flood_ > 0; --flood_) {
          const size_t text = kEvents[kind_][1] == 'S' ? 0 : static_cast<size_t>(g_flood) / 4;
          Write(EventText(kind_, ids_, std::to_string(flood_) + std::string(text, 'x')));
          standins::Settle();
          ReadCommands();
          unanswered_.clear();
        }
        return;
      default:
        close(std::exchange(events_[1], -1));
    }
  }

  static void Rest() {
    standins::Settle();
    for (int i = 0; i < 1000 && standins::UntilNext() >= 0; ++i) {
      standins::Advance(standins::UntilNext());
      standins::Settle();
    }
    Require(standins::UntilNext() < 0);
  }

  const std::string input_;
  size_t at_ = 0;
  std::unique_ptr<Engine> engine_{new Engine};
  const CefRefPtr<Client> client_ = new Client;
  int commands_[2], events_[2];
  std::deque<std::pair<int, std::string>> unanswered_;
  std::string unread_, last_message_;
  int last_id_ = 0;
  bool deaf_ = false;
  int orders_ = 0;
  int flood_ = g_flood;
  size_t kind_ = 0;
  int ids_ = 0;
};

}  // namespace engine

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  engine::Conversation({data, data + size}).Play();
  return 0;
}

// Every event never, twice, cut, and with each of its fields missing or wrong, in the middle of a
// story in which all else is well; and no end of every event.
void ForEachCase(const std::function<void(const std::string&)>& run) {
  const auto event = [](size_t kind) {
    return std::string("A") + static_cast<char>('A' + kind) + (kind == 1 ? 'A' : '@') + '0';
  };
  for (size_t odd = 0; odd < std::size(kEvents); ++odd) {
    std::string before = "C00C00", after;
    for (size_t kind = 0; kind + 1 < std::size(kEvents); ++kind) {
      if (kind != odd) (kind < odd ? before : after) += event(kind) + "C00C00C00D2D1";
    }
    const std::string plain = event(odd);
    for (const char* way : {"", "F0", "F1 ", "F9 "})
      run(before + (*way ? plain : "") + way + after);
    for (char place = 0; !Twisted(EventText(odd, 0, "1"), 0, place).empty(); ++place) {
      for (const char twist : {0, 2, 3, 4, 15}) {
        run(before + plain.substr(0, 3) + static_cast<char>(0xC0 | twist) + place + after);
      }
    }
    if (std::string(kEvents[odd]).find('`') == std::string::npos) continue;
    g_flood = 12000;
    run(before + plain + "F>");
    if (odd == 7) run(before + plain + "F=F>");
    g_flood = 64;
  }
}
