// The text of a record, and which records are written at all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <regex>

#include "tests/support/LogArea.h"

namespace {

// A line is a header "LLLLL,FF " and a record.
std::string Record(const std::string& line) { return line.substr(9); }
size_t StatedLength(const std::string& line) { return std::stoul(line.substr(0, 5)); }

class RecordTest : public testing::Test {
 protected:
  void SetUp() override {
    KXLogSetModuleName("unit test");
    ASSERT_EQ(KXLogInitialize(), 1);
  }

  LogArea area_;
};

TEST_F(RecordTest, Format) {
  const struct {
    const char* source;
    const char* module;
    const char* end;  // of the record, from the source field on
    const char* fields;
  } calls[] = {
      {"GUI/cefBrowser/CefBrowserClient", "CEF", "CefBrowserClient:137 - 'CEF' text 5\r\n", "09"},
      {"/a/b.cpp", nullptr, "b.cpp:137 - text 5\r\n", "08"},
      {"<>", "", "<>:137 - '' text 5\r\n", "09"},
  };
  snprintf(CurrentProcessName, sizeof(CurrentProcessName), "odd name");
  ASSERT_TRUE(GetCurrentProcessName());
  uint32_t thread = 0;
  KXGetCurrentThreadId(&thread);
  char ids[64];
  snprintf(ids, sizeof(ids), "p%04d t%-3X ", getpid(), thread);

  for (const auto& call : calls) {
    SCOPED_TRACE(call.end);
    const int length = _KXLogEntryNew(3, call.source, 137, call.module, "text %d", 5);
    const std::string line = LogArea::Lines().back();
    EXPECT_EQ(StatedLength(line), Record(line).size());
    EXPECT_EQ(static_cast<size_t>(length), Record(line).size());
    std::smatch match;
    const std::regex form(
        R"((\d{5}),(\d\d) \d{4}/\d\d/\d\d \d\d:\d\d:\d\d\.\d{3} 3 (\S+) odd_name unit_test )");
    ASSERT_TRUE(std::regex_search(line, match, form, std::regex_constants::match_continuous));
    EXPECT_EQ(match[2], call.fields);
    EXPECT_EQ(match.suffix(), std::string(ids) + call.end);
  }
}

TEST_F(RecordTest, CallSiteMacroNamesFileAndLine) {
  const int line = __LINE__ + 1;
  KXLOG(3, "TAG", "no arguments");
  EXPECT_THAT(LogArea::Lines(),
              testing::ElementsAre(testing::HasSubstr(" kxlog_record_test:" + std::to_string(line) +
                                                      " - 'TAG' no arguments")));
  static_assert(SourceStem("a.b/c.d.mm") == "c.d");
  static_assert(SourceStem("/a.b/noextension") == "noextension");
}

TEST_F(RecordTest, TooLongIsCutButCountedWhole) {
  const std::string message(5000, 'm');
  const int length = _KXLogEntryNew(3, "source", 1, "TAG", "%s", message.c_str());
  std::string line = LogArea::Lines().back();
  EXPECT_EQ(Record(line).size(), 4035u + 2);
  EXPECT_EQ(StatedLength(line), Record(line).find("mmm") + 5000 + 2);
  EXPECT_EQ(static_cast<size_t>(length), StatedLength(line));

  // The source field alone may reach farther; nothing fits behind it then.
  const std::string source(5000, 's');
  _KXLogEntryNew(3, source.c_str(), 1, "TAG", "%s", message.c_str());
  line = LogArea::Lines().back();
  EXPECT_EQ(Record(line).size(), 4092u + 2);
  EXPECT_THAT(line, testing::EndsWith("ss\r\n"));
  EXPECT_EQ(StatedLength(line), Record(line).find("sss") + strlen(":1 - 'TAG' ") + 5000 + 5000 + 2);
}

// In the C locale a character beyond ASCII makes the formatting call fail.
TEST_F(RecordTest, MessageThatCannotBeFormatted) {
  EXPECT_EQ(_KXLogEntryNew(3, "source", 1, "TAG", "before %ls", L"\u20ac"), 4036 + 2);
  EXPECT_THAT(LogArea::Lines().back(),
              testing::AllOf(testing::StartsWith("04038,09 "), testing::EndsWith("\r\n")));
}

TEST_F(RecordTest, LevelFollowsTheControlBlockWhenItsCounterMoves) {
  const struct {
    int level;
    uint32_t updates;
    int highest_written;
  } steps[] = {{5, 0, 3}, {5, 1, 5}, {1, 1, 5}, {1, 2, 1}, {4, 2, 1}, {0, 0, 3}};  // then zeroed
  for (const auto& step : steps) {
    ControlBlock()->trace_level = step.level;
    ControlBlock()->level_updates = step.updates;
    for (int level = 1; level <= 5; ++level) {
      EXPECT_EQ(_KXLogEntryNew(level, "s", 1, "T", "m") > 0, level <= step.highest_written);
    }
  }
  EXPECT_EQ(LogArea::Lines().size(), 3u + 5 + 5 + 1 + 1 + 3);

  // Whoever holds the lock writes whatever the level.
  ASSERT_TRUE(LogLock());
  EXPECT_GT(_KXLogEntryNew(5, "<>", 0, "T", "held"), 0);
  EXPECT_EQ(semctl(semid, 0, GETVAL), 0);
  EXPECT_EQ(LogUnlock(), 0);
  EXPECT_THAT(LogArea::Lines().back(), testing::HasSubstr("<>:0 - 'T' held"));
}

TEST_F(RecordTest, NothingIsWrittenWhenOff) {
  CurrentLogMode = kLogModeOff;
  EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "off"), 0);
  EXPECT_EQ(semctl(semid, 0, GETVAL), 1) << "the lock is kept";
  CurrentLogMode = 0;
  EXPECT_EQ(KXLogCleanup(), 1);
  EXPECT_EQ(_KXLogEntryNew(1, "s", 1, "T", "left"), 0);
  EXPECT_EQ(_KXLogEntryNew(1, "<>", 0, "T", "left, holding the lock"), 0);
  CurrentLogMode = kLogModeOff;
  EXPECT_EQ(KXLogInitialize(), 0);
  EXPECT_TRUE(LogArea::Lines().empty());
}

}  // namespace
