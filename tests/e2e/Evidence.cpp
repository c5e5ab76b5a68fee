#include "tests/e2e/Evidence.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <utility>

// The test's name is asked for here: while a failure is reported, GoogleTest holds its lock.
Evidence::Evidence(std::function<void(const std::string&)> keep)
    : keep_(std::move(keep)), folder_(EB_EVIDENCE "/") {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(test->test_suite_name()) + "." + test->name();
  std::replace(name.begin(), name.end(), '/', '-');
  folder_ += name;
  testing::UnitTest::GetInstance()->listeners().Append(this);
}

Evidence::~Evidence() { testing::UnitTest::GetInstance()->listeners().Release(this); }

void Evidence::OnTestPartResult(const testing::TestPartResult& result) {
  if (!result.failed() || !keep_) return;
  // What fails after this may have been caused by it.
  const auto keep = std::exchange(keep_, nullptr);
  std::error_code none;
  std::filesystem::remove_all(folder_, none);
  std::filesystem::create_directories(folder_, none);
  keep(folder_);
  std::cout << "picture, logs, and the run explained (explained.txt): " << folder_ << std::endl;
}
