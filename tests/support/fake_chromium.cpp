// Stands in for Chromium where a real one cannot be made to misbehave. FAKE_CHROMIUM says how:
//   silent     it runs, but never answers
//   old        it answers, but does not know Fetch.enable
//   windowless it answers everything, but nothing comes of it
//   forbidden  it ends at once, as under a policy that comes from elsewhere than the machine

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

std::string TextAfter(const std::string& message, const std::string& mark) {
  const size_t begin = message.find(mark);
  if (begin == std::string::npos) return "";
  return message.substr(begin + mark.size(),
                        message.find_first_of(",\"}", begin + mark.size()) - begin - mark.size());
}

std::string Answer(const std::string& command, bool old) {
  const std::string id = "{\"id\":" + TextAfter(command, "\"id\":");
  const std::string method = TextAfter(command, "\"method\":\"");
  if (method == "Browser.getVersion") {
    return id + R"(,"result":{"product":"Chromium/40.0.2214.10"}})";
  }
  if (old && method == "Fetch.enable") {
    return id + R"(,"error":{"code":-32601,"message":"'Fetch.enable' wasn't found"}})";
  }
  return id + R"(,"result":{}})";
}

}  // namespace

int main() {
  const char* const how = getenv("FAKE_CHROMIUM");
  const std::string kind = how ? how : "";
  if (kind == "silent") {
    for (;;) pause();
  }
  if (kind == "forbidden") {
    constexpr char kWords[] = "DevTools remote debugging is disallowed by the system admin.\n";
    return write(STDERR_FILENO, kWords, sizeof kWords - 1) > 0 ? 0 : 1;
  }
  std::string command;
  for (char c; read(3, &c, 1) == 1;) {
    if (c != '\0') {
      command += c;
      continue;
    }
    const std::string answer = Answer(command, kind == "old");
    if (write(4, answer.c_str(), answer.size() + 1) < 0) return 1;
    if (TextAfter(command, "\"method\":\"") == "Browser.close") return 0;
    command.clear();
  }
  return 0;
}
