// What Chromium's certificate verifier says about hosts. DevTools reports only the worst fault of a
// certificate; Chromium's network log has them all. The log goes through a FIFO, since it holds
// addresses and must not get to the disk.

#ifndef CEF_CHROMIUM_PROCESS_NETLOG_H_
#define CEF_CHROMIUM_PROCESS_NETLOG_H_

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "cef/chromium/process/NetLogParser.h"

namespace engine {

// Reads the log on its own thread for as long as it lives, so that Chromium never waits for a
// reader. It must exist before Chromium starts and be destroyed after Chromium has ended.
class NetLog {
 public:
  // Makes the FIFO in the folder, which must be ours alone (see MakeRunFolder). Null and a reason
  // in *err on failure.
  static std::unique_ptr<NetLog> Start(const std::string& folder, std::string* err);

  // Joins the thread and removes the FIFO.
  ~NetLog();
  NetLog(const NetLog&) = delete;
  NetLog& operator=(const NetLog&) = delete;

  // The value for the switch "log-net-log".
  const std::string& path() const { return path_; }

  // The newest faulty verdict on the host, if `fault` (a bit of cef_cert_status_t; 0 for any) is
  // among its faults; waits for such a one up to `wait`. Nothing if none came. Any thread.
  // Kept for the hosts that were in the log last.
  std::optional<CertVerdict> Fault(const std::string& host, uint32_t fault,
                                   std::chrono::milliseconds wait);

 private:
  NetLog() = default;
  void Drain();
  void Keep(const CertVerdict& verdict);

  std::string path_;
  int fifo_fd_ = -1;
  int stop_fd_ = -1;  // eventfd that ends the thread
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<CertVerdict> faults_;  // one a host, the newest first; guarded by mutex_
  NetLogParser parser_;             // the thread's
  std::thread thread_;
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_NETLOG_H_
