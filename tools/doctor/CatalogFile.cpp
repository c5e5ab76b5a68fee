#include "tools/doctor/CatalogFile.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cwctype>
#include <fstream>
#include <iterator>

#include "libs/catalogUtil/Arguments.h"
#include "libs/catalogUtil/Utils.h"
#include "libs/kxaccess/utf8.h"

namespace doctor {

namespace {

using orb::CatalogUtil::FileEncoding;

constexpr unsigned int kHighestMessage = 9999;

// Each begins a placeholder, or has a backslash before it.
bool HasStrayBrace(const std::wstring& text) {
  orb::CatalogUtil::Placeholder place;
  for (size_t at = text.find(L'{'); at != std::wstring::npos; at = text.find(L'{', at + 1)) {
    if (at > 0 && text[at - 1] == L'\\') continue;
    if (!FindPlaceholder(text, at, place) || place.begin != at) return true;
  }
  return false;
}

bool IsKey(wchar_t c) { return c > 0x7F || std::isalnum(static_cast<int>(c)); }

}  // namespace

std::string KeyText(const TextKey& key) {
  return "[" + std::to_string(key.first) + "] " + WideToUtf8(key.second);
}

const std::vector<std::wstring>& FieldsOf(CatalogKind kind) {
  static const std::vector<std::wstring> resources = {L"Value"};
  static const std::vector<std::wstring> messages = {L"Short-desc", L"Long-desc"};
  return kind == CatalogKind::kResources ? resources : messages;
}

int FirstBadLine(const std::string& content) {
  const char* const end = content.data() + content.size();
  _dcfUtf8RefIn in(content.data(), end);
  std::uint32_t code_point;
  while (in.position() != end) {
    const char* const at = in.position();
    if (!in.Get(code_point)) return 1 + static_cast<int>(std::count(content.data(), at, '\n'));
  }
  return 0;
}

CatalogFile::CatalogFile(const std::string& path, CatalogKind kind,
                         std::vector<CatalogFault>& faults)
    : path_(path), kind_(kind), faults_(faults) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    Complain(1, "cannot be read");
    return;
  }
  const std::string content{std::istreambuf_iterator<char>(in), {}};
  if (const int line = FirstBadLine(content)) Complain(line, "is not UTF-8");
  const std::wstring name = Utf8ToWide(path);
  if (!parser_.loadCatalogFile(name.c_str(), FileEncoding::kUtf8WithMark)) {
    Complain(1, "the file does not begin with the UTF-8 byte-order mark");
    parser_.loadCatalogFile(name.c_str(), FileEncoding::kAnyBytes);
  }
  if (kind == CatalogKind::kResources) LookAtKeys();
}

const CatalogFile::Text* CatalogFile::Find(const TextKey& key) const {
  const auto found = texts_.find(key);
  return found == texts_.end() ? nullptr : &found->second;
}

void CatalogFile::onCatalogRecord(const std::wstring& section, const std::wstring& key,
                                  const std::wstring& value) {
  const size_t line = parser_.line();
  unsigned int id;
  if (!orb::CatalogUtil::convertStringToNumber(section, id) ||
      (kind_ == CatalogKind::kMessages && id > kHighestMessage)) {
    return Complain(line, "[" + WideToUtf8(section) + "] is not the number of a text");
  }
  const std::vector<std::wstring>& fields = FieldsOf(kind_);
  const TextKey text(id, key);
  if (std::find(fields.begin(), fields.end(), key) == fields.end()) {
    return Complain(line, KeyText(text) + ": no such record");
  }
  if (value.empty()) Complain(line, KeyText(text) + " is empty");
  if (!value.empty() && value.back() == L'\r') {
    Complain(line, KeyText(text) + " ends with a carriage return");
  }
  if (HasStrayBrace(value)) Complain(line, KeyText(text) + " has a { that begins no placeholder");
  const auto [place, is_new] = texts_.try_emplace(text, Text{value, line});
  if (is_new) return;
  Complain(line, KeyText(text) + " is in line " + std::to_string(place->second.line) + " already");
  place->second = {value, line};
}

void CatalogFile::onLineWithoutMeaning() { Complain(parser_.line(), "a line without meaning"); }

// The captions of one catalog show together, so each needs a key of its own.
void CatalogFile::LookAtKeys() {
  std::map<wchar_t, TextKey> keys;
  for (const auto& [key, text] : texts_) {
    const size_t mark = text.value.find(L'&');
    if (mark == std::wstring::npos) continue;
    const wchar_t letter = mark + 1 < text.value.size() ? text.value[mark + 1] : L' ';
    if (!IsKey(letter) || text.value.find(L'&', mark + 1) != std::wstring::npos) {
      Complain(text.line, KeyText(key) + " needs one &, before a letter");
      continue;
    }
    const auto [other, is_new] =
        keys.try_emplace(static_cast<wchar_t>(std::towlower(static_cast<wint_t>(letter))), key);
    if (!is_new) {
      Complain(text.line, KeyText(key) + " has the key of " + KeyText(other->second));
    }
  }
}

}  // namespace doctor
