#include "tests/support/TrustStore.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "tests/support/Subprocess.h"

namespace {

void CertUtil(std::vector<std::string> arguments, const std::string& input) {
  Subprocess::Command command;
  command.arguments = std::move(arguments);
  command.arguments.insert(command.arguments.begin(), "certutil");
  command.input = input;
  const Subprocess::End end = RunToEnd(command, std::chrono::seconds(30));
  if (end.exit_status != 0) throw std::runtime_error("certutil: " + end.err);
}

}  // namespace

void TrustAuthority(const std::string& home, const std::string& authority_pem) {
  const std::string folder = home + "/.pki/nssdb";
  const std::string database = "sql:" + folder;
  if (!std::filesystem::exists(folder + "/cert9.db")) {
    std::filesystem::create_directories(folder);
    CertUtil({"-N", "-d", database, "--empty-password"}, "");
  }
  CertUtil({"-A", "-d", database, "-n", "test authority", "-t", "C,,", "-a"}, authority_pem);
}
