// The box as a program: see GatewayBox.h and --help.

#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <optional>
#include <string>

#include "tools/gateway/GatewayBox.h"
#include "tools/gateway/RunCommand.h"
#include "tools/gateway/ScenarioList.h"
#include "tools/gateway/Scenarios.h"
#include "tools/gateway/TapeScenario.h"
#include "tools/tape/TapeFile.h"

namespace {

constexpr char kHelp[] =
    R"(usage: embedded-browser-gateway [OPTION]...
A VPN gateway and an identity provider on loopback, to write and try a caller against.

  --list                    print the scenarios (name, step, what happens) and exit
  --scenario NAME           serve only this one, and print the starter's command for it
  --tape FILE               the same for a run that embedded-browser-start --tape has recorded
  --scenario-file FILE      with --tape: write its scenario to this file, and exit
  --start                   run that command; exit with it, and with its status
  --scenarios DIR           the folder of the scenario files; default: the box's own
  --port N, --https-port N  where to listen; 0 (default): the system chooses
  --certificate KIND        of the HTTPS server: good (default), unknown-authority, wrong-host,
                            expired, wrong-host-unknown-authority
  --certificate-for HOST    only this host has it (gateway, idp, third), the others a good one
  --authority-file FILE     write the certificate of the authority behind good ones (PEM)
  --exit-with-stdin         exit when standard input is closed, too
  --help, --version         print this text, or the version

Prints one line of JSON when it is ready; "/" lists the scenarios. Exits on SIGTERM and SIGINT.
)";

struct Settings {
  GatewayBox::Options box;
  std::string authority_file;
  std::string scenario_file;
  bool exit_with_stdin = false;
  bool list = false;
  bool start = false;
};

std::optional<int> Port(const std::string& text) {
  if (text.empty() || text.size() > 5) return std::nullopt;
  int port = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') return std::nullopt;
    port = port * 10 + (digit - '0');
  }
  return port <= 65535 ? std::optional<int>(port) : std::nullopt;
}

bool Take(const std::string& option, const std::string& value, Settings& settings) {
  if (option == "--port" || option == "--https-port") {
    const std::optional<int> port = Port(value);
    if (port) (option == "--port" ? settings.box.port : settings.box.https_port) = *port;
    return port.has_value();
  }
  if (option == "--certificate") {
    const std::optional<CertificateKind> kind = CertificateKindNamed(value);
    if (kind) settings.box.certificate = *kind;
    return kind.has_value();
  }
  if (option == "--certificate-for") {
    settings.box.certificate_for = value;
    return value == "gateway" || value == "idp" || value == "third";
  }
  const struct {
    const char* option;
    std::string& value;
  } texts[] = {{"--scenario", settings.box.only},
               {"--scenarios", settings.box.scenarios},
               {"--tape", settings.box.tape},
               {"--scenario-file", settings.scenario_file},
               {"--authority-file", settings.authority_file}};
  for (const auto& text : texts) {
    if (option != text.option) continue;
    text.value = value;
    return !value.empty();
  }
  return false;
}

std::optional<Settings> Parse(int argc, char** argv) {
  Settings settings;
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--exit-with-stdin") {
      settings.exit_with_stdin = true;
    } else if (option == "--list") {
      settings.list = true;
    } else if (option == "--start") {
      settings.start = true;
    } else if (i + 1 == argc || !Take(option, argv[++i], settings)) {
      std::fprintf(stderr,
                   "embedded-browser-gateway: %s is unknown, or its value is missing or wrong\n",
                   option.c_str());
      return std::nullopt;
    }
  }
  const bool one = !settings.box.only.empty() || !settings.box.tape.empty();
  const bool to_file = !settings.scenario_file.empty();
  if ((settings.start && !one) || (to_file && settings.box.tape.empty())) {
    std::fprintf(stderr, "embedded-browser-gateway: %s\n",
                 to_file ? "--scenario-file needs --tape" : "--start needs --scenario or --tape");
    return std::nullopt;
  }
  return settings;
}

// Returns when one of the signals has come or, if asked, standard input has been closed.
void WaitForEnd(int signals, bool exit_with_stdin) {
  pollfd watched[] = {{signals, POLLIN, 0}, {exit_with_stdin ? STDIN_FILENO : -1, POLLIN, 0}};
  char ignored[256];
  for (;;) {
    if (poll(watched, 2, -1) < 0) continue;
    if (watched[0].revents) return;
    if (watched[1].revents && read(STDIN_FILENO, ignored, sizeof ignored) <= 0) return;
  }
}

int List(const GatewayBox::Options& options) {
  const std::string text = ListText(ReadScenarios(options.scenarios));
  return std::fputs(text.c_str(), stdout) < 0;
}

int Write(const std::string& text, const std::string& path) {
  std::ofstream file(path);
  if ((file << text).flush()) return 0;
  std::fprintf(stderr, "embedded-browser-gateway: cannot write %s\n", path.c_str());
  return 1;
}

// Listens and serves until it is told to end; returns the exit status.
int Serve(const Settings& settings, int signals) {
  const GatewayBox box(settings.box);
  if (!settings.authority_file.empty()) {
    const int failed = Write(box.authority_pem(), settings.authority_file);
    if (failed) return failed;
  }
  if (!settings.box.only.empty() || !settings.box.tape.empty()) {
    const std::string command =
        StarterCommandLine(box.scenarios().front(), {box.port(), box.https_port()});
    std::fprintf(stderr, "%s\n", command.c_str());
    if (settings.start) return RunCommand(command, signals);
  }
  std::printf("{\"port\":%d,\"https_port\":%d,\"http\":\"%s\",\"https\":\"%s\"}\n", box.port(),
              box.https_port(), box.http_origin().c_str(), box.https_origin().c_str());
  std::fflush(stdout);
  WaitForEnd(signals, settings.exit_with_stdin);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string first = argc == 2 ? argv[1] : "";
  if (first == "--help") return std::fputs(kHelp, stdout) < 0;
  if (first == "--version") {
    return std::puts("embedded-browser-gateway " EB_GATEWAY_VERSION) < 0;
  }
  const std::optional<Settings> settings = Parse(argc, argv);
  if (!settings) return 2;
  // Blocked before any thread begins, so that all threads have them blocked.
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGTERM);
  sigaddset(&ending, SIGINT);
  sigaddset(&ending, SIGCHLD);
  sigprocmask(SIG_BLOCK, &ending, nullptr);
  signal(SIGPIPE, SIG_IGN);
  const int signals = signalfd(-1, &ending, SFD_CLOEXEC);
  try {
    if (settings->list) return List(settings->box);
    if (settings->scenario_file.empty()) return Serve(*settings, signals);
    return Write(ScenarioTextOf(tape::ReadTape(settings->box.tape)), settings->scenario_file);
  } catch (const ScenarioError& error) {
    std::fprintf(stderr, "embedded-browser-gateway: %s\n", error.what());
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "embedded-browser-gateway: %s\n", error.what());
    return 1;
  }
}
