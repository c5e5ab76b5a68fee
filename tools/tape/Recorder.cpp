#include "tools/tape/Recorder.h"

#include <pthread.h>
#include <signal.h>

#include <filesystem>
#include <stdexcept>

#include "tools/tape/HookRecords.h"

namespace tape {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks(100);
constexpr size_t kMostRecords = 50000;

}  // namespace

Recorder::Recorder()
    : level_(kHookLevel), begin_(std::chrono::system_clock::now()), log_(log_reader::FindLog()) {
  // What is there already is not of this run.
  const std::string problem = log_.Read([](const log_reader::Record&) {});
  std::error_code none;
  if (!problem.empty() && std::filesystem::exists(log_reader::FindLog(), none)) {
    throw std::runtime_error(problem);
  }
  sigset_t all, former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  thread_ = std::thread([this] { Follow(); });
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

Recorder::~Recorder() {
  ending_ = true;
  if (thread_.joinable()) thread_.join();
}

void Recorder::Read() {
  problem_ = log_.Read([this](const log_reader::Record& record) {
    if (!IsOfHooks(record)) return;
    full_ = records_.size() == kMostRecords;
    if (!full_) records_.push_back(record);
  });
}

void Recorder::Follow() {
  while (!ending_) {
    Read();
    std::this_thread::sleep_for(kBetweenLooks);
  }
}

std::vector<log_reader::Record> Recorder::Finish(std::string& problem) {
  ending_ = true;
  thread_.join();
  Read();
  const auto add = [&problem](const std::string& text) {
    if (!text.empty()) problem += (problem.empty() ? "" : "; ") + text;
  };
  add(problem_);
  if (full_) add("the run was too long for a tape");
  const std::string level = level_.Release();
  if (!level.empty()) add("the log's level was not put back: " + level);
  return std::move(records_);
}

}  // namespace tape
