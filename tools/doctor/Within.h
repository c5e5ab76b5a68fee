// Looking at what may never answer: a folder on a server that is gone, a display that hangs.

#ifndef TOOLS_DOCTOR_WITHIN_H_
#define TOOLS_DOCTOR_WITHIN_H_

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

namespace doctor {

// Runs `look` on a thread of its own. Nothing when it has no answer within the limit: it is then
// left behind until the process ends, and must own whatever it uses.
template <class Look>
auto Within(std::chrono::seconds limit, Look look) -> std::optional<decltype(look())> {
  using Answer = decltype(look());
  const auto task = std::make_shared<std::packaged_task<Answer()>>(std::move(look));
  std::future<Answer> answer = task->get_future();
  std::thread([task] { (*task)(); }).detach();
  if (answer.wait_for(limit) != std::future_status::ready) return std::nullopt;
  return answer.get();
}

}  // namespace doctor

#endif  // TOOLS_DOCTOR_WITHIN_H_
