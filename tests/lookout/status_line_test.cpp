// SPDX-License-Identifier: Apache-2.0
#include "robots/status_line.h"

#include <gtest/gtest.h>

#include "robots/bandwidth.h"

using Lookout::Bandwidth;
using Lookout::PictureReading;
using Lookout::PictureState;
using Lookout::RobotStatus;
using Lookout::standstillText;
using Lookout::statusText;
using State = Lookout::RobotSession::State;
using namespace std::chrono_literals;

namespace {

PictureReading live(double framesPerSecond, std::chrono::milliseconds age) {
  return {PictureState::Live, framesPerSecond, age, 0ms};
}

// The dots between the parts, typed as bars.
QString line(QString text) {
  return text.replace('|', QString::fromUtf8("\u00b7"));
}

QString dotOf(const RobotStatus& status) {
  Lookout::StatusLine shown;
  shown.show(status);
  return shown.text().section("</span>", 0, 0);
}

}  // namespace

TEST(StatusLine, TellsWhatIsKnown) {
  EXPECT_EQ(statusText({State::Connecting, 500us, 1e6, live(30, 100ms)}), "Connecting");
  EXPECT_EQ(statusText({State::Lost, 500us, 1e6, live(30, 100ms)}),
            "Connection lost, reconnecting");
  EXPECT_EQ(statusText({State::Connected, 0us, 0, {}}), line("Connected | 0.0 kB/s"));
  EXPECT_EQ(statusText({State::Connected, 12340us, 999949, {}}),
            line("Connected | round trip 12.3 ms | 999.9 kB/s"));
}

TEST(StatusLine, TellsTheFiguresOfALivePicture) {
  EXPECT_EQ(statusText({State::Connected, 840us, 37.14e6, live(29.94, 130ms)}),
            line("Live | 29.9 fps | newest picture 0.1 s ago | round trip 0.8 ms | 37.1 MB/s"));
  EXPECT_EQ(statusText({State::Connected, 0us, 1000, live(0, 990ms)}),
            line("Live | newest picture 0.9 s ago | 1.0 kB/s"));
}

TEST(StatusLine, TellsHowThePicturesCome) {
  EXPECT_EQ(statusText({State::Connected, 840us, 1e6, live(29.94, 130ms), false, "exact"}),
            line("Live | 29.9 fps | newest picture 0.1 s ago | exact | round trip 0.8 ms | "
                 "1.0 MB/s"));
  EXPECT_EQ(statusText({State::Connected, 0us, 0, {}, false, "H.264, 1.4 Mbit/s"}),
            line("Connected | H.264, 1.4 Mbit/s | 0.0 kB/s"));
  EXPECT_EQ(statusText({State::Lost, 0us, 0, {}, false, "exact"}), "Connection lost, reconnecting");
}

TEST(StatusLine, HasAWordInsteadOfTheRateOfAPictureThatDoesNotRun) {
  const auto text = [](PictureState state) {
    return statusText({State::Connected, 840us, 0, {state, 0, 12s, 3900ms}});
  };
  EXPECT_EQ(text(PictureState::NotPlaying), line("Not playing | round trip 0.8 ms | 0.0 kB/s"));
  EXPECT_EQ(text(PictureState::Paused), line("Paused | round trip 0.8 ms | 0.0 kB/s"));
  EXPECT_EQ(text(PictureState::Waiting),
            line("Waiting for a picture | round trip 0.8 ms | 0.0 kB/s"));
  EXPECT_EQ(text(PictureState::Stalled),
            line("No new picture for 3 s | round trip 0.8 ms | 0.0 kB/s"));
}

TEST(StatusLine, TellsHowLongThereIsNoPicture) {
  EXPECT_EQ(standstillText({PictureState::Stalled, 0, 12s, 1250ms}), "No new picture for 1 s");
  EXPECT_EQ(standstillText({PictureState::Stalled, 0, {}, 59999ms}), "No picture for 59 s");
  EXPECT_EQ(standstillText({PictureState::Stalled, 0, 1h, 125s}), "No new picture for 2 min 5 s");
}

TEST(StatusLine, MarksAConnectionThatIsNotEncryptedAndSaysWhatToDo) {
  Lookout::StatusLine shown;
  for (const State state : {State::Connecting, State::Connected, State::Silent, State::Lost}) {
    shown.show({state, 0us, 0, {}, true});
    EXPECT_TRUE(shown.text().contains("not encrypted")) << shown.text().toStdString();
    EXPECT_TRUE(shown.toolTip().contains("ky keys make"));
    shown.show({state, 0us, 0, {}, false});
    EXPECT_FALSE(shown.text().contains("encrypted"));
    EXPECT_TRUE(shown.toolTip().isEmpty());
  }
}

TEST(StatusLine, IsGreenOnlyWhileAllIsWell) {
  const QString green = dotOf({State::Connected, 0us, 0, live(30, 100ms)});
  EXPECT_TRUE(green.contains(QString::fromUtf8("\u25cf")));
  EXPECT_EQ(dotOf({State::Connected, 0us, 0, {}}), green) << "there is no picture to run";
  for (const PictureState state : {PictureState::NotPlaying, PictureState::Paused,
                                   PictureState::Waiting, PictureState::Stalled})
    EXPECT_NE(dotOf({State::Connected, 0us, 0, {state, 0, {}, 0ms}}), green);
  for (const State state : {State::Connecting, State::Lost, State::Closed})
    EXPECT_NE(dotOf({state, 0us, 0, live(30, 100ms)}), green);
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
