#include "include/wrapper/cef_resource_manager.h"

CefResourceManager::CefResourceManager() = default;

CefResourceManager::~CefResourceManager() = default;

cef_return_value_t CefResourceManager::OnBeforeResourceLoad(CefRefPtr<CefBrowser>,
                                                            CefRefPtr<CefFrame>,
                                                            CefRefPtr<CefRequest>,
                                                            CefRefPtr<CefRequestCallback>) {
  CEF_REQUIRE_IO_THREAD();
  return RV_CONTINUE;
}

CefRefPtr<CefResourceHandler> CefResourceManager::GetResourceHandler(CefRefPtr<CefBrowser>,
                                                                     CefRefPtr<CefFrame>,
                                                                     CefRefPtr<CefRequest>) {
  CEF_REQUIRE_IO_THREAD();
  return nullptr;
}
