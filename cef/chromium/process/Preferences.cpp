#include "cef/chromium/process/Preferences.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>

#include "cef/chromium/base/Json.h"
#include "cef/chromium/process/AppWindow.h"
#include "cef/chromium/process/PrivateFolder.h"
#include "cef/chromium/process/Screen.h"

namespace engine {

namespace {

struct Flag {
  const char* path;
  bool value;
};
struct Number {
  const char* path;
  int value;
};

constexpr Flag kFlags[] = {
    {"profile.block_third_party_cookies", false},
    // No bubbles.
    {"credentials_enable_service", false},
    {"profile.password_manager_enabled", false},
    {"translate.enabled", false},
    {"autofill.enabled", false},
    {"autofill.profile_enabled", false},
    {"autofill.credit_card_enabled", false},
    {"signin.allowed", false},
    {"signin.allowed_on_next_startup", false},
    // No list of the pages that were visited.
    {"history.saving_disabled", true},
    // No traffic but the pages'.
    {"safebrowsing.enabled", false},
    // Neither names nor passwords of sign-ins, however they are wrapped.
    {"profile.password_manager_leak_detection", false},
    {"search.suggest_enabled", false},
    {"alternate_error_pages.enabled", false},
};

constexpr Number kNumbers[] = {
    {"profile.cookie_controls_mode", 0},
    // Allow: cookies without SameSite are sent across sites, long after they were set as well. A
    // sign-in answer is a cross-site POST that may come minutes after the gateway set its cookies.
    {"profile.default_content_setting_values.legacy_cookie_access", 1},
    // Never predict.
    {"net.network_prediction_options", 2},
};

// Permissions that are refused silently (2 = block): there is nobody to ask.
constexpr const char* kBlocked[] = {
    "ar",          "bluetooth_guard",     "bluetooth_scanning", "clipboard",
    "geolocation", "hid_guard",           "idle_detection",     "local_fonts",
    "midi",        "media_stream_camera", "media_stream_mic",   "midi_sysex",
    "nfc",         "notifications",       "serial_guard",       "usb_guard",
    "vr",          "window_placement",
};

using rapidjson::Document;
using rapidjson::Value;

// Sets the value at the path, whose names are separated by dots. What stands in its way is
// replaced.
void Set(Document* document, const std::string& path, Value value) {
  auto& allocator = document->GetAllocator();
  Value* object = document;
  const auto member = [&](const std::string& name) -> Value& {
    if (!object->HasMember(name.c_str())) {
      object->AddMember(Value(name.c_str(), allocator), Value(), allocator);
    }
    return (*object)[name.c_str()];
  };
  size_t begin = 0;
  for (size_t dot; (dot = path.find('.', begin)) != std::string::npos; begin = dot + 1) {
    Value& next = member(path.substr(begin, dot - begin));
    if (!next.IsObject()) next.SetObject();
    object = &next;
  }
  member(path.substr(begin)) = value;
}

// The place of the first window. Those that pages open are called the same, but say themselves how
// large they are to be. A switch of the command line would make them all alike.
void SetPlace(Document* document) {
  const std::optional<Screen> screen = ReadScreen();
  if (!screen) return;
  const Area place = FirstPlace(*screen);
  const std::string path = "browser.app_window_placement";
  // Names of earlier runs go.
  Set(document, path, Value(rapidjson::kObjectType));
  const std::string window = path + "." + AppWindowName() + ".";
  const auto pixels = [&](int length) { return static_cast<int>(length / screen->scale); };
  const Area& area = screen->area;
  for (const Number& edge :
       {Number{"left", place.x}, Number{"top", place.y}, Number{"right", place.x + place.width},
        Number{"bottom", place.y + place.height}, Number{"work_area_left", pixels(area.x)},
        Number{"work_area_top", pixels(area.y)},
        Number{"work_area_right", pixels(area.x + area.width)},
        Number{"work_area_bottom", pixels(area.y + area.height)}}) {
    Set(document, window + edge.path, Value(edge.value));
  }
  Set(document, window + "maximized", Value(false));
}

void SetAll(Document* document) {
  for (const Flag& flag : kFlags) Set(document, flag.path, Value(flag.value));
  for (const Number& number : kNumbers) Set(document, number.path, Value(number.value));
  for (const char* name : kBlocked) {
    Set(document, std::string("profile.default_content_setting_values.") + name, Value(2));
  }
  SetPlace(document);
}

// The text of a plain file; "" for anything else, and for one that no browser would have written.
std::string ReadPlainFile(const std::string& path) {
  constexpr off_t kLongest = 64 << 20;
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  struct stat info;
  std::string text;
  if (fd >= 0 && fstat(fd, &info) == 0 && S_ISREG(info.st_mode) && info.st_size <= kLongest) {
    text.resize(static_cast<size_t>(info.st_size));
    const ssize_t count = read(fd, text.data(), text.size());
    text.resize(count > 0 ? static_cast<size_t>(count) : 0);
  }
  if (fd >= 0) close(fd);
  return text;
}

bool WriteAll(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = write(fd, text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    done += static_cast<size_t>(count);
  }
  return true;
}

}  // namespace

bool SeedPreferences(const std::string& profile_dir, std::string* err) {
  const std::string folder = profile_dir + "/Default";
  const std::string path = folder + "/Preferences";
  const std::string former = ReadPlainFile(path);
  Document document;
  document.Parse<rapidjson::kParseIterativeFlag>(former.data(), former.size());
  if (document.HasParseError() || !document.IsObject()) document.SetObject();
  SetAll(&document);
  const std::string text = JsonText(document);
  if (text == former) return true;

  // Under another name first: a half-written file would count as damaged and be thrown away.
  const std::string fresh = path + ".seed";
  bool written = false;
  if (mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) {
    unlink(fresh.c_str());
    const int fd = open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd >= 0) {
      written = WriteAll(fd, text);
      close(fd);
    }
  }
  if (written && rename(fresh.c_str(), path.c_str()) == 0) return true;
  *err = "cannot write " + path + ": " + strerror(errno);
  unlink(fresh.c_str());
  return false;
}

void KeepNoSessions(const std::string& profile_dir) {
  namespace fs = std::filesystem;
  const fs::path folder = profile_dir + "/Default";
  std::error_code ignored;
  if (fs::is_regular_file(fs::symlink_status(folder / "Sessions", ignored))) return;
  for (const char* name :
       {"History", "History-journal", "Favicons", "Favicons-journal", "Top Sites",
        "Top Sites-journal", "Visited Links", "Shortcuts", "Shortcuts-journal",
        "Network Action Predictor", "Network Action Predictor-journal", "Cache", "Web Data",
        "Web Data-journal"}) {
    RemoveTree(folder / name);
  }
  // Where a folder is to be, a file keeps it from being made.
  for (const char* name : {"Sessions_Encrypted", "Sessions"}) {
    const std::string path = folder / name;
    RemoveTree(path);
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0400);
    if (fd >= 0) close(fd);
  }
}

}  // namespace engine
