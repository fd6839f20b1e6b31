// SPDX-License-Identifier: Apache-2.0
#include "robots/status_line.h"

#include <gtest/gtest.h>

#include "robots/bandwidth.h"

using Lookout::Bandwidth;
using Lookout::RobotStatus;
using Lookout::statusText;
using State = Lookout::RobotSession::State;
using namespace std::chrono_literals;

TEST(StatusLine, TellsWhatIsKnown) {
  EXPECT_EQ(statusText({State::Connecting}), "Connecting");
  EXPECT_EQ(statusText({State::Lost, 500us, 1e6, 30}), "Connection lost, reconnecting");
  EXPECT_EQ(statusText({State::Connected}), QString::fromUtf8("Connected · 0.0 kB/s"));
  EXPECT_EQ(statusText({State::Connected, 840us, 37.14e6, 29.9}),
            QString::fromUtf8("Connected · round trip 0.8 ms · 37.1 MB/s · 29.9 fps"));
  EXPECT_EQ(statusText({State::Connected, 12340us, 999949, 0}),
            QString::fromUtf8("Connected · round trip 12.3 ms · 999.9 kB/s"));
}

TEST(StatusLine, ShowsTheStateAsADotOfItsColour) {
  Lookout::StatusLine line;
  line.show({State::Connected});
  const QString connected = line.text();
  line.show({State::Lost});
  EXPECT_TRUE(connected.contains(QString::fromUtf8("●")));
  EXPECT_NE(connected.left(30), line.text().left(30));
}

TEST(Bandwidth, IsTheBytesSinceTheUpdateBefore) {
  Bandwidth bandwidth;
  const Bandwidth::Time start{};
  EXPECT_EQ(bandwidth.update(1000, start), 0);
  EXPECT_EQ(bandwidth.update(3000, start + 2s), 1000);
  EXPECT_EQ(bandwidth.update(3000, start + 3s), 0);
  EXPECT_EQ(bandwidth.update(3500, start + 3500ms), 1000);
}

TEST(Bandwidth, StartsAnewWithANewConnection) {
  Bandwidth bandwidth;
  const Bandwidth::Time start{};
  bandwidth.update(1000000, start);
  EXPECT_EQ(bandwidth.update(10, start + 1s), 0);
  EXPECT_EQ(bandwidth.update(20, start + 2s), 10);
  EXPECT_EQ(bandwidth.update(30, start + 2s), 0);
}
