// Stands in for the browser helper in the starter's tests: takes the request from argv[0], stores
// it beside the data folder, writes HELPER_SAYS on standard error, and does what the request's
// "url" has for a host; "cookie" is the text to leave in the segment.

#include <fcntl.h>
#include <rapidjson/document.h>
#include <signal.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

namespace {

void Leave(const std::string& text) {
  const std::string folder =
      std::string(std::getenv("HOME")) + "/Library/Application Support/Corvane Secure/";
  const int id = shmget(ftok(folder.c_str(), 'R'), 4096, IPC_CREAT | 0644);
  void* const memory = shmat(id, nullptr, 0);
  if (memory != reinterpret_cast<void*>(-1)) std::memcpy(memory, text.data(), text.size());
}

void Tell(const std::string& name, const std::string& text) {
  const std::string path = std::string(std::getenv("HOME")) + "/" + name;
  std::ofstream(path + ".new") << text;
  std::rename((path + ".new").c_str(), path.c_str());
}

// Until a signal comes; returns its number.
int Linger() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int number : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&ending, number);
  sigprocmask(SIG_BLOCK, &ending, nullptr);
  Tell("ready", std::to_string(getpid()));
  int number = 0;
  alarm(60);
  sigwait(&ending, &number);
  Tell("signal", std::to_string(number));
  return number;
}

// More than a pipe holds, without a line's end.
void Flood() {
  const std::string dots(200000, '.');
  if (write(STDERR_FILENO, dots.data(), dots.size()) < 0) std::abort();
}

// A process that keeps standard error open after this one's end.
void LeaveChild() {
  const pid_t child = fork();
  if (child != 0) return Tell("child", std::to_string(child));
  alarm(60);
  pause();
  _exit(0);
}

}  // namespace

int main(int, char** argv) {
  Tell("request", argv[0]);
  std::string descriptors;
  for (int fd = 0; fd < 1024; ++fd) {
    if (fcntl(fd, F_GETFD) != -1) descriptors += std::to_string(fd);
  }
  char input[64] = "";
  if (readlink("/proc/self/fd/0", input, sizeof input - 1) < 0) return 254;
  const bool ignored = signal(SIGPIPE, SIG_DFL) == SIG_IGN;
  Tell("inherited", descriptors + input + (ignored ? ", SIGPIPE ignored" : ""));
  rapidjson::Document request;
  if (request.Parse(argv[0]).HasParseError()) return 255;
  std::string behaviour = request["url"].GetString();
  behaviour = behaviour.substr(behaviour.find("://") + 3);
  behaviour.erase(std::min(behaviour.find('/'), behaviour.size()));
  const std::string text = request["cookie"].GetString();
  if (const char* says = std::getenv("HELPER_SAYS")) std::fputs(says, stderr);
  if (behaviour == "linger" || behaviour == "chatty") Linger();
  if (behaviour == "flood" || behaviour == "chatty") Flood();
  if (behaviour == "flood") LeaveChild();
  if (behaviour == "stubborn") {
    for (;;) Linger();
  }
  if (behaviour == "crash") std::abort();
  if (behaviour == "fail") return 255;
  if (!text.empty()) Leave(text);
  return 0;
}
