// The return channel on real segments.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include "GUI/LinuxUI/src/ShmUtils.h"
#include "tests/support/LogTrace.h"

namespace {

using testing::ElementsAre;

class ReturnChannelTest : public testing::Test {
 protected:
  ~ReturnChannelTest() override {
    const int id = shmget(key_, 0, 0);
    if (id != -1) shmctl(id, IPC_RMID, nullptr);
  }

  // All bytes of the segment, as the starting process sees them.
  std::string Content() const {
    const int id = shmget(key_, 0, 0);
    const void* data = shmat(id, nullptr, SHM_RDONLY);
    EXPECT_NE(data, reinterpret_cast<void*>(-1));
    const std::string content(static_cast<const char*>(data), ShmUtils::kSegmentSize);
    shmdt(data);
    return content;
  }

  static std::string Padded(std::string text) {
    text.resize(ShmUtils::kSegmentSize);
    return text;
  }

  TempDir folder_;
  key_t key_ = ftok(folder_.path().c_str(), 'R');
};

TEST_F(ReturnChannelTest, WritesFromTheStartAndNoFurther) {
  ShmUtils channel;
  ASSERT_TRUE(channel.attach(folder_.path() + "/", 'R'));
  shmid_ds status;
  ASSERT_EQ(shmctl(channel.m_shmId, IPC_STAT, &status), 0);
  EXPECT_EQ(status.shm_segsz, 4096u);
  EXPECT_EQ(status.shm_perm.mode & 0777, 0644);

  ASSERT_TRUE(channel.setVal(std::string(100, 'a')));
  EXPECT_EQ(Content(), Padded(std::string(100, 'a')));
  ASSERT_EQ(shmctl(channel.m_shmId, IPC_STAT, &status), 0);
  EXPECT_EQ(status.shm_nattch, 0u);

  // A later run finds the same segment and leaves the tail of the older text.
  ShmUtils later;
  ASSERT_TRUE(later.attach(folder_.path(), 'R'));
  EXPECT_EQ(later.m_shmId, channel.m_shmId);
  ASSERT_TRUE(later.setVal(std::string("c\0ccc", 5)));
  EXPECT_EQ(Content(), Padded(std::string("c\0\0\0\0", 5) + std::string(95, 'a')));
  ASSERT_TRUE(later.setVal(std::string(4096, 'f')));
  EXPECT_EQ(Content(), std::string(4096, 'f'));
}

TEST_F(ReturnChannelTest, SaysWhatFailed) {
  LogTrace log;
  ShmUtils channel;
  EXPECT_FALSE(channel.attach(folder_.file("missing"), 'R'));
  EXPECT_THAT(log.Take(),
              ElementsAre("1 'OrbUI' ftok failed. error[2] [No such file or directory]"));
  EXPECT_FALSE(channel.setVal("x"));
  EXPECT_THAT(log.Take(), ElementsAre("1 'OrbUI' shmat failed. error[22] [Invalid argument]"));
  ASSERT_NE(shmget(key_, 100, IPC_CREAT | 0600), -1);
  EXPECT_FALSE(channel.attach(folder_.path(), 'R'));
  EXPECT_THAT(log.Take(), ElementsAre("1 'OrbUI' shmget failed. error[22] [Invalid argument]"));
}

}  // namespace
