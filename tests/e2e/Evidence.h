// What a failing test leaves for whoever looks into it.

#ifndef TESTS_E2E_EVIDENCE_H_
#define TESTS_E2E_EVIDENCE_H_

#include <gtest/gtest.h>

#include <functional>
#include <string>

// Calls `keep` in the moment of a test's first failure, with a new folder that is named after the
// test, and says where it is. While it lives; on the test's thread, and with GoogleTest's lock
// held: `keep` expects nothing.
class Evidence : public testing::EmptyTestEventListener {
 public:
  explicit Evidence(std::function<void(const std::string& folder)> keep);
  ~Evidence() override;

  void OnTestPartResult(const testing::TestPartResult& result) override;

 private:
  std::function<void(const std::string&)> keep_;
  std::string folder_;
};

#endif  // TESTS_E2E_EVIDENCE_H_
