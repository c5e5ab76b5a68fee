#include "libs/catalogUtil/GlobalCatalogs.h"

orb::CatalogUtil::ResourceCatalog g_oResCatalog;
orb::CatalogUtil::MessageCatalog g_oMsgCatalog;
bool g_bMessageCatalogError = false;
std::wstring g_strCorvaneLanguage;
