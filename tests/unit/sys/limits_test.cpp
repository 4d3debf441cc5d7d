#include "sys/limits.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

TEST(Limits, DescriptorLimitRisesToTheHardOne) {
  rlimit limit = {64, 900};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  for (int i = 0; i < 2; ++i) {
    raise_descriptor_limit();
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(limit.rlim_cur, 900u);
    EXPECT_EQ(limit.rlim_max, 900u);
  }
}
