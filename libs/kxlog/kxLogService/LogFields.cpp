#include "libs/kxlog/kxLogService/LogFields.h"

#include <pwd.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <ctime>

#include "libs/kxlog/kxLogService/LogState.h"
#include "platform/ProcessName.h"
#include "platform/ThreadId.h"

int KXGetCurrentProcessId(uint32_t* out) {
  *out = static_cast<uint32_t>(getpid());
  return 1;
}

int KXGetCurrentThreadId(uint32_t* out) {
  *out = CurrentThreadId();
  return 1;
}

void GetLocalSystemTime(uint16_t out[8]) {
  timeval now;
  gettimeofday(&now, nullptr);
  tm local;
  localtime_r(&now.tv_sec, &local);
  const int fields[8] = {
      local.tm_year + 1900, local.tm_mon + 1, local.tm_wday, local.tm_mday,
      local.tm_hour,        local.tm_min,     local.tm_sec,  static_cast<int>(now.tv_usec / 1000)};
  for (int i = 0; i < 8; ++i) out[i] = static_cast<uint16_t>(fields[i]);
}

bool GetUserName(char* dest, size_t* len) {
  const passwd* user = getpwuid(getuid());
  const char* name = user != nullptr ? user->pw_name : "";
  if (user != nullptr && dest != nullptr && *len != 0) snprintf(dest, *len, "%s", name);
  *len = strlen(name);
  endpwent();
  return *len != 0;
}

const char* GetUserHome() {
  static char home[1024] = "";
  if (home[0] != '\0') return home;
  const passwd* user = getpwuid(getuid());
  if (user == nullptr) return "~";
  snprintf(home, sizeof(home), "%s", user->pw_dir);
  return home;
}

bool GetCurrentProcessName() {
  if (!GetModuleFilePath(CurrentProcessName, sizeof(CurrentProcessName))) return false;
  EscapeParameter(CurrentProcessName, strlen(CurrentProcessName));
  return true;
}

bool GetModuleFilePath(char* dest, size_t size) {
  if (strcmp(CurrentProcessName, "Unknown.exe") == 0 &&
      !GetOwnProcessName(CurrentProcessName, sizeof(CurrentProcessName))) {
    return false;
  }
  if (dest != CurrentProcessName) snprintf(dest, size, "%s", CurrentProcessName);
  return true;
}

char* EscapeParameter(char* s, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (s[i] == ' ') s[i] = '_';
  }
  return s;
}
