// Changes of interfaces reach the driver before any later request.
#include "host/interface_news.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>

#include "inside.h"
#include "watch.h"

static constexpr uint32_t kGetFrequency = 0x8B05;

static int frequency_error(const char* interface) {
  request_frame frame = make_frame(interface, nullptr, 0, 0);
  return request(kGetFrequency, frame);
}

static std::vector<links_change> changes_of(int fd, const std::string& name) {
  bool lost = false;
  std::vector<links_change> changes;
  for (const links_change& change : links_take(fd, lost)) {
    if (change.name == name) changes.push_back(change);
  }
  EXPECT_FALSE(lost);
  return changes;
}

TEST(Links, NewsComeInOrderAndBeforeTheCallReturns) {
  int fd = links_open();
  ASSERT_GE(fd, 0);
  ASSERT_EQ(run("ip link set ra3 up; ip link set ra3 down; rmmod mt7603e_ap").status, 0);
  auto changes = changes_of(fd, "ra3");
  ASSERT_GE(changes.size(), 3u);
  EXPECT_TRUE(changes.front().up);
  EXPECT_TRUE(changes.back().gone);
  bool went_down = false;
  for (const links_change& change : changes)
    went_down = went_down || (!change.up && !change.gone);
  EXPECT_TRUE(went_down);
  close(fd);
}

TEST(Links, AnInterfaceIsAskedWhetherItIsUp) {
  int fd = socket(AF_INET, SOCK_DGRAM, 0);
  EXPECT_FALSE(links_is_up(fd, "ra0"));
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  EXPECT_TRUE(links_is_up(fd, "ra0"));
  EXPECT_FALSE(links_is_up(fd, "ra99"));
  close(fd);
}

TEST(Links, TheDriverKnowsAtOnceThatItsInterfaceIsUpOrDown) {
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(frequency_error("ra0"), ENETDOWN);
    ASSERT_EQ(run("ip link set ra0 up").status, 0);
    EXPECT_EQ(frequency_error("ra0"), 0);
    ASSERT_EQ(run("ip link set ra0 down").status, 0);
  }
}

static std::string channel() {
  return run("iwgetid ra0 --freq --raw; iwgetid ra0 --channel --raw").output;
}

TEST(Links, TheProfileIsReadWhenTheInterfaceGoesUp) {
  ASSERT_EQ(run("sed -i s/^Channel=.*/Channel=3/ /tmp/mt76xx_24.dat; ip link set ra0 up").status,
            0);
  std::string third = channel();
  ASSERT_EQ(run("sed -i s/^Channel=.*/Channel=9/ /tmp/mt76xx_24.dat").status, 0);
  EXPECT_EQ(channel(), third);
  ASSERT_EQ(run("ip link set ra0 down; ip link set ra0 up").status, 0);
  EXPECT_NE(channel(), third) << third;
}

TEST(Links, AReloadedRadioIsDown) {
  ASSERT_EQ(run("ip link set ra0 up").status, 0);
  EXPECT_EQ(frequency_error("ra0"), 0);
  ASSERT_EQ(run("rmmod mt7603e_ap").status, 0);
  EXPECT_EQ(frequency_error("ra0"), ENODEV);
  ASSERT_EQ(run("insmod /lib/modules/wifi/mt7603e_ap.ko").status, 0);
  EXPECT_EQ(frequency_error("ra0"), ENETDOWN);
}
