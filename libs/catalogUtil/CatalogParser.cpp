#include "libs/catalogUtil/CatalogParser.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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
  struct stat info;
  if (fstat(fd, &info) == 0 && info.st_size > 0) content.reserve(static_cast<size_t>(info.st_size));
  char buffer[65536];
  ssize_t count;
  while ((count = read(fd, buffer, sizeof buffer)) > 0 || (count < 0 && errno == EINTR)) {
    if (count > 0) content.append(buffer, static_cast<size_t>(count));
  }
  close(fd);
  return count == 0;
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
  if (!ReadAll(file.c_str(), content) || !loadCatalogText(content, encoding, file)) return false;
  KXLOG(4, "CatalogUtil", "Loaded catalog file: %s.", file.c_str());
  return true;
}

bool CatalogParser::loadCatalogText(std::string_view bytes, FileEncoding encoding,
                                    const std::string& file) {
  bool checked = false;
  m_lineNumber = 0;
  for (std::string_view rest = bytes; !rest.empty();) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    ++m_lineNumber;
    if (line.empty()) continue;
    if (!checked && !CheckEncoding(encoding, file, line)) return false;
    checked = true;
    if (!line.empty() && line.front() != ';') ParseLine(line);
  }
  return true;
}

void CatalogParser::ParseLine(std::string_view bytes) {
  m_line.clear();
  AppendWide(bytes, m_line);
  const std::wstring_view line = Trimmed(m_line);
  if (line.empty()) return;
  if (line.front() == L'[' && line.back() == L']') {
    m_section = Trimmed(line.substr(1, line.size() - 2));
    return;
  }
  const size_t equals = line.find(L'=');
  if (equals == std::wstring_view::npos || equals == 0 || m_section.empty()) {
    m_catalog.onLineWithoutMeaning();
    return;
  }

  m_key = Trimmed(line.substr(0, equals));
  m_value = Trimmed(line.substr(equals + 1));
  if (m_value.find(L'\\') != std::wstring::npos) {
    findAndReplace(m_value, L"\\t", L"\t");
    findAndReplace(m_value, L"\\n", L"\n");
    findAndReplace(m_value, L"\\r", L"\r");
  }
  m_catalog.onCatalogRecord(m_section, m_key, m_value);
}

}  // namespace orb::CatalogUtil
