// The catalogs of the process. They live from start to exit.

#ifndef LIBS_CATALOGUTIL_GLOBALCATALOGS_H_
#define LIBS_CATALOGUTIL_GLOBALCATALOGS_H_

#include <string>

#include "libs/catalogUtil/MessageCatalog.h"
#include "libs/catalogUtil/ResourceCatalog.h"

// Filled at start; each has its own lock.
extern orb::CatalogUtil::ResourceCatalog g_oResCatalog;
extern orb::CatalogUtil::MessageCatalog g_oMsgCatalog;

// Set at start when the message catalogs did not all load. Main thread.
extern bool g_bMessageCatalogError;

// The language chosen for the user interface, such as L"en-US"; empty until it is chosen. Main
// thread.
extern std::wstring g_strCorvaneLanguage;

#endif  // LIBS_CATALOGUTIL_GLOBALCATALOGS_H_
