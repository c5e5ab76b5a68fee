// The doctor's look at catalogs: the product's own are clean, and each fault put into them is
// named.

#include <gtest/gtest.h>

#include <regex>

#include "tests/support/Subprocess.h"
#include "tests/support/TempDir.h"

namespace {

// Places are shortened to the language and the line.
TEST(CatalogFaults, EachIsNamedWithItsPlace) {
  const char *const de = "CorvaneResource_DE.txt", *const en = "CorvaneResource_EN.txt",
                    *const es = "CorvaneResource_ES.txt",
                    *const brand = "BrandingMessageCatalog_EN.txt";
  const struct {
    const char* file;
    const char* from;  // empty: the end of the file
    const char* to;    // null: the file is removed
    const char* faults;
  } cases[] = {
      {es, "", "", ""},  // the product's own
      {es, "", nullptr, "EN:1: no CorvaneResource_ES.txt beside it\n"},
      {"Other_pt.txt", "", "", "pt:1: never read: a name ends with the language in capitals\n"},
      {"Other_ES.txt", "", "\xEF\xBB\xBF", "ES:1: no Other_EN.txt beside it\n"},
      {es, "\xEF\xBB\xBF", "", "ES:1: the file does not begin with the UTF-8 byte-order mark\n"},
      {de, "für", "f\xFCr", "DE:13: is not UTF-8\n"},
      {de, "[1152]", ";",
       "DE:1: [1152] Value is missing\nDE:16: [1151] Value is in line 13 already\n"},
      {en, "\n[180]\nValue = Ca&ncel\n", "",
       "DE:7: [180] Value: not in the English file\nEN:1: [180] Value is missing\n"
       "ES:7: [180] Value: not in the English file\nFR:7: [180] Value: not in the English file\n"},
      {"MessageCatalogCorvaneUI_EN.txt", "[1716]", "[1999]\nLong-desc = x\n[1716]",
       "DE:1: [1999] Long-desc is missing\nEN:69: [1999] Long-desc: nobody asks for it\n"
       "ES:1: [1999] Long-desc is missing\nFR:1: [1999] Long-desc is missing\n"},
      {de, "zu {0} fort", "zu {0:h} {1} fort",
       "DE:16: [1152] Value has the placeholders {0:h} {1}, the English text {0}\n"},
      {en, "to {0} any", "to {0} {o} any",
       "EN:17: [1152] Value has a { that begins no placeholder\n"},
      {de, "&Ab", "Ab", "DE:7: [180] Value lacks the & before its key\n"},
      {de, "&Ab", "& Ab", "DE:7: [180] Value needs one &, before a letter\n"},
      {de, "&Ab", "&f", "DE:7: [180] Value has the key of [179] Value\n"},
      {de, "zu {0} fortfahren?", "{0}\r", "DE:16: [1152] Value ends with a carriage return\n"},
      {de, "", "[9]\nValue =\nvalue = x\n[a]\nValue = x\n[\n",
       "DE:18: [9] Value is empty\nDE:18: [9] Value: not in the English file\n"
       "DE:19: [9] value: no such record\nDE:21: [a] is not the number of a text\n"
       "DE:22: a line without meaning\n"},
      {brand, "", "[1702]\nLong-desc = {0}\n",
       "EN:1: no BrandingMessageCatalog_DE.txt beside it\n"
       "EN:1: no BrandingMessageCatalog_ES.txt beside it\n"
       "EN:1: no BrandingMessageCatalog_FR.txt beside it\n"
       "EN:9: [1702] Long-desc has the placeholders {0}, the product's text none\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.file) + ": " + c.from + " -> " + (c.to ? c.to : "nothing"));
    const TempDir folder;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(EB_STAGE))
      if (entry.path().extension() == ".txt") std::filesystem::copy(entry, folder.path());
    const std::string path = folder.file(c.file), from = c.from;
    std::string text = std::filesystem::exists(path) ? ReadFile(path) : "";
    const size_t at = from.empty() ? text.size() : text.find(from);
    ASSERT_NE(at, text.npos);
    if (c.to) folder.write(c.file, text.replace(at, from.size(), c.to));
    if (!c.to) std::filesystem::remove(path);
    Subprocess::Command command;
    command.arguments = {EB_DOCTOR, "--catalogs", folder.path()};
    const Subprocess::End end = RunToEnd(command, std::chrono::seconds(20));
    EXPECT_EQ(std::regex_replace(end.out, std::regex("/[^\n]*_(..)[.]txt:"), "$1:"), c.faults);
    EXPECT_EQ(end.exit_status, *c.faults ? 1 : 0) << end.err;
  }
}

}  // namespace
