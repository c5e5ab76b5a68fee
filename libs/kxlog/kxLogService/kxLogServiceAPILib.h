// Inside the logging library: all of its internals, and the forms that the public calls forward to.

#ifndef LIBS_KXLOG_KXLOGSERVICE_KXLOGSERVICEAPILIB_H_
#define LIBS_KXLOG_KXLOGSERVICE_KXLOGSERVICEAPILIB_H_

#include "libs/kxlog/kxLogService/LogState.h"
#include "libs/kxlog/kxLogService/Mac/kxMacLogAPIInternal.h"
#include "libs/kxlog/kxLogService/Mac/kxMacLogServiceFile.h"
#include "libs/kxlog/kxLogService/Mac/kxMacLogserviceApiLib.h"

int _KXLogInitialize();
int _KXLogCleanup();
char* _KXLogSetModuleName(const char* name);

#endif  // LIBS_KXLOG_KXLOGSERVICE_KXLOGSERVICEAPILIB_H_
