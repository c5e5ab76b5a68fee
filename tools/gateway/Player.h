// Plays the scenarios: finds the page of a request, chooses its answer, sends it.

#ifndef TOOLS_GATEWAY_PLAYER_H_
#define TOOLS_GATEWAY_PLAYER_H_

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "tools/gateway/Scenario.h"
#include "tools/gateway/Visit.h"

// Waits so many milliseconds; false when the box stops meanwhile.
using Delay = std::function<bool(int milliseconds)>;

// All operations may be called by any thread.
class Player {
 public:
  Player(std::vector<Scenario> scenarios, Delay delay)
      : scenarios_(std::move(scenarios)), delay_(std::move(delay)) {}

  const std::vector<Scenario>& scenarios() const { return scenarios_; }

  // Answers the visit: by the page's first answer whose condition holds, with 403 when none does,
  // with 404 when there is no such page.
  void Play(Visit& visit);

  // The requests that no answer was for, each as one line with the reason.
  std::vector<std::string> refusals() const;

 private:
  void Refuse(Visit& visit, const std::string& why);

  const std::vector<Scenario> scenarios_;
  const Delay delay_;
  mutable std::mutex mutex_;
  std::vector<std::string> refusals_;
};

#endif  // TOOLS_GATEWAY_PLAYER_H_
