// What the tests of sessions and handler share: the fake framework and ways to put a session into
// it.

#ifndef TESTS_SESSION_SESSIONTEST_H_
#define TESTS_SESSION_SESSIONTEST_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "GUI/cefBrowser/CefBrowserHandler.h"
#include "GUI/cefBrowser/CefEmbBrowserLogin.h"
#include "tests/support/FakeCef.h"

class SessionTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  // Session and handler hold each other, and what a handler leaves is deleted on the IO thread.
  ~SessionTest() override {
    for (const auto& session : started_) session->m_handler = nullptr;
    started_.clear();
    cef.RunTasks(TID_IO);
  }

  // A session of class T with the address and cookie text of a launch request.
  template <class T>
  static CefRefPtr<T> Make(const std::string& url, const std::string& cookie) {
    CefRefPtr<T> session = new T;
    session->SetUrl(url);
    session->SetCookie(cookie);
    return session;
  }

  // Starts the session and returns what it did to the framework, before its browser exists.
  Lines Start(const CefRefPtr<CefEmbBrowserLogin>& session) {
    cef.ClearTrace();
    started_.push_back(session);
    session->OnContextInitialized();
    return cef.Trace();
  }

  FakeCef cef;

 private:
  std::vector<CefRefPtr<CefEmbBrowserLogin>> started_;
};

#endif  // TESTS_SESSION_SESSIONTEST_H_
