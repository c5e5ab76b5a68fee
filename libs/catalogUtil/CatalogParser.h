// Reads a catalog file and hands its records to whoever takes them, as a rule a catalog.
//
// A catalog is UTF-8 text in lines that end at LF: "[section]" lines, "key = value" records that
// belong to the section above them, comments with ';' in column one. Spaces and tabs around names
// and values do not count; \t, \n and \r in a value stand for the characters. What is malformed is
// skipped: a line without meaning as a whole, a line with broken UTF-8 from there on.

#ifndef LIBS_CATALOGUTIL_CATALOGPARSER_H_
#define LIBS_CATALOGUTIL_CATALOGPARSER_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace orb::CatalogUtil {

enum FileEncoding : int {
  kAnyBytes = 0,      // decoded as UTF-8, with no byte-order mark asked for
  kUtf8WithMark = 1,  // the UTF-8 byte-order mark must come first
};

// Who takes the records of a catalog file.
class CatalogRecords {
 public:
  virtual ~CatalogRecords() = default;

  // Takes one record of a catalog file. Called by the parser on the thread that loads the file.
  virtual void onCatalogRecord(const std::wstring& section, const std::wstring& key,
                               const std::wstring& value) = 0;

  // Told of each line that is skipped because it has no meaning: neither a section nor a record of
  // one, nor a comment. A catalog does not care.
  virtual void onLineWithoutMeaning() {}
};

// Made for one load. Takes no lock.
class CatalogParser {
 public:
  // `catalog` receives the records and must outlive the parser.
  explicit CatalogParser(CatalogRecords& catalog) : m_catalog(catalog) {}

  // Reads the file and delivers its records in order. False when the path is null or empty or
  // cannot be read (nothing is logged), and when the encoding is not the one asked for (level 2;
  // checked at the first line that is not empty, so a file without any loads whatever is asked
  // for).
  bool loadCatalogFile(const wchar_t* path, FileEncoding encoding);
  // The same for a file's bytes; `file` is its path, for the log. False for the encoding only.
  bool loadCatalogText(std::string_view bytes, FileEncoding encoding, const std::string& file);

  // The number of the line being read, from 1; after a load, of the last line read.
  size_t line() const { return m_lineNumber; }

  CatalogRecords& m_catalog;
  // The name of the section being read; empty before the first one.
  std::wstring m_section;

 private:
  void ParseLine(std::string_view bytes);

  size_t m_lineNumber = 0;
  // Of the line being read; kept, so that not every line needs memory of its own.
  std::wstring m_line;
  std::wstring m_key;
  std::wstring m_value;
};

}  // namespace orb::CatalogUtil

#endif  // LIBS_CATALOGUTIL_CATALOGPARSER_H_
