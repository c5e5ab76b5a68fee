// Stands in for libFuzzer where there is no clang: RUNS and a folder of seeds. Runs the target on
// every seed, on what the target itself wants to be run on, and on as many inputs as asked for that
// a fixed random sequence makes of the seeds. An input that fails is left in "failed-input".

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "fuzz/Fuzz.h"

namespace {

constexpr unsigned kLongestRun = 60;  // seconds for one input
constexpr size_t kLongestInput = 4096;

std::string g_input;

void Run(const std::string& input) {
  g_input = input;
  alarm(kLongestRun);
  // A copy that ends where the input does, so that sanitizers see who reads on.
  const std::vector<uint8_t> bytes(input.begin(), input.end());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

void OnFailure(int number) {
  std::ofstream("failed-input", std::ios::binary) << g_input;
  signal(number, SIG_DFL);
  raise(number);
}

std::string Changed(std::string text, const std::vector<std::string>& seeds, std::minstd_rand& r) {
  for (size_t changes = 1 + r() % 6; changes > 0; --changes) {
    const size_t at = r() % (text.size() + 1);
    const std::string& other = seeds[r() % seeds.size()];
    const size_t from = r() % (other.size() + 1);
    switch (r() % 5) {
      case 0:
        text.insert(at, 1, static_cast<char>(r()));
        break;
      case 1:
        if (at < text.size()) text[at] = static_cast<char>(r());
        break;
      case 2:
        text.erase(at, r() % 32);
        break;
      case 3:
        text.insert(at, other.substr(from, r() % 64));
        break;
      default:
        if (at < text.size()) text[at] = static_cast<char>(text[at] ^ 1 << r() % 8);
    }
  }
  text.resize(std::min(text.size(), kLongestInput));
  return text;
}

}  // namespace

int main(int, char** arguments) {
  // Also where the stack is at its end.
  static char stack[1 << 17];
  const stack_t apart = {stack, 0, sizeof stack};
  sigaltstack(&apart, nullptr);
  struct sigaction action = {};
  action.sa_handler = OnFailure;
  action.sa_flags = SA_ONSTACK;
  for (const int number : {SIGABRT, SIGALRM, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
    sigaction(number, &action, nullptr);
  }
  std::vector<std::string> seeds;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[2])) {
    std::ifstream file(entry.path(), std::ios::binary);
    seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  Require(!seeds.empty());
  std::sort(seeds.begin(), seeds.end());
  for (const std::string& seed : seeds) Run(seed);
  if (ForEachCase) ForEachCase(Run);
  std::minstd_rand random(14);
  for (int left = std::atoi(arguments[1]); left > 0; --left) {
    Run(Changed(seeds[random() % seeds.size()], seeds, random));
  }
}
