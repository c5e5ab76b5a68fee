#include "cef/chromium/Preferences.h"

#include <fcntl.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

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
    // No traffic but the pages'.
    {"safebrowsing.enabled", false},
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

// Sets the value at the path, whose names are parted by dots.
void Set(Document* document, const std::string& path, Value value) {
  auto& allocator = document->GetAllocator();
  Value* object = document;
  size_t begin = 0;
  for (size_t dot; (dot = path.find('.', begin)) != std::string::npos; begin = dot + 1) {
    const std::string name = path.substr(begin, dot - begin);
    if (!object->HasMember(name.c_str())) {
      object->AddMember(Value(name.c_str(), allocator), Value(rapidjson::kObjectType), allocator);
    }
    object = &(*object)[name.c_str()];
  }
  object->AddMember(Value(path.c_str() + begin, allocator), value, allocator);
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

std::string SeedPreferencesJson() {
  Document document(rapidjson::kObjectType);
  for (const Flag& flag : kFlags) Set(&document, flag.path, Value(flag.value));
  for (const Number& number : kNumbers) Set(&document, number.path, Value(number.value));
  for (const char* name : kBlocked) {
    Set(&document, std::string("profile.default_content_setting_values.") + name, Value(2));
  }
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

bool SeedPreferences(const std::string& profile_dir, std::string* err) {
  const std::string folder = profile_dir + "/Default";
  const std::string path = folder + "/Preferences";
  if (access(path.c_str(), F_OK) == 0) return true;
  // Under another name first: a half-written file would count as damaged and be thrown away.
  const std::string fresh = path + ".seed";
  bool written = false;
  if (mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST) {
    const int fd = open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd >= 0) {
      written = WriteAll(fd, SeedPreferencesJson());
      close(fd);
    }
  }
  if (written && rename(fresh.c_str(), path.c_str()) == 0) return true;
  *err = "cannot write " + path + ": " + strerror(errno);
  return false;
}

}  // namespace engine
