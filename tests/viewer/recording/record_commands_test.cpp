// SPDX-License-Identifier: Apache-2.0
// Photos and films: what reaches the robot, which service is asked, and what the log says.
#include <gtest/gtest.h>

#include "support/viewer_on_robot.h"
#include "support/wait.h"
#include "viewer/core/videorecordermodel.h"

using Ky::KyValue;
using Lines = std::vector<std::string>;

namespace {

const std::string kNoModule = "the robot has no module of this name";

ScriptedModule::Answer failing(const std::string& text) {
  return [text](const KyValue::Array&) -> KyValue { throw Ky::KyError(text); };
}

// What the module asks of the widget, in order.
class Gui : public GCInterface {
 public:
  void updateImage() override { asked.push_back("updateImage"); }
  void updateVideoRecorderView() override { asked.push_back("updateVideoRecorderView"); }
  void selectVideoRecorderView() override { asked.push_back("selectVideoRecorderView"); }
  void selectVideoSettingView() override { asked.push_back("selectVideoSettingView"); }

  Lines asked;
};

class Recording : public testing::Test {
 protected:
  Recording() { viewer.module->setGui(&gui); }
  ~Recording() override {
    viewer.module->setGui(nullptr);
    recorder().fIsRecording = false;
  }

  VideoRecorderModel& recorder() { return *viewer.model().fVideoRecorder; }

  bool toggle(const std::string& name = "clip") {
    bool recorded = true;
    viewer.module->toggleVideoRecord(name, 25, recorded);
    return recorded;
  }

  boost::shared_ptr<ScriptedModule> addRecorder(const KyValue& report) {
    const auto service = viewer.robot.add("KyVideoRecorder");
    service->answer("startRecording", KyValue());
    service->answer("stopRecording", report);
    return service;
  }

  boost::shared_ptr<ScriptedModule> addToolbox(const KyValue& report) {
    const auto toolbox = viewer.robot.add("KyVisionToolbox");
    for (const char* method : {"takePicture", "startVideoRecord"})
      toolbox->answer(method, KyValue());
    toolbox->answer("stopVideoRecord", report);
    return toolbox;
  }

  Gui gui;
  ViewerOnRobot viewer;
};

const KyValue kReport = KyValue::array({150, "/home/tam/recordings/cameras/clip.avi"});
const Lines kNoRecorder = {
    "warning toggleVideoRecord: Error while getting proxy on KyVideoRecorder: " + kNoModule,
    "warning toggleVideoRecord: Trying to use KyVisionToolbox instead..."};

Lines and_(Lines lines, const std::string& last) {
  lines.push_back(last);
  return lines;
}

}  // namespace

TEST_F(Recording, TakesAPhotoWithTheServiceForIt) {
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", KyValue::array({"anything"}));
  viewer.module->takePicture();
  EXPECT_EQ(viewer.robot.calls(),
            Lines{"KyPhotoCapture.takePicture(\"/home/tam/recordings/cameras/\", "
                  "\"lookout_photo\")"});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(Recording, SaysThatAPhotoFailedAndTriesNothingElse) {
  viewer.robot.add("KyPhotoCapture")->answer("takePicture", failing("no space"));
  addToolbox(kReport);
  viewer.module->takePicture();
  EXPECT_EQ(viewer.robot.calls().size(), 1u);
  EXPECT_EQ(viewer.log.lines(), Lines{"error takePicture: Unable to take a picture: no space"});
}

TEST_F(Recording, TakesAPhotoWithTheToolboxWhenThereIsNoService) {
  const auto toolbox = addToolbox(kReport);
  const Lines warnings = {
      "warning takePicture: Error while getting proxy on KyPhotoCapture: " + kNoModule,
      "warning takePicture: Trying to use KyVisionToolbox instead..."};
  viewer.module->takePicture();
  EXPECT_EQ(viewer.robot.calls(), Lines{"KyVisionToolbox.takePicture()"});
  EXPECT_EQ(viewer.log.lines(), warnings);

  viewer.log.clear();
  toolbox->answer("takePicture", failing("no film"));
  viewer.module->takePicture();
  EXPECT_EQ(viewer.log.lines(),
            and_(warnings, "error takePicture: Unable to take a picture: no film"));

  viewer.log.clear();
  viewer.robot.remove("KyVisionToolbox");
  viewer.module->takePicture();
  EXPECT_EQ(viewer.log.lines(),
            and_(warnings,
                 "error takePicture: Error while getting proxy on KyVisionToolbox: " + kNoModule));
}

TEST_F(Recording, StartsAndStopsWithTheServiceForIt) {
  addRecorder(kReport);
  EXPECT_FALSE(toggle());
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(recorder().fRecordName, "clip");
  EXPECT_EQ(recorder().fFrameCount, 0);
  EXPECT_TRUE(toggle());
  EXPECT_FALSE(recorder().fIsRecording);
  EXPECT_EQ(recorder().fFrameCount, 150);
  EXPECT_EQ(recorder().fFilePath, "/home/tam/recordings/cameras/clip.avi");
  EXPECT_EQ(viewer.robot.calls(),
            (Lines{"KyVideoRecorder.startRecording(\"/home/tam/recordings/cameras/\", \"clip\")",
                   "KyVideoRecorder.stopRecording()"}));
  EXPECT_EQ(viewer.log.lines(), Lines{});
  EXPECT_EQ(gui.asked, (Lines{"selectVideoRecorderView", "updateVideoRecorderView",
                              "selectVideoRecorderView", "updateVideoRecorderView"}));
}

TEST_F(Recording, StartsAndStopsWithTheToolboxWhenThereIsNoService) {
  addToolbox(kReport);
  EXPECT_FALSE(toggle());
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(viewer.log.lines(), kNoRecorder);
  viewer.log.clear();
  EXPECT_TRUE(toggle());
  EXPECT_EQ(recorder().fFrameCount, 150);
  EXPECT_FALSE(recorder().fIsRecording);
  EXPECT_EQ(viewer.log.lines(), kNoRecorder);
  EXPECT_EQ(viewer.robot.calls(), (Lines{"KyVisionToolbox.startVideoRecord(\"clip\")",
                                         "KyVisionToolbox.stopVideoRecord()"}));
}

TEST_F(Recording, FallsBackAlsoWhenTheServiceItselfFails) {
  const auto service = addRecorder(kReport);
  addToolbox(kReport);
  service->answer("startRecording", failing("camera busy"));
  EXPECT_FALSE(toggle());
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(viewer.log.lines(),
            (Lines{"warning toggleVideoRecord: Error while getting proxy on KyVideoRecorder: "
                   "camera busy",
                   "warning toggleVideoRecord: Trying to use KyVisionToolbox instead..."}));
  service->answer("stopRecording", failing("not mine"));
  EXPECT_TRUE(toggle());
  EXPECT_EQ(viewer.robot.calls(),
            (Lines{"KyVideoRecorder.startRecording(\"/home/tam/recordings/cameras/\", \"clip\")",
                   "KyVisionToolbox.startVideoRecord(\"clip\")", "KyVideoRecorder.stopRecording()",
                   "KyVisionToolbox.stopVideoRecord()"}));
}

TEST_F(Recording, StaysIdleWhenNobodyCanStart) {
  EXPECT_FALSE(toggle());
  EXPECT_FALSE(recorder().fIsRecording);
  EXPECT_EQ(
      viewer.log.lines(),
      and_(kNoRecorder,
           "error toggleVideoRecord: Error while getting proxy on KyVisionToolbox: " + kNoModule));
  EXPECT_EQ(gui.asked, (Lines{"selectVideoRecorderView", "updateVideoRecorderView"}));

  viewer.log.clear();
  addToolbox(kReport)->answer("startVideoRecord", failing("no disk"));
  EXPECT_FALSE(toggle());
  EXPECT_FALSE(recorder().fIsRecording);
  EXPECT_EQ(viewer.log.lines(),
            and_(kNoRecorder, "error toggleVideoRecord: Unable to start video record: no disk"));
}

TEST_F(Recording, StaysRecordingWhenNobodyCanStop) {
  recorder().fIsRecording = true;
  EXPECT_FALSE(toggle());
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(
      viewer.log.lines(),
      and_(kNoRecorder,
           "error toggleVideoRecord: Error while getting proxy on KyVisionToolbox: " + kNoModule));

  viewer.log.clear();
  addToolbox(kReport)->answer("stopVideoRecord", failing("stuck"));
  EXPECT_FALSE(toggle());
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(viewer.log.lines(),
            and_(kNoRecorder, "error toggleVideoRecord: Unable to stop video record: stuck"));
}

TEST_F(Recording, StaysRecordingUntilTheRobotReportsAFilm) {
  const auto service = addRecorder(kReport);
  ASSERT_FALSE(toggle());
  recorder().fFilePath = "before";
  for (const KyValue& nothing : {KyValue(), KyValue::array(), KyValue(7), KyValue("text")}) {
    service->answer("stopRecording", nothing);
    EXPECT_FALSE(toggle()) << nothing.toString();
    EXPECT_TRUE(recorder().fIsRecording);
    EXPECT_EQ(recorder().fFilePath, "before");
  }
  EXPECT_EQ(viewer.log.lines(), Lines{});
  service->answer("stopRecording", kReport);
  EXPECT_TRUE(toggle());
}

TEST_F(Recording, LogsAReportThatIsNone) {
  const auto service = addRecorder(kReport);
  ASSERT_FALSE(toggle());
  for (const KyValue& wrong :
       {KyValue::array({5}), KyValue::array({"5", "path"}), KyValue::array({5, 6}),
        KyValue::array({std::int64_t{1} << 40, "path"})}) {
    service->answer("stopRecording", wrong);
    viewer.log.clear();
    EXPECT_FALSE(toggle()) << wrong.toString();
    EXPECT_TRUE(recorder().fIsRecording);
    EXPECT_EQ(recorder().fFrameCount, 0);
    EXPECT_EQ(recorder().fFilePath, "");
    ASSERT_EQ(viewer.log.lines().size(), 1u);
    EXPECT_EQ(
        viewer.log.lines()[0].rfind("error toggleVideoRecord: Unable to stop video record: ", 0),
        0u);
  }
}

TEST_F(Recording, RefusesAnInvalidNameBeforeAnythingHappens) {
  addRecorder(kReport);
  bool recorded = true;
  try {
    viewer.module->toggleVideoRecord("my video", 0, recorded);
    ADD_FAILURE();
  } catch (const Ky::KyError& error) {
    EXPECT_STREQ(error.what(), "Invalid video name.");
    EXPECT_EQ(error.module(), "Periscope");
    EXPECT_EQ(error.method(), "toggleVideoRecord");
  }
  EXPECT_FALSE(recorded);
  EXPECT_EQ(viewer.robot.calls(), Lines{});
  EXPECT_EQ(gui.asked, Lines{"selectVideoRecorderView"});
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(Recording, IsNotStoppedUnderAnInvalidName) {
  addRecorder(kReport);
  toggle();
  EXPECT_THROW(toggle("2clip"), Ky::KyError);
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(recorder().fRecordName, "clip");
}

TEST_F(Recording, TakesTheNameOfTheStopToo) {
  addRecorder(kReport);
  toggle("clip");
  toggle("other");
  EXPECT_EQ(recorder().fRecordName, "other");
}

TEST_F(Recording, DoesNothingWithoutARecorder) {
  const auto kept = viewer.model().fVideoRecorder;
  viewer.model().fVideoRecorder.reset();
  addRecorder(kReport);
  EXPECT_FALSE(toggle());
  EXPECT_FALSE(toggle("no name"));
  EXPECT_EQ(viewer.robot.calls(), Lines{});
  EXPECT_EQ(gui.asked, Lines{});
  viewer.model().fVideoRecorder = kept;
}

TEST_F(Recording, NeedsNoWidget) {
  viewer.module->setGui(nullptr);
  addRecorder(kReport);
  EXPECT_FALSE(toggle());
  EXPECT_TRUE(toggle());
}

namespace {

const std::string kClip = "/home/tam/recordings/cameras/clip.avi";

KyValue stateOf(bool isRecording, int frames, const std::string& path,
                const std::string& trouble = "") {
  return KyValue::array({isRecording, frames, path, trouble});
}

// On a robot whose recorder says what it does.
class FilmThatGoesOn : public Recording {
 protected:
  boost::shared_ptr<ScriptedModule> addTellingRecorder(const KyValue& state,
                                                       std::vector<std::string> offers = {
                                                           "getState"}) {
    const auto service = viewer.robot.add("KyVideoRecorder", offers);
    service->answer("getState", state);
    service->answer("stopRecording", kReport);
    EXPECT_TRUE(waitUntil([&] { return viewer.broker->offers("KyVideoRecorder", "getState"); }));
    return service;
  }
  void expectNotRecording() {
    EXPECT_FALSE(recorder().fIsRecording);
    EXPECT_EQ(recorder().fFrameCount, 0);
    EXPECT_EQ(gui.asked, Lines{});
  }
  const Lines kOneQuestion = {"KyVideoRecorder.getState()"};
};

}  // namespace

TEST_F(FilmThatGoesOn, IsTakenUpAndStoppedAsIfThisViewerHadBegunIt) {
  addTellingRecorder(stateOf(true, 42, kClip));
  EXPECT_TRUE(viewer.module->takeUpFilm("clip", kClip));
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(recorder().fRecordName, "clip");
  EXPECT_EQ(recorder().fFrameCount, 42);
  EXPECT_EQ(gui.asked, (Lines{"selectVideoRecorderView", "updateVideoRecorderView"}));
  EXPECT_EQ(viewer.robot.takeCalls(), kOneQuestion);
  EXPECT_TRUE(toggle());
  EXPECT_EQ(viewer.robot.calls(), Lines{"KyVideoRecorder.stopRecording()"});
  EXPECT_EQ(recorder().fFrameCount, 150);
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(FilmThatGoesOn, IsTakenOverWhereTheRobotOffersIt) {
  const auto service = addTellingRecorder(stateOf(true, 42, kClip), {"getState", "takeOver"});
  service->answer("takeOver", false);  // another film came between the two calls
  EXPECT_FALSE(viewer.module->takeUpFilm("clip", kClip));
  expectNotRecording();
  viewer.robot.takeCalls();
  service->answer("takeOver", true);
  EXPECT_FALSE(viewer.module->takeUpFilm("clip", "/home/tam/other.avi"));
  EXPECT_EQ(viewer.robot.takeCalls(), kOneQuestion);
  EXPECT_TRUE(viewer.module->takeUpFilm("clip", kClip));
  EXPECT_EQ(viewer.robot.calls(),
            (Lines{"KyVideoRecorder.getState()", "KyVideoRecorder.takeOver(\"" + kClip + "\")"}));
}

TEST_F(FilmThatGoesOn, EndsWhenTheViewerThatTookItUpIsClosed) {
  addTellingRecorder(stateOf(true, 42, kClip));
  ASSERT_TRUE(viewer.module->takeUpFilm("clip", kClip));
  viewer.robot.takeCalls();
  const auto model = viewer.module->model();
  viewer.module.reset();
  viewer.broker->unregisterModule("Periscope");
  EXPECT_EQ(viewer.robot.calls(),
            (Lines{"KyVideoDevice.unsubscribe(\"viewer_1\")", "KyVideoRecorder.stopRecording()"}));
  viewer.module = Ky::KyModule::createModule<Module>(viewer.broker);
}

TEST_F(FilmThatGoesOn, IsLeftAloneWhenItIsAnothers) {
  for (const KyValue& state :
       {stateOf(true, 42, "/home/tam/recordings/cameras/clip_2.avi"), stateOf(false, 0, "")}) {
    addTellingRecorder(state);
    EXPECT_FALSE(viewer.module->takeUpFilm("clip", kClip)) << state.toString();
    EXPECT_FALSE(viewer.module->takeUpFilm("clip", "")) << state.toString();
    expectNotRecording();
    EXPECT_EQ(viewer.robot.takeCalls(), kOneQuestion);
    viewer.robot.remove("KyVideoRecorder");
  }
  EXPECT_EQ(viewer.log.lines(), Lines{});
}

TEST_F(FilmThatGoesOn, IsNotAskedForWhereTheRobotDoesNotOfferToTell) {
  addRecorder(kReport)->answer("getState", stateOf(true, 42, kClip));
  EXPECT_FALSE(viewer.module->takeUpFilm("clip", kClip));
  expectNotRecording();
  EXPECT_EQ(viewer.robot.calls(), Lines{});
}

TEST_F(FilmThatGoesOn, IsStillToBeStoppedWhenItHasEndedByItself) {
  addTellingRecorder(stateOf(false, 42, kClip, "no room on the disk"));
  EXPECT_TRUE(viewer.module->takeUpFilm("clip", kClip));
  EXPECT_TRUE(recorder().fIsRecording);
  EXPECT_EQ(viewer.log.lines(),
            Lines{"warning takeUpFilm: The film has ended by itself: no room on the disk"});
}

TEST_F(FilmThatGoesOn, IsNotTakenUpOverOneThatRunsOrUnderANameThatIsNone) {
  const auto service = addTellingRecorder(stateOf(true, 42, kClip));
  service->answer("startRecording", KyValue());
  EXPECT_FALSE(viewer.module->takeUpFilm("my clip", kClip));
  expectNotRecording();
  toggle("other");
  viewer.robot.takeCalls();
  EXPECT_FALSE(viewer.module->takeUpFilm("clip", kClip));
  EXPECT_EQ(recorder().fRecordName, "other");
  EXPECT_EQ(viewer.robot.calls(), Lines{});
}

TEST_F(FilmThatGoesOn, IsNotTakenUpFromAnAnswerThatIsNone) {
  const auto service = addTellingRecorder(KyValue());
  for (const KyValue& wrong :
       {KyValue(), KyValue(7), KyValue::array({true, 42, kClip}),
        KyValue::array({true, "42", kClip, ""}), KyValue::array({true, 42, 43, ""})}) {
    service->answer("getState", wrong);
    viewer.log.clear();
    EXPECT_FALSE(viewer.module->takeUpFilm("clip", kClip)) << wrong.toString();
    expectNotRecording();
    ASSERT_EQ(viewer.log.lines().size(), 1u) << wrong.toString();
    EXPECT_EQ(viewer.log.lines()[0].rfind("error takeUpFilm: Unable to ask for the film: ", 0), 0u);
  }
}

TEST_F(FilmThatGoesOn, IsKnownByThePathThatTheRobotToldOrWouldGiveIt) {
  const auto service = addTellingRecorder(stateOf(true, 42, kClip));
  for (const auto& [told, path] :
       {std::pair<KyValue, std::string>{KyValue(), kClip},
        {"/home/tam/recordings/cameras/clip_2.avi", "/home/tam/recordings/cameras/clip_2.avi"}}) {
    service->answer("startRecording", told);
    toggle();
    EXPECT_EQ(recorder().fRunningPath, path);
    toggle();
  }
}
