#include "libs/kxlog/kxLogService/kxLogServiceAPILib.h"

#include <cstdio>
#include <cstring>

#include "libs/kxlog/kxLogService/LogFields.h"

int _KXLogInitialize() { return KXLogProcessAttachInit() ? 1 : 0; }

int _KXLogCleanup() {
  const bool detached = KXLogProcessDetachInit();
  LogProtectionCleanUp();
  return detached ? 1 : 0;
}

char* _KXLogSetModuleName(const char* name) {
  snprintf(CurrentModuleName, sizeof(CurrentModuleName), "%s", name);
  return EscapeParameter(CurrentModuleName, strlen(CurrentModuleName));
}
