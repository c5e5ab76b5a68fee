// The folder that holds Chromium's cookies, cache and preferences, and who may use it.

#ifndef CEF_CHROMIUM_PROCESS_PROFILE_H_
#define CEF_CHROMIUM_PROCESS_PROFILE_H_

#include <memory>
#include <string>
#include <utility>

namespace engine {

// What keeps an existing folder from being a profile that we may use.
enum class FolderFault { kNone, kNoFolder, kOtherOwner, kOthersMayWrite, kNotWritable };

// The rule by which Profile::Open accepts a folder: ours, and so is the link by which it is named,
// writable for us and for nobody else. With kNotWritable errno says why.
FolderFault FaultOf(const std::string& folder);

// A profile folder that this process alone uses while the object lives. Two processes that ask for
// the same folder at the same time get one the folder and one a private profile.
class Profile {
 public:
  // The profile at cache_path (absolute), made if missing together with its parents, mode 0700,
  // freed of the locks of a Chromium that has died. A private one instead if cache_path is empty,
  // is in use, is not ours, is writable for others (the temporary folder, for example), cannot be
  // written by us or has no room left. Null and a reason in *err when not even a private one can be
  // made.
  static std::unique_ptr<Profile> Open(const std::string& cache_path, std::string* err);

  // A new profile beside cache_path, or in the temporary folder if that is no place for it. It
  // starts empty and is removed with the object. Those of processes that have died are removed now.
  static std::unique_ptr<Profile> OpenPrivate(const std::string& cache_path, std::string* err);

  // Chromium must have ended before.
  ~Profile();
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  const std::string& dir() const { return dir_; }
  bool is_private() const { return private_; }

 private:
  Profile(std::string dir, bool is_private, int lock_fd)
      : dir_(std::move(dir)), private_(is_private), lock_fd_(lock_fd) {}

  std::string dir_;
  bool private_;
  int lock_fd_;  // the folder itself, locked
};

}  // namespace engine

#endif  // CEF_CHROMIUM_PROCESS_PROFILE_H_
