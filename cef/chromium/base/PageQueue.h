// What pages make the UI thread do, as far as a page could do it without end: console lines, titles
// and failed loads.

#ifndef CEF_CHROMIUM_BASE_PAGEQUEUE_H_
#define CEF_CHROMIUM_BASE_PAGEQUEUE_H_

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "cef/chromium/base/TaskQueue.h"

namespace engine {

// The longest text of a page that is kept for the client.
inline constexpr size_t kLongestPageText = 8 * 1024;
// The longest address that is; one that is sent to a server is left whole.
inline constexpr size_t kLongestPageAddress = 64 * 1024;

// The text, cut between two characters to at most `most` bytes of UTF-8.
std::string Cut(std::string text, size_t most = kLongestPageText);

// A queue of such work, in order and of bounded length. Only a handful of it stands in the message
// loop's own queue at any time, so that what ends the run never waits behind it. Any thread.
class PageQueue : public std::enable_shared_from_this<PageQueue> {
 public:
  // `left_out`, if any, is told on the UI thread how much was turned away, once there is room.
  explicit PageQueue(size_t limit, std::function<void(size_t count)> left_out = nullptr);

  // Whether there is room for one more; counts what is turned away if there is none.
  bool HasRoom();
  // Runs the task on the UI thread, later; without room it is dropped.
  void Post(Task task);

 private:
  bool HasRoomLocked();
  void RunSome();

  const size_t limit_;
  const std::function<void(size_t)> left_out_;

  std::mutex mutex_;
  std::deque<Task> tasks_;    // guarded by mutex_
  size_t turned_away_ = 0;    // guarded by mutex_
  bool in_the_loop_ = false;  // guarded by mutex_
};

}  // namespace engine

#endif  // CEF_CHROMIUM_BASE_PAGEQUEUE_H_
