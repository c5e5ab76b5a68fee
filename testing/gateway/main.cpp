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

#include "testing/gateway/GatewayBox.h"

namespace {

constexpr char kHelp[] =
    "gateway: a VPN gateway and an identity provider on loopback, for trying things out.\n"
    "\n"
    "  --port N, --https-port N  where to listen; 0 (default): the system chooses\n"
    "  --certificate KIND        of the HTTPS server: good (default), unknown-authority, "
    "wrong-host,\n"
    "                            expired, wrong-host-unknown-authority\n"
    "  --certificate-for HOST    only this host has it (gateway, idp, third); the others a good "
    "one\n"
    "  --authority-file FILE     write the certificate of the authority behind good ones (PEM)\n"
    "  --exit-with-stdin         end when standard input is closed, too\n"
    "\n"
    "Prints one line of JSON when it is ready. Ends on SIGTERM and SIGINT.\n";

struct Settings {
  GatewayBox::Options box;
  std::string authority_file;
  bool exit_with_stdin = false;
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
  settings.authority_file = value;
  return option == "--authority-file";
}

std::optional<Settings> Parse(int argc, char** argv) {
  Settings settings;
  for (int i = 1; i < argc; ++i) {
    const std::string option = argv[i];
    if (option == "--exit-with-stdin") {
      settings.exit_with_stdin = true;
    } else if (i + 1 == argc || !Take(option, argv[++i], settings)) {
      return std::nullopt;
    }
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

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::string(argv[1]) == "--help") return std::fputs(kHelp, stdout) < 0;
  const std::optional<Settings> settings = Parse(argc, argv);
  if (!settings) {
    std::fputs(kHelp, stderr);
    return 2;
  }
  // Blocked before any thread begins, so that all threads have them blocked.
  sigset_t ending;
  sigemptyset(&ending);
  sigaddset(&ending, SIGTERM);
  sigaddset(&ending, SIGINT);
  sigprocmask(SIG_BLOCK, &ending, nullptr);
  signal(SIGPIPE, SIG_IGN);
  const int signals = signalfd(-1, &ending, SFD_CLOEXEC);
  try {
    const GatewayBox box(settings->box);
    if (!settings->authority_file.empty()) {
      std::ofstream file(settings->authority_file);
      if (!(file << box.authority_pem()).flush()) {
        std::fprintf(stderr, "gateway: cannot write %s\n", settings->authority_file.c_str());
        return 1;
      }
    }
    std::printf("{\"port\":%d,\"https_port\":%d,\"http\":\"%s\",\"https\":\"%s\"}\n", box.port(),
                box.https_port(), box.http_origin().c_str(), box.https_origin().c_str());
    std::fflush(stdout);
    WaitForEnd(signals, settings->exit_with_stdin);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "gateway: %s\n", error.what());
    return 1;
  }
  return 0;
}
