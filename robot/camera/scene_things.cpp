// SPDX-License-Identifier: Apache-2.0
#include "robot/camera/scene_things.h"

#include <cmath>

#include "robot/camera/sprite.h"

namespace robot {
namespace {

constexpr double kTurn = 2 * CV_PI;

// From -1 to 1 and back in `period` seconds.
double swing(double seconds, double period, double phase = 0) {
  return std::sin(kTurn * (std::fmod(seconds, period) / period + phase));
}

// From 0 to 1 in `period` seconds, then from 0 again.
double run(double seconds, double period) {
  return std::fmod(seconds, period) / period;
}

void paintBalloon(Sprite::Brush& brush) {
  const cv::Scalar red(48, 58, 214), cream(214, 236, 250), brown(46, 84, 130);
  brush.polygon({{34, 120}, {126, 120}, {92, 190}, {68, 190}}, red);
  brush.ellipse({80, 80}, {76, 78}, red);
  brush.polygon({{58, 130}, {102, 130}, {86, 190}, {74, 190}}, cream);
  brush.ellipse({80, 80}, {47, 78}, cream);
  brush.polygon({{70, 130}, {90, 130}, {83, 190}, {77, 190}}, red);
  brush.ellipse({80, 80}, {17, 78}, red);
  brush.line({68, 190}, {70, 214}, 1.5, brown);
  brush.line({92, 190}, {90, 214}, 1.5, brown);
  brush.rectangle({66, 212, 28, 22}, brown);
  brush.rectangle({64, 210, 32, 5}, {70, 120, 170});
}

void paintCar(Sprite::Brush& brush) {
  const cv::Scalar yellow(40, 196, 250), glass(238, 222, 196), black(34, 34, 34);
  brush.polygon({{44, 40}, {66, 8}, {124, 8}, {152, 40}}, yellow);
  brush.polygon({{56, 38}, {72, 15}, {94, 15}, {94, 38}}, glass);
  brush.polygon({{101, 38}, {101, 15}, {121, 15}, {140, 38}}, glass);
  brush.rectangle({8, 38, 174, 32}, yellow);
  brush.ellipse({12, 54}, {10, 16}, yellow);
  brush.ellipse({180, 54}, {10, 16}, yellow);
  brush.rectangle({4, 62, 182, 8}, {24, 140, 190});
  for (const double x : {46.0, 144.0}) {
    brush.ellipse({x, 70}, {20, 20}, black);
    brush.ellipse({x, 70}, {9, 9}, {190, 190, 190});
  }
  brush.ellipse({184, 50}, {5, 6}, {220, 250, 255});
}

void paintAirship(Sprite::Brush& brush) {
  const cv::Scalar silver(216, 206, 198), shade(172, 158, 146), blue(150, 92, 60);
  brush.polygon({{10, 14}, {54, 50}, {10, 86}}, blue);
  brush.ellipse({150, 50}, {130, 42}, shade);
  brush.ellipse({150, 46}, {128, 37}, silver);
  brush.rectangle({96, 40, 110, 12}, blue);
  brush.rectangle({116, 90, 74, 18}, {90, 70, 62});
  for (double x = 122; x < 186; x += 16) brush.rectangle({x, 94, 9, 8}, {120, 226, 255});
  brush.ellipse({276, 50}, {5, 5}, {80, 80, 255});
}

void paintTram(Sprite::Brush& brush) {
  const cv::Scalar green(96, 150, 44), light(150, 232, 255), dark(40, 36, 34);
  brush.line({170, 4}, {190, 30}, 3, {120, 120, 120});
  brush.rectangle({6, 30, 348, 100}, green);
  brush.rectangle({6, 30, 348, 12}, {230, 238, 240});
  brush.rectangle({6, 98, 348, 8}, {230, 238, 240});
  for (double x = 20; x < 330; x += 56) brush.rectangle({x, 50, 42, 38}, light);
  brush.rectangle({2, 126, 356, 10}, dark);
  for (const double x : {60.0, 100.0, 260.0, 300.0}) {
    brush.ellipse({x, 138}, {14, 14}, dark);
    brush.ellipse({x, 138}, {5, 5}, {150, 150, 150});
  }
}

}  // namespace

std::unique_ptr<SceneItem> makeBalloon() {
  return std::make_unique<MovingSprite>("balloon", Sprite({160, 240}, paintBalloon), [](double t) {
    return cv::Point2d(0.54 + 0.1 * swing(t, 17), 0.3 + 0.1 * swing(t, 9.5));
  });
}

std::unique_ptr<SceneItem> makeCar() {
  return std::make_unique<MovingSprite>("car", Sprite({192, 92}, paintCar), [](double t) {
    return cv::Point2d(-0.1 + 1.2 * run(t, 8), 0.862);
  });
}

std::unique_ptr<SceneItem> makeAirship() {
  return std::make_unique<MovingSprite>("airship", Sprite({292, 112}, paintAirship), [](double t) {
    return cv::Point2d(-0.15 + 1.3 * run(t, 26), 0.26 + 0.04 * swing(t, 7));
  });
}

std::unique_ptr<SceneItem> makeTram() {
  return std::make_unique<MovingSprite>("tram", Sprite({360, 154}, paintTram), [](double t) {
    return cv::Point2d(0.5 + 0.34 * swing(t, 16), 0.852);
  });
}

}  // namespace robot
