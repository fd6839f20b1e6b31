// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_line.h"

#include <gtest/gtest.h>

namespace {

using Lookout::PictureReading;
using Lookout::PictureState;
using std::chrono::milliseconds;

StageStatus statusOf(const PictureReading& reading) {
  StageStatus status;
  status.picture = reading;
  status.size = {640, 480};
  status.encoding = "exact";
  status.dropped = 2;
  status.scale = 1.5;
  return status;
}

struct Said {
  PictureReading reading;
  const char* text;
};

class StageText : public testing::TestWithParam<Said> {};

TEST_P(StageText, SaysHowThePictureIs) {
  EXPECT_EQ(stageText(statusOf(GetParam().reading)).toStdString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , StageText,
    testing::Values(
        Said{{PictureState::Live, 29.94, milliseconds(40), milliseconds(0)},
             "Live · 29.9 fps · newest picture 0.0 s ago · 640 x 480 · exact · 2 dropped · 150 %"},
        Said{{PictureState::Paused, 0, milliseconds(4000), milliseconds(0)},
             "Paused · 640 x 480 · exact · 2 dropped · 150 %"},
        Said{{PictureState::Waiting, 0, std::nullopt, milliseconds(0)},
             "Waiting for a picture · 640 x 480 · exact · 2 dropped · 150 %"},
        Said{{PictureState::Stalled, 0, milliseconds(3000), milliseconds(3000)},
             "No new picture for 3 s · 640 x 480 · exact · 2 dropped · 150 %"},
        Said{{PictureState::NotPlaying, 0, std::nullopt, milliseconds(0)},
             "Not playing · 640 x 480 · exact · 2 dropped · 150 %"}));

TEST(StageLine, SaysLittleBeforeTheFirstPicture) {
  EXPECT_EQ(stageText(StageStatus()).toStdString(), "Not playing");
}

TEST(StageLine, SaysThatThisViewIsFrozenWhileTheRestGoesOn) {
  StageStatus status = statusOf({PictureState::Live, 29.94, milliseconds(40), milliseconds(0)});
  status.frozen = true;
  EXPECT_EQ(stageText(status).toStdString(), "Frozen · 640 x 480 · exact · 2 dropped · 150 %");
}

TEST(StageLine, ForcesNoWidth) {
  StageLine line;
  line.show(statusOf({PictureState::Live, 29.94, milliseconds(40), milliseconds(0)}));
  EXPECT_EQ(line.sizePolicy().horizontalPolicy(), QSizePolicy::Ignored);
}

}  // namespace
