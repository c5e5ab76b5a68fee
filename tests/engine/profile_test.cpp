// Who gets which profile folder, and what the first preferences do.

#include "cef/chromium/Profile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>

#include "cef/chromium/ChildProcess.h"
#include "cef/chromium/PrivateFolder.h"
#include "testing/support/RawChromium.h"
#include "testing/support/TempDir.h"
#include "testing/support/VirtualDisplay.h"

using engine::ChromiumOptions;
using engine::Profile;

namespace fs = std::filesystem;

namespace {

// A process id that nobody has (any more).
pid_t DeadProcess() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  engine::ReapChild(child);
  return child;
}

mode_t ModeOf(const std::string& path) {
  struct stat info = {};
  return stat(path.c_str(), &info) == 0 ? info.st_mode & 07777 : 0;
}

ChromiumOptions On(const Profile& profile) {
  ChromiumOptions options;
  options.profile_dir = profile.dir();
  return options;
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
};

}  // namespace

TEST_F(ProfileTest, MakesTheFolderAndKeepsItsPreferences) {
  const mode_t before = umask(0);
  const std::string path = folder_.file("home/Söme one/cef");
  const std::string preferences = path + "/Default/Preferences";
  {
    auto profile = Open(path);
    EXPECT_EQ(profile->dir(), path);
    EXPECT_FALSE(profile->is_private());
    EXPECT_EQ(ModeOf(path), 0700u);
    EXPECT_EQ(ModeOf(folder_.file("home")), 0700u);
    EXPECT_NE(ReadFile(preferences), "");
  }
  umask(before);
  folder_.write("home/Söme one/cef/Default/Preferences", "{\"mine\":1}");
  EXPECT_FALSE(Open(path)->is_private());
  EXPECT_EQ(ReadFile(preferences), "{\"mine\":1}");
}

TEST_F(ProfileTest, UnsafeFoldersAreNotUsed) {
  const std::string path = folder_.file("parent/cef");
  const struct {
    const char* name;
    std::function<void()> prepare;
  } kCases[] = {
      {"writable for all", [&] { chmod(path.c_str(), 0777); }},
      {"sticky", [&] { chmod(path.c_str(), 01777); }},
      {"writable for a group", [&] { chmod(path.c_str(), 0770); }},
      {"a file",
       [&] {
         fs::remove(path);
         folder_.write("parent/cef", "text");
       }},
      {"below a file",
       [&] {
         fs::remove_all(folder_.file("parent"));
         folder_.write("parent", "text");
       }},
      {"of another user", [&] { EXPECT_EQ(chown(path.c_str(), 12345, 12345), 0); }},
      {"a link of another user",
       [&] {
         fs::rename(path, folder_.file("elsewhere"));
         fs::create_symlink(folder_.file("elsewhere"), path);
         EXPECT_EQ(lchown(path.c_str(), 12345, 12345), 0);
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
    EXPECT_EQ(ModeOf(profile->dir()), 0700u);
    const std::string dir = profile->dir();
    profile.reset();
    EXPECT_FALSE(fs::exists(dir));
  }
}

TEST_F(ProfileTest, TheTemporaryFolderIsNoProfile) {
  setenv("TMPDIR", folder_.path().c_str(), 1);
  chmod(folder_.path().c_str(), 01777);
  for (const std::string& path : {folder_.path(), std::string()}) {
    auto profile = Open(path);
    EXPECT_TRUE(profile->is_private());
    EXPECT_EQ(fs::path(profile->dir()).parent_path(), folder_.path());
  }
  EXPECT_TRUE(fs::is_empty(folder_.path()));
  unsetenv("TMPDIR");
}

TEST_F(ProfileTest, OneOwnerAtATime) {
  const std::string path = folder_.file("cef");
  auto first = Open(path);
  auto second = Open(path);
  auto third = Open(path);
  EXPECT_FALSE(first->is_private());
  EXPECT_TRUE(second->is_private());
  EXPECT_EQ(second->dir().rfind(path + "-" + std::to_string(getpid()) + "-", 0), 0u);
  EXPECT_NE(second->dir(), third->dir());
  first.reset();
  EXPECT_FALSE(Open(path)->is_private());
}

TEST_F(ProfileTest, WhatDeadProcessesLeftIsRemoved) {
  const std::string dead = std::to_string(DeadProcess());
  const std::string alive = std::to_string(getppid());
  for (const std::string& name :
       {"cef-" + dead + "-abcdef", "cef-" + alive + "-abcdef", "cef-" + dead + "-abcdefg",
        "cef-" + dead, "other-" + dead + "-abcdef", std::string("cef-12x-abcdef")}) {
    fs::create_directories(folder_.file(name) + "/Default");
  }
  // In use although the number is of a dead process (it counts in another container).
  const std::string locked = folder_.file("cef-" + dead + "-locked");
  fs::create_directory(locked);
  bool busy = false;
  const int lock = engine::LockFolder(locked, &busy);
  auto profile = Open(folder_.file("cef"));
  EXPECT_FALSE(fs::exists(folder_.file("cef-" + dead + "-abcdef")));
  EXPECT_TRUE(fs::exists(locked));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()), 7);
  close(lock);
}

TEST_F(ProfileTest, AForeignChromiumIsLeftAlone) {
  VirtualDisplay display;
  const std::string path = folder_.file("cef");
  ChromiumOptions options;
  options.profile_dir = path;
  fs::create_directory(path);
  RawChromium foreign(options);
  foreign.Call("Browser.getVersion");
  auto profile = Open(path);
  EXPECT_TRUE(profile->is_private());
  RawChromium ours(On(*profile));
  ours.Call("Browser.getVersion");
  foreign.Call("Browser.getVersion");
}

TEST_F(ProfileTest, LocksOfTheDeadDoNotHinder) {
  VirtualDisplay display;
  const std::string path = folder_.file("cef");
  fs::create_directory(path);
  fs::create_symlink("otherhost-123", path + "/SingletonLock");
  fs::create_symlink("456", path + "/SingletonCookie");
  fs::create_symlink("/tmp/nowhere/SingletonSocket", path + "/SingletonSocket");
  auto profile = Open(path);
  EXPECT_FALSE(profile->is_private());
  RawChromium chromium(On(*profile));
  chromium.Call("Browser.getVersion");
}

TEST_F(ProfileTest, ARestartRightAfterAKillGetsTheSameFolder) {
  VirtualDisplay display;
  const std::string path = folder_.file("cef");
  int ready[2];
  ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
  const pid_t owner = fork();
  if (owner == 0) {
    auto profile = Open(path);
    RawChromium chromium(On(*profile));
    chromium.OpenPage("data:text/html,x");
    close(ready[1]);  // which the test sees as the end of the pipe
    pause();
  }
  close(ready[1]);
  EXPECT_TRUE(engine::WaitReadable(ready[0], std::chrono::seconds(10)));
  close(ready[0]);
  kill(owner, SIGKILL);
  engine::ReapChild(owner);
  auto profile = Open(path);
  EXPECT_FALSE(profile->is_private());
  RawChromium chromium(On(*profile));
  chromium.Call("Browser.getVersion");
}

// Pages are made up by the interception, so that no server is needed.
TEST_F(ProfileTest, ThePreferencesBringBackOldCookieRulesAndRefusePermissions) {
  VirtualDisplay display;
  auto profile = Open(folder_.file("cef"));
  RawChromium chromium(On(*profile));
  chromium.Call("Storage.setCookies",
                R"({"cookies":[{"name":"old","value":"1","url":"http://gateway.test/"}]})");
  chromium.Call("Fetch.enable");
  const std::string session = chromium.OpenPage("https://provider.test/");
  const auto answer = [&chromium](const std::string& url, const std::string& headers,
                                  const std::string& body_base64) {
    const auto paused = chromium.WaitFor("Fetch.requestPaused", url);
    chromium.Call("Fetch.fulfillRequest", std::string("{\"requestId\":\"") +
                                              paused["params"]["requestId"].GetString() +
                                              "\",\"responseCode\":200,\"responseHeaders\":[" +
                                              headers + "],\"body\":\"" + body_base64 + "\"}");
    const auto& sent = paused["params"]["request"]["headers"];
    return std::string(sent.HasMember("Cookie") ? sent["Cookie"].GetString() : "");
  };
  // <iframe src=//gateway.test/></iframe>
  answer("https://provider.test/", R"({"name":"Content-Type","value":"text/html"})",
         "PGlmcmFtZSBzcmM9Ly9nYXRld2F5LnRlc3QvPjwvaWZyYW1lPg==");
  // A third party's cookie without SameSite, in a frame.
  EXPECT_EQ(answer("https://gateway.test/", "", ""), "old=1");
  for (const char* name : {"geolocation", "notifications", "camera", "microphone", "midi"}) {
    EXPECT_EQ(chromium.Evaluate(session, std::string("navigator.permissions.query({name:'") + name +
                                             "'}).then(p=>p.state)"),
              "denied")
        << name;
  }
}
