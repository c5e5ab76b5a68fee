// Who gets which profile folder, and what it holds at the start.

#include "cef/chromium/process/Profile.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "cef/chromium/process/PrivateFolder.h"
#include "tests/support/TempDir.h"

using engine::Profile;

namespace fs = std::filesystem;

namespace {

bool IsOursAlone(const std::string& path) {
  return fs::status(path).permissions() == fs::perms::owner_all;
}

class ProfileTest : public testing::Test {
 protected:
  std::unique_ptr<Profile> Open(const std::string& path) {
    std::string err;
    auto profile = Profile::Open(path, &err);
    EXPECT_TRUE(profile) << err;
    return profile;
  }

  TempDir folder_;
  const std::string path_ = folder_.file("cef");
};

}  // namespace

TEST_F(ProfileTest, MakesTheFolderAndKeepsItsPreferences) {
  const mode_t before = umask(0);
  const std::string path = folder_.file("home/Söme one/cef");
  const std::string preferences = path + "/Default/Preferences";
  {
    auto profile = Open(path);
    EXPECT_EQ(profile->dir(), path);
    EXPECT_TRUE(IsOursAlone(path));
    EXPECT_TRUE(IsOursAlone(folder_.file("home")));
  }
  umask(before);
  for (const char* former : {R"({"mine":1,"profile":{"cookie_controls_mode":1}})", R"({"mine":1)",
                             R"([1])", R"({"mine":1,"profile":"odd"})"}) {
    folder_.write("home/Söme one/cef/Default/Preferences", former);
    EXPECT_FALSE(Open(path)->is_private());
    const std::string now = ReadFile(preferences);
    EXPECT_NE(now.find("\"cookie_controls_mode\":0"), now.npos) << now;
    const bool readable = strchr(former, '{') && strchr(former, '}');
    EXPECT_EQ(now.find("\"mine\":1") != now.npos, readable) << now;
  }
}

TEST_F(ProfileTest, WhatEarlierRunsWroteDownIsRemoved) {
  const std::string written[] = {"cef/Default/Sessions/Tabs_1", "cef/Default/History"};
  for (const std::string& file : written) folder_.write(file, "https://idp.test/page");
  auto profile = Open(path_);
  for (const std::string& file : written) EXPECT_FALSE(fs::exists(folder_.file(file))) << file;
  // Where a folder would be, a file is in the way.
  for (const char* name : {"/Default/Sessions", "/Default/Sessions_Encrypted"}) {
    EXPECT_TRUE(fs::is_regular_file(path_ + name)) << name;
  }
}

// The usage notes alone were 6 KiB more with every run.
TEST_F(ProfileTest, NotesDoNotGrowFromRunToRunAndSignInsStay) {
  for (int run = 0; run < 2; ++run) {
    const std::string gone[] = {"cef/BrowserMetrics/BrowserMetrics-6B0272D0-638.pma",
                                "cef/Default/shared_proto_db/000003.log", "cef/Default/DIPS-wal",
                                "cef/Default/Session Storage/000003.log",
                                "cef/segmentation_platform/ukm_db"};
    const std::string kept[] = {"cef/Default/Cookies",
                                "cef/Default/Local Storage/leveldb/000003.log",
                                "cef/Default/ClientCertificates/000003.log"};
    for (const std::string& file : gone) folder_.write(file, "https://idp.test/page");
    for (const std::string& file : kept) folder_.write(file, "signed in");
    auto profile = Open(path_);
    for (const std::string& file : gone) EXPECT_FALSE(fs::exists(folder_.file(file))) << file;
    for (const std::string& file : kept) EXPECT_TRUE(fs::exists(folder_.file(file))) << file;
  }
}

TEST_F(ProfileTest, UnsafeFoldersAreNotUsed) {
  const std::string path = folder_.file("parent/cef");
  const struct {
    const char* name;
    std::function<void()> prepare;
  } kCases[] = {
      {"writable for all", [&] { chmod(path.c_str(), 01777); }},
      {"a file",
       [&] {
         fs::remove(path);
         folder_.write("parent/cef", "text");
       }},
      {"of another user", [&] { EXPECT_EQ(chown(path.c_str(), 12345, 12345), 0); }},
      {"a link of another user",
       [&] {
         fs::rename(path, folder_.file("elsewhere"));
         fs::create_symlink(folder_.file("elsewhere"), path);
         EXPECT_EQ(lchown(path.c_str(), 12345, 12345), 0);
       }},
      {"where a Chromium runs that is not ours",
       [&] {
         sockaddr_un address = {};
         address.sun_family = AF_UNIX;
         (path + "/SingletonSocket").copy(address.sun_path, sizeof address.sun_path - 1);
         const int chromium = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
         EXPECT_EQ(bind(chromium, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
         EXPECT_EQ(listen(chromium, 1), 0);
       }},
  };
  for (const auto& one : kCases) {
    if (strstr(one.name, "another user") && geteuid() != 0) continue;
    SCOPED_TRACE(one.name);
    fs::remove_all(folder_.file("parent"));
    fs::create_directories(path);
    one.prepare();
    auto profile = Open(path);
    EXPECT_TRUE(profile->is_private());
    EXPECT_NE(profile->dir(), path);
    EXPECT_TRUE(IsOursAlone(profile->dir()));
    const std::string dir = profile->dir();
    profile.reset();
    EXPECT_FALSE(fs::exists(dir));
  }
}

TEST_F(ProfileTest, WhatDeadProcessesLeftIsRemoved) {
  const std::string dead = "4194305";  // above any process id
  const std::string alive = std::to_string(getppid());
  for (const std::string& name :
       {"cef-" + dead + "-abcdef", "cef-" + alive + "-abcdef", "cef-" + dead,
        "other-" + dead + "-abcdef", std::string("cef-12x-abcdef")}) {
    fs::create_directories(folder_.file(name) + "/Default");
  }
  // In use although the number is of a dead process (it counts in another container).
  const std::string locked = folder_.file("cef-" + dead + "-locked");
  fs::create_directory(locked);
  bool busy = false;
  const int lock = engine::LockFolder(locked, &busy);
  auto profile = Open(path_);
  EXPECT_FALSE(fs::exists(folder_.file("cef-" + dead + "-abcdef")));
  EXPECT_TRUE(fs::exists(locked));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()), 6);
  close(lock);
}
