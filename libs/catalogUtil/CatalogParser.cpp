#include "libs/catalogUtil/CatalogParser.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <string_view>

#include "libs/catalogUtil/Utils.h"
#include "libs/kxaccess/utf8.h"
#include "libs/kxlog/kxLogService/kxLogServiceAPI.h"

namespace orb::CatalogUtil {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool ReadAll(const char* path, std::string& content) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return false;
  char buffer[8192];
  ssize_t count;
  while ((count = read(fd, buffer, sizeof buffer)) > 0 || (count < 0 && errno == EINTR)) {
    if (count > 0) content.append(buffer, static_cast<size_t>(count));
  }
  close(fd);
  return count == 0;
}

// The code points up to the first NUL or broken sequence.
std::wstring DecodeLine(std::string_view line) {
  std::wstring text;
  _dcfUtf8RefIn in(line.data(), line.data() + line.size());
  std::uint32_t codePoint;
  while (in.Get(codePoint) && codePoint != 0) text += static_cast<wchar_t>(codePoint);
  return text;
}

// Checks the first line and takes the mark off.
bool CheckEncoding(FileEncoding encoding, const std::string& path, std::string_view& line) {
  switch (encoding) {
    case FileEncoding::kAnyBytes:
      return true;
    case FileEncoding::kUtf8WithMark:
      if (line.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        line.remove_prefix(kByteOrderMark.size());
        return true;
      }
      KXLOG(2, "CatalogUtil", "Error, invalid UTF-8 catalog file: %s.", path.c_str());
      return false;
  }
  KXLOG(2, "CatalogUtil", "Error, unsupported file-encoding for catalog file: %s.", path.c_str());
  return false;
}

}  // namespace

bool CatalogParser::loadCatalogFile(const wchar_t* path, FileEncoding encoding) {
  if (!path || !*path) return false;
  const std::string file = WideToUtf8(path);
  std::string content;
  if (!ReadAll(file.c_str(), content)) return false;

  bool checked = false;
  for (std::string_view rest = content; !rest.empty();) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    if (line.empty()) continue;
    if (!checked && !CheckEncoding(encoding, file, line)) return false;
    checked = true;
    if (!line.empty() && line.front() != ';') ParseLine(DecodeLine(line));
  }
  KXLOG(4, "CatalogUtil", "Loaded catalog file: %s.", file.c_str());
  return true;
}

void CatalogParser::ParseLine(std::wstring line) {
  trimWhitespacesAtBeginAndEnd(line);
  if (line.empty()) return;
  if (line.front() == L'[' && line.back() == L']') {
    m_section = line.substr(1, line.size() - 2);
    trimWhitespacesAtBeginAndEnd(m_section);
    return;
  }
  const size_t equals = line.find(L'=');
  if (equals == std::wstring::npos || equals == 0 || m_section.empty()) return;

  std::wstring key = line.substr(0, equals);
  std::wstring value = line.substr(equals + 1);
  trimWhitespacesAtBeginAndEnd(key);
  trimWhitespacesAtBeginAndEnd(value);
  findAndReplace(value, L"\\t", L"\t");
  findAndReplace(value, L"\\n", L"\n");
  findAndReplace(value, L"\\r", L"\r");
  m_catalog.onCatalogRecord(m_section, key, value);
}

}  // namespace orb::CatalogUtil
