#include "tests/support/TrustStore.h"

#include <stdexcept>

#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"

void TrustAuthority(const std::string& home, const std::string& authority_pem) {
  const TempDir folder;
  Subprocess::Command command;
  command.arguments = {EB_TRUST_AUTHORITY, folder.write("authority.pem", authority_pem)};
  command.environment = {{"HOME", home}};
  const Subprocess::End end = RunToEnd(command, std::chrono::seconds(30));
  if (end.exit_status != 0) throw std::runtime_error("certutil: " + end.err);
}
