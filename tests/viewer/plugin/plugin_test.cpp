// SPDX-License-Identifier: Apache-2.0
// The plug-in as a host meets it: a file.
#include <elf.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <set>

#include "lookout/lookout_widget.h"
#include "lookout/widget_interface.h"
#include "scripted_tcp_robot.h"
#include "support/log_capture.h"
#include "support/wait.h"

namespace {

constexpr const char* kVerificationData =
    "pattern=QT_PLUGIN_VERIFICATION_DATA\nversion=4.8.1\ndebug=false\n"
    "buildkey=i386 linux g++-4 full-config";

class Plugin : public testing::Test {
 protected:
  Plugin() : fLoader(PERISCOPE_PLUGIN) {}

  QObject* root() {
    QObject* object = fLoader.instance();
    EXPECT_NE(object, nullptr) << fLoader.errorString().toStdString();
    return object;
  }
  WidgetInterface* plugin() { return qobject_cast<WidgetInterface*>(root()); }

  // The viewer of a robot; its broker ends with the test.
  std::unique_ptr<LookoutWidget> open(const ScriptedTcpRobot& robot) {
    QWidget* widget = plugin()->getWidget(nullptr, "127.0.0.1", robot.port(), PERISCOPE_ICONS);
    fBrokers.push_back(plugin()->broker());
    EXPECT_EQ(plugin()->widget(), widget);
    return std::unique_ptr<LookoutWidget>(qobject_cast<LookoutWidget*>(widget));
  }
  ~Plugin() override {
    for (const auto& broker : fBrokers) broker->shutdown();
    delete fLoader.instance();
  }

  QPluginLoader fLoader;
  std::vector<boost::shared_ptr<Ky::KyBroker>> fBrokers;
};

TEST_F(Plugin, CarriesTheInterfacesIdentifier) {
  EXPECT_EQ(fLoader.metaData().value("IID").toString(), "com.korvane.lookout.WidgetInterface/0.1");
  EXPECT_EQ(fLoader.metaData().value("className").toString(), "Interface");
}

TEST_F(Plugin, SaysInItsMetadataWhatBrokerItAsksFor) {
  ScriptedTcpRobot robot;
  robot.addVideoDevice();
  const auto widget = open(robot);
  const QJsonObject own = fLoader.metaData().value("MetaData").toObject();
  EXPECT_EQ(own.value("brokerName").toString().toStdString(), fBrokers[0]->getName());
}

TEST_F(Plugin, MakesOneObjectAndAnotherWhenThatIsDeleted) {
  using Instance = QObject* (*)();
  const auto instance =
      reinterpret_cast<Instance>(QLibrary::resolve(PERISCOPE_PLUGIN, "qt_plugin_instance"));
  ASSERT_NE(instance, nullptr);
  QObject* first = instance();
  EXPECT_EQ(instance(), first);
  EXPECT_EQ(first->parent(), nullptr);
  first->setObjectName("first");
  delete first;
  QObject* second = instance();
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->objectName(), "");
  EXPECT_EQ(instance(), second);
}

TEST_F(Plugin, IsAWidgetInterfaceByEveryName) {
  QObject* object = root();
  WidgetInterface* expected = dynamic_cast<WidgetInterface*>(object);
  ASSERT_NE(expected, nullptr);
  EXPECT_EQ(qobject_cast<WidgetInterface*>(object), expected);
  EXPECT_EQ(object->qt_metacast("com.korvane.lookout.WidgetInterface/0.1"), expected);
  EXPECT_EQ(object->qt_metacast("WidgetInterface"), expected);
  EXPECT_EQ(object->qt_metacast("Interface"), object);
  EXPECT_EQ(object->qt_metacast("QObject"), object);
  EXPECT_EQ(object->qt_metacast("Something"), nullptr);
  // QObject comes first, the interface second.
  EXPECT_NE(static_cast<void*>(expected), static_cast<void*>(object));
}

TEST_F(Plugin, AddsNothingToAnObject) {
  const QMetaObject* meta = root()->metaObject();
  EXPECT_STREQ(meta->className(), "Interface");
  EXPECT_EQ(meta->methodCount(), QObject::staticMetaObject.methodCount());
  EXPECT_EQ(meta->propertyCount(), QObject::staticMetaObject.propertyCount());
}

TEST_F(Plugin, NeedsARobotsAddress) {
  EXPECT_TRUE(plugin()->requiresConnection());
}

TEST_F(Plugin, TellsItsVerificationData) {
  using Query = const char* (*)();
  const auto query = reinterpret_cast<Query>(
      QLibrary::resolve(PERISCOPE_PLUGIN, "qt_plugin_query_verification_data"));
  ASSERT_NE(query, nullptr);
  EXPECT_STREQ(query(), kVerificationData);
}

// The bytes of a section of a 64-bit ELF file.
QByteArray section(const QString& path, const char* name) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QByteArray bytes = file.readAll();
  const auto* header = reinterpret_cast<const Elf64_Ehdr*>(bytes.data());
  const auto* sections = reinterpret_cast<const Elf64_Shdr*>(bytes.data() + header->e_shoff);
  const char* names = bytes.data() + sections[header->e_shstrndx].sh_offset;
  for (int i = 0; i < header->e_shnum; ++i) {
    if (std::strcmp(names + sections[i].sh_name, name) == 0)
      return bytes.mid(static_cast<qsizetype>(sections[i].sh_offset),
                       static_cast<qsizetype>(sections[i].sh_size));
  }
  return {};
}

TEST_F(Plugin, KeepsTheVerificationDataInItsSection) {
  EXPECT_TRUE(
      section(PERISCOPE_PLUGIN, ".qtplugin").startsWith(QByteArray(kVerificationData) + '\0'));
}

TEST_F(Plugin, BuildsTheViewerOfARobot) {
  ScriptedTcpRobot robot;
  robot.addVideoDevice();
  const auto widget = open(robot);
  ASSERT_NE(widget, nullptr);
  EXPECT_STREQ(widget->metaObject()->className(), "Widget");
  EXPECT_EQ(widget->size(), QSize(950, 660));
  EXPECT_EQ(fBrokers[0]->getName(), "PeriscopeBroker");
  EXPECT_TRUE(fBrokers[0]->isModulePresent("Periscope"));
  for (const QPushButton* button : widget->findChildren<QPushButton*>()) {
    if (button->toolTip().isEmpty() || !button->text().isEmpty()) continue;
    EXPECT_FALSE(button->icon().pixmap(30, 30).isNull()) << button->toolTip().toStdString();
  }
}

TEST_F(Plugin, SubscribesToTheCameraBeforeItBuildsTheWidget) {
  ScriptedTcpRobot robot;
  robot.addVideoDevice();
  const auto widget = open(robot);
  const auto calls = robot.calls->calls();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front(), "KyVideoDevice.subscribe(\"\", 0, 9, 5)");
}

using Calls = std::set<std::string>;

Calls asSet(const std::vector<std::string>& calls) {
  return {calls.begin(), calls.end()};
}

// A robot that has all that a viewer asks for when it is opened.
boost::shared_ptr<ScriptedModule> addAll(ScriptedTcpRobot& robot, int cameraModel) {
  const auto device = robot.addVideoDevice();
  device->answer("getCameraModelID", cameraModel);
  robot.add("KyLauncher")->answer("isModulePresent", true);
  return device;
}

TEST_F(Plugin, AsksARobotThatOffersItForEverythingBeforeItWaitsForTheSubscription) {
  const std::string subscription = "KyVideoDevice.subscribe(\"\", 0, 9, 5)";
  Calls plainly;
  for (const int model : {1, 2}) {
    ScriptedTcpRobot robot;
    addAll(robot, model);
    open(robot);
    const auto calls = robot.calls->take();
    EXPECT_EQ(calls.front(), subscription);
    plainly.insert(calls.begin(), calls.end());
  }
  for (const int model : {1, 2}) {
    ScriptedTcpRobot robot(ScriptedTcpRobot::Offers::Pipelining);
    // Of both models, since it is not known yet which one it is.
    bool isComplete = false;
    addAll(robot, model)->answer("subscribe", [&](const Ky::KyValue::Array&) {
      isComplete = waitUntil([&] { return asSet(robot.calls->calls()) == plainly; });
      return Ky::KyValue("viewer_1");
    });
    open(robot);
    EXPECT_TRUE(isComplete) << model;
    const auto calls = robot.calls->take();
    EXPECT_EQ(calls.size(), plainly.size()) << "each once, and nothing afterwards";
  }
}

TEST_F(Plugin, WaitsForNoAnswerBeforeItHasAskedAnotherModuleToo) {
  ScriptedTcpRobot robot(ScriptedTcpRobot::Offers::Pipelining);
  std::atomic<bool> deviceAsked = false;
  std::atomic<bool> launcherAsked = false;
  std::atomic<bool> inVain = false;
  robot.addVideoDevice()->answer("getCameraModelID", [&](const Ky::KyValue::Array&) {
    deviceAsked = true;
    if (!waitUntil([&] { return launcherAsked.load(); })) inVain = true;
    return Ky::KyValue(2);
  });
  robot.add("KyLauncher")->answer("isModulePresent", [&](const Ky::KyValue::Array&) {
    launcherAsked = true;
    if (!waitUntil([&] { return deviceAsked.load(); })) inVain = true;
    return Ky::KyValue(true);
  });
  const auto widget = open(robot);
  EXPECT_FALSE(inVain);
  bool hasGainOfModelTwo = false;
  for (const QSlider* slider : widget->findChildren<QSlider*>())
    hasGainOfModelTwo |= slider->accessibleName() == "Gain";
  EXPECT_TRUE(hasGainOfModelTwo);
}

TEST_F(Plugin, TellsTheWidgetOfEachPicture) {
  std::atomic<int> second = 0;
  ScriptedTcpRobot robot;
  const auto device = robot.addVideoDevice();
  device->answer("getImageRemote", [&](const Ky::KyValue::Array&) {
    const std::vector<std::uint8_t> pixels(8 * 6, 99);
    return Ky::KyValue::array({8, 6, 1, 0, ++second, 0, Ky::KyBinary(pixels)});
  });
  const auto widget = open(robot);
  widget->show();
  widget->setPlaying(true);
  EXPECT_TRUE(waitUntil([&] { return widget->framesPainted() > 1; }));
}

TEST_F(Plugin, GivesTheWidgetToItsParent) {
  ScriptedTcpRobot robot;
  robot.addVideoDevice();
  QWidget dock;
  QWidget* widget = plugin()->getWidget(&dock, "127.0.0.1", robot.port(), PERISCOPE_ICONS);
  fBrokers.push_back(plugin()->broker());
  EXPECT_EQ(widget->parent(), &dock);
}

TEST_F(Plugin, BuildsAViewerWithoutACamera) {
  LogCapture log;
  ScriptedTcpRobot robot;
  bool boxShown = false;
  QTimer::singleShot(0, [&] { boxShown = QApplication::activeModalWidget() != nullptr; });
  const auto widget = open(robot);
  QCoreApplication::processEvents();
  EXPECT_NE(widget, nullptr);
  EXPECT_FALSE(boxShown);
  const auto lines = log.lines();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) {
                            return line.rfind(
                                       "error Module: Error while getting proxy on "
                                       "KyVideoDevice: ",
                                       0) == 0;
                          }),
            1);
}

TEST_F(Plugin, BuildsAViewerThoughTheCameraRefuses) {
  LogCapture log;
  ScriptedTcpRobot robot;
  robot.addVideoDevice()->answer(
      "subscribe", [](const Ky::KyValue::Array&) -> Ky::KyValue { throw Ky::KyError("no room"); });
  const auto widget = open(robot);
  EXPECT_NE(widget, nullptr);
  const auto lines = log.lines();
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      "error askForVIM: Error while getting proxy on KyVideoDevice: no room"),
            lines.end());
}

TEST_F(Plugin, LetsTheHostSeeThatARobotCannotBeReached) {
  int port = 0;
  {
    const ScriptedTcpRobot gone;
    port = gone.port();
  }
  EXPECT_THROW(plugin()->getWidget(nullptr, "127.0.0.1", port, PERISCOPE_ICONS), Ky::KyError);
  EXPECT_EQ(plugin()->broker(), nullptr);
  EXPECT_EQ(plugin()->widget(), nullptr);
}

TEST_F(Plugin, IsNoViewerOfARobotThatHasAModuleOfItsName) {
  for (const auto offers :
       {ScriptedTcpRobot::Offers::Nothing, ScriptedTcpRobot::Offers::Pipelining}) {
    ScriptedTcpRobot robot(offers);
    robot.addVideoDevice();
    robot.add("Periscope")->answer("whose", "the robot's");
    std::string why;
    try {
      open(robot);
    } catch (const Ky::KyError& error) {
      why = error.what();
    }
    EXPECT_EQ(why, "the robot has a module of this name of its own");
    fBrokers.push_back(plugin()->broker());
    EXPECT_EQ(fBrokers.back()->call("Periscope", "whose", {}).asString(), "the robot's");
  }
}

TEST_F(Plugin, MakesAModuleForEachOfTwoRobots) {
  ScriptedTcpRobot one;
  ScriptedTcpRobot other;
  one.addVideoDevice();
  other.addVideoDevice();
  const auto first = open(one);
  const auto second = open(other);
  EXPECT_NE(first, second);
  EXPECT_NE(fBrokers[0], fBrokers[1]);
  for (ScriptedTcpRobot* robot : {&one, &other})
    EXPECT_TRUE(waitUntil([&] { return robot->broker->isModulePresent("Periscope"); }));
  fBrokers[0]->shutdown();
  EXPECT_TRUE(waitUntil([&] { return !one.broker->isModulePresent("Periscope"); }));
  EXPECT_TRUE(other.broker->isModulePresent("Periscope"));
}

TEST_F(Plugin, SaysGoodbyeToTheCameraWhenTheHostEndsTheRobot) {
  ScriptedTcpRobot robot;
  robot.addVideoDevice();
  auto widget = open(robot);
  widget.reset();
  robot.calls->take();
  fBrokers[0]->shutdown();
  const auto calls = robot.calls->calls();
  EXPECT_EQ(calls, std::vector<std::string>({"KyVideoDevice.unsubscribe(\"viewer_1\")"}));
}

// The robots that lines of a function are about.
std::set<std::string> subjectsOf(const LogCapture& log, const std::string& function) {
  std::set<std::string> subjects;
  for (const auto& record : log.records())
    if (record.category == "periscope" && record.function == function)
      subjects.insert(record.subject);
  return subjects;
}

TEST_F(Plugin, NamesTheRobotThatALineOfTheLogIsAboutOnEachThread) {
  ScriptedTcpRobot one;
  ScriptedTcpRobot other;
  const LogCapture log;
  for (ScriptedTcpRobot* robot : {&one, &other}) robot->addVideoDevice();  // without pictures
  const auto first = open(one);
  const auto second = open(other);
  const std::set<std::string> robots = {one.broker->address().toString(),
                                        other.broker->address().toString()};
  ASSERT_EQ(robots.size(), 2u);
  for (LookoutWidget* widget : {first.get(), second.get()}) {
    widget->setPlaying(true);
    for (QPushButton* button : widget->findChildren<QPushButton*>())
      if (button->toolTip() == "Snapshot") button->click();
  }
  EXPECT_TRUE(waitUntil([&] { return subjectsOf(log, "getNext") == robots; }));
  EXPECT_EQ(subjectsOf(log, "takePicture"), robots);
}

}  // namespace
