#include "cef/chromium/base/PageQueue.h"

#include <utility>

#include "cef/chromium/base/MessageLoop.h"

namespace engine {
namespace {

constexpr int kAtOnce = 16;

}  // namespace

std::string Cut(std::string text, size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && (text[most] & 0xC0) == 0x80) --most;
  text.resize(most);
  return text;
}

PageQueue::PageQueue(size_t limit, std::function<void(size_t)> left_out)
    : limit_(limit), left_out_(std::move(left_out)) {}

bool PageQueue::HasRoom() {
  std::lock_guard<std::mutex> lock(mutex_);
  return HasRoomLocked();
}

bool PageQueue::HasRoomLocked() {
  if (tasks_.size() < limit_) return true;
  ++turned_away_;
  return false;
}

void PageQueue::Post(Task task) {
  std::lock_guard<std::mutex> lock(mutex_);
  if (!HasRoomLocked()) return;
  tasks_.push_back(std::move(task));
  if (in_the_loop_) return;
  in_the_loop_ = true;
  MessageLoop::Get().PostTask([self = shared_from_this()] { self->RunSome(); });
}

void PageQueue::RunSome() {
  for (int i = 0; i < kAtOnce; ++i) {
    Task task;
    {
      std::lock_guard<std::mutex> lock(mutex_);
      if (tasks_.empty()) break;
      task = std::move(tasks_.front());
      tasks_.pop_front();
    }
    task();
  }
  size_t turned_away = 0;
  {
    std::lock_guard<std::mutex> lock(mutex_);
    in_the_loop_ = !tasks_.empty();
    if (in_the_loop_) {
      // Posted again rather than repeated: what others have posted meanwhile comes first.
      MessageLoop::Get().PostTask([self = shared_from_this()] { self->RunSome(); });
    } else {
      turned_away = std::exchange(turned_away_, 0);
    }
  }
  if (turned_away > 0 && left_out_) left_out_(turned_away);
}

}  // namespace engine
