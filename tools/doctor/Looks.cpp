#include "tools/doctor/Looks.h"

#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cef/chromium/process/Profile.h"

namespace doctor {

namespace fs = std::filesystem;

namespace {

// As /proc/net/tcp writes it.
constexpr char kListening[] = "0A";

// The inode of the socket that listens on the port, by the kernel's table; empty when none does.
std::string ListeningInode(const char* table, int port) {
  std::ifstream file(table);
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::istringstream fields(line);
    std::string number, local, remote, state, queues, timer, retransmits, user, timeout, inode;
    fields >> number >> local >> remote >> state >> queues >> timer >> retransmits >> user >>
        timeout >> inode;
    const size_t colon = local.rfind(':');
    if (state == kListening && colon != std::string::npos &&
        std::strtol(local.c_str() + colon + 1, nullptr, 16) == port) {
      return inode;
    }
  }
  return {};
}

bool Holds(const fs::path& process, const std::string& descriptor) {
  std::error_code error;
  for (fs::directory_iterator it(process / "fd", error), end; !error && it != end;
       it.increment(error)) {
    std::error_code gone;
    if (fs::read_symlink(it->path(), gone) == descriptor) return true;
  }
  return false;
}

}  // namespace

std::string NearestExisting(const std::string& path) {
  fs::path at = path;
  struct stat info;
  while (at.has_relative_path() && stat(at.c_str(), &info) != 0 && errno != EACCES) {
    at = at.parent_path();
  }
  return at;
}

std::string WhyNoFolder(const std::string& path) {
  const std::string existing = NearestExisting(path);
  struct stat info;
  if (stat(existing.c_str(), &info) != 0) return existing + ": " + strerror(errno);
  if (!S_ISDIR(info.st_mode)) return existing + " is not a folder";
  struct stat whole;
  if (stat(path.c_str(), &whole) == 0) return {};
  if (access(existing.c_str(), W_OK | X_OK) == 0) return {};
  return path + " does not exist, and nothing can be created in " + existing + ": " +
         strerror(errno);
}

std::string WhyNotOurs(const std::string& folder) {
  struct stat link, info;
  switch (engine::FaultOf(folder)) {
    case engine::FolderFault::kNone:
      return {};
    case engine::FolderFault::kOtherOwner:
      if (lstat(folder.c_str(), &link) != 0 || stat(folder.c_str(), &info) != 0) break;
      return folder + " belongs to the user " +
             UserName(link.st_uid != geteuid() ? link.st_uid : info.st_uid);
    case engine::FolderFault::kOthersMayWrite:
      return folder + " can be written by others";
    case engine::FolderFault::kNotWritable:
      return folder + " cannot be written: " + strerror(errno);
    case engine::FolderFault::kNoFolder:
      break;
  }
  return folder + " is not a folder";
}

std::string UserName(uid_t user) {
  const passwd* entry = getpwuid(user);
  return entry ? entry->pw_name : "number " + std::to_string(user);
}

bool IsAlive(pid_t process) { return process > 0 && (kill(process, 0) == 0 || errno == EPERM); }

std::string ProcessText(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/comm");
  std::string name;
  std::getline(file, name);
  return (name.empty() ? "a process" : name) + " (process " + std::to_string(process) + ")";
}

std::string ListenerOn(int port) {
  std::string inode = ListeningInode("/proc/net/tcp", port);
  if (inode.empty()) inode = ListeningInode("/proc/net/tcp6", port);
  if (inode.empty()) return {};
  std::error_code error;
  for (fs::directory_iterator it("/proc", error), end; !error && it != end; it.increment(error)) {
    const pid_t process = std::atoi(it->path().filename().c_str());
    if (process > 0 && Holds(it->path(), "socket:[" + inode + "]")) return ProcessText(process);
  }
  return "another user's process";
}

}  // namespace doctor
