// The return channel on real segments.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "GUI/LinuxUI/src/ShmUtils.h"
#include "tests/support/LogTrace.h"
#include "tests/support/Segment.h"

namespace {

using testing::ElementsAre;

TEST(ReturnChannelTest, WritesFromTheStartAndNoFurther) {
  const TempDir folder;
  ShmUtils channel;
  ASSERT_TRUE(channel.attach(folder.path() + "/", 'R'));
  ASSERT_TRUE(channel.setVal(std::string(100, 'a')));
  shmid_ds status;
  ASSERT_EQ(shmctl(channel.m_shmId, IPC_STAT, &status), 0);
  EXPECT_EQ(status.shm_segsz, 4096u);
  EXPECT_EQ(status.shm_perm.mode & 0777, 0644);
  EXPECT_EQ(status.shm_nattch, 0u);

  // A later run finds the same segment and leaves the tail of the older text.
  ShmUtils later;
  ASSERT_TRUE(later.attach(folder.path(), 'R'));
  ASSERT_TRUE(later.setVal(std::string("c\0ccc", 5)));
  EXPECT_EQ(TakeSegment(folder.path()), std::string("c\0\0\0\0", 5) + std::string(95, 'a'));
}

TEST(ReturnChannelTest, SaysWhatFailed) {
  const TempDir folder;
  LogTrace log;
  ShmUtils channel;
  EXPECT_FALSE(channel.attach(folder.file("missing"), 'R'));
  EXPECT_THAT(log.Take(),
              ElementsAre("1 'OrbUI' ftok failed. error[2] [No such file or directory]"));
  EXPECT_FALSE(channel.setVal("x"));
  EXPECT_THAT(log.Take(), ElementsAre("1 'OrbUI' shmat failed. error[22] [Invalid argument]"));
  ASSERT_NE(shmget(ftok(folder.path().c_str(), 'R'), 100, IPC_CREAT | 0600), -1);
  EXPECT_FALSE(channel.attach(folder.path(), 'R'));
  EXPECT_THAT(log.Take(), ElementsAre("1 'OrbUI' shmget failed. error[22] [Invalid argument]"));
  TakeSegment(folder.path());
}

}  // namespace
