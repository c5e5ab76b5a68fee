#include "libs/kxlog/kxLogService/LogState.h"

char CurrentUserName[1024] = "Unknown_User";
char CurrentProcessName[1024] = "Unknown.exe";
char CurrentModuleName[1024] = "Unknown_Module";
int32_t CurrentTraceLevel = kLogDefaultLevel;
uint64_t TraceLevelUpdateCount = 0;
int32_t CurrentLogMode = 0;
int (*UserOutputFunc)(const char* format, ...) = nullptr;
void* pShareMemory = nullptr;
int64_t bLogInitialized = 0;
int32_t bUseGlobalSession = 0;
int32_t bIsShareMemoryPrivate = 0;
int32_t bIsShareMemoryReadWriteView = 0;
const char kPathSeparator = '/';
