// A client of the library: runs one sign-in, ended by Ctrl-C or after a minute.

#include <ebStarter.h>

#include <csignal>
#include <cstdio>

static ebStarter::StopSwitch g_stop;

int main(int argc, char** argv) {
  if (argc != 5) return std::fprintf(stderr, "usage: %s HELPER HOME URL COOKIE\n", argv[0]), 2;
  ebStarter::Settings settings;
  settings.program = argv[1];
  settings.home = argv[2];
  settings.request.url = argv[3];
  settings.request.cookie = argv[4];
  settings.limits.time = std::chrono::minutes(1);
  settings.stop = &g_stop;
  std::signal(SIGINT, [](int number) { g_stop.Stop(number); });

  const ebStarter::Outcome outcome = ebStarter::RunStep(settings);
  std::printf("%s: %s\n", ebStarter::VerdictName(outcome.verdict), outcome.detail.c_str());
  if (outcome.data) std::printf("session: %s\n", outcome.data->post_auth_cookie.c_str());
  return static_cast<int>(outcome.verdict);
}
