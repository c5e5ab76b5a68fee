#include "GUI/newUI/CommonWebBrowser.h"

#include <algorithm>

#include "GUI/newUI/ModuleNames.h"
#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

void GetCookieforKey(const std::string& cookies, const std::string& key, std::string& out) {
  const size_t pos = cookies.find(key);
  if (pos == std::string::npos) {
    out.clear();
    return;
  }
  out = cookies.substr(pos, cookies.find(';', pos) - pos);
}

void GetCookieValueforKey(const std::string& cookies, const std::string& key, std::string& out) {
  std::string item;
  GetCookieforKey(cookies, key, item);
  const size_t equals = item.find('=');
  out = equals == std::string::npos ? std::string() : item.substr(equals + 1);
}

void GetCookieListforKey(const std::string& cookies, const std::string& key,
                         std::vector<std::string>& out) {
  std::string list = cookies;
  list.erase(std::remove(list.begin(), list.end(), ' '), list.end());
  out.clear();
  for (size_t start = 0; start < list.size();) {
    const size_t end = std::min(list.find(';', start), list.size());
    std::string item = list.substr(start, end - start);
    if (item.find(key) != std::string::npos) out.push_back(std::move(item));
    start = end + 1;
  }
}

void ParseCookies(const std::wstring& bundle, std::set<std::wstring>& out) {
  if (bundle.empty()) return;
  const std::wstring delimiter = kCorvaneCookieDelimeter;
  size_t start = 0, end;
  do {
    end = bundle.find(delimiter, start);
    std::wstring piece = bundle.substr(start, end - start);
    piece.erase(std::remove(piece.begin(), piece.end(), L' '), piece.end());
    KXLOG(4, kStrModuleName, "Retrieved cookie of length: %d", static_cast<int>(piece.size()));
    out.insert(std::move(piece));
    start = end + delimiter.size();
  } while (end != std::wstring::npos);
  KXLOG(4, kStrModuleName, "Parsed %d cookies", static_cast<int>(out.size()));
}

void ParseCookies(const std::string& bundle, std::set<std::string>& out) {
  std::set<std::wstring> pieces;
  ParseCookies(Utf8ToWide(bundle), pieces);
  for (const std::wstring& piece : pieces) out.insert(WideToUtf8(piece));
}

void GetDomainFromUrl(const std::string& url, std::string& domain) {
  constexpr size_t kHttpsLength = 8, kHttpLength = 7;
  domain = url;
  // The scheme may be found anywhere, what is deleted stands always at the start; kept on purpose.
  if (domain.find("https://") != std::string::npos) {
    domain.erase(0, kHttpsLength);
  } else if (domain.find("http://") != std::string::npos) {
    domain.erase(0, kHttpLength);
  }
  const size_t slash = domain.find('/');
  if (slash != std::string::npos && slash != 0) domain.erase(slash);
  for (char& c : domain) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
}

std::wstring SiteOfAddress(const std::wstring& address) {
  size_t slash = address.find(L'/');
  for (int further = 0; further < 2 && slash != std::wstring::npos; ++further) {
    slash = address.find(L'/', slash + 1);
  }
  return address.substr(0, slash);
}
