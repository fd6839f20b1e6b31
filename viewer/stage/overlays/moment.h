// SPDX-License-Identifier: Apache-2.0
// Which picture is shown, and which figures over it: those that were seen in it.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "viewer/core/frame.h"
#include "viewer/stage/overlays/overlay_source.h"
#include "viewer/stage/overlays/set_history.h"

// A detection takes its time: its figures come when newer pictures are there already, in which a
// moving thing stands elsewhere. So the picture shown is held back by as much as detections were
// late in the last two seconds, half a second at most, and each picture has the figures that were
// seen in it, or else next to it. Where no new detection is visible, the newest
// picture is shown. All times are the robot's, so that its clock need not be right. Thread-bound.
class Moment {
 public:
  struct Source {
    OverlaySet set;          // never null; without items when there is nothing to draw
    bool isHidden = false;   // not to be drawn
    bool isOnFrame = false;  // tells when its figures were seen, and is drawn accordingly
    bool isOld = false;      // seen so long before the picture that things will have moved on
    std::int64_t age = 0;    // how long, in microseconds; 0 where that is not known
  };
  struct Shown {
    FramePtr frame;  // null while there are none
    std::vector<Source> sources;
    std::int64_t behind = 0;  // the newest frame, in microseconds
  };

  // Otherwise the newest picture is shown with the newest figures.
  void setOnFrame(bool on) { fIsOnFrame = on; }
  bool isOnFrame() const { return fIsOnFrame; }

  // To be called for each new picture, and may be at any other time. `frames`: those at hand, the
  // oldest first. Sources whose keys are in `hidden` don't hold the picture back.
  Shown look(const std::vector<FramePtr>& frames, std::vector<OverlaySource> sources,
             const std::set<std::string>& hidden = {});

 private:
  void follow(std::int64_t newest);
  void remember(std::vector<OverlaySource> sources, std::int64_t newest);
  bool decideHold(const std::set<std::string>& hidden, std::int64_t newest);
  FramePtr choose(const std::vector<FramePtr>& frames, bool mayGoBack);
  Source sourceAt(const std::string& key, const FramePtr& frame, bool isHidden) const;

  bool fIsOnFrame = true;
  std::map<std::string, SetHistory> fHistories;
  std::int64_t fNewest = 0;       // capture time of the newest frame at the last look
  std::int64_t fHeld = 0;         // microseconds
  std::size_t fFramesBehind = 0;  // of the frame that was shown last
  FramePtr fLastShown;
};
