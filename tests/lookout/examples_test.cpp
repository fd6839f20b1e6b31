// SPDX-License-Identifier: Apache-2.0
// The examples do what they say.
#include <gtest/gtest.h>

#include <QLabel>
#include <csignal>

#include "ky/proxy.h"
#include "lookout/widget_interface.h"
#include "plugins/plugin_catalog.h"
#include "support/process.h"
#include "tcp_robot.h"

TEST(Examples, TheMinimalPluginShowsTheRobotsModules) {
  const TcpRobot robot;
  Process module(ROBOT_MODULE, {robot.address().toString()});
  ASSERT_TRUE(module.waitForLine("serving Greeter"));

  const Lookout::PluginCatalog catalog(EXAMPLE_PLUGINS);
  ASSERT_NE(catalog.forRobots(), nullptr);
  WidgetInterface& plugin = *catalog.forRobots()->interface;
  const std::unique_ptr<QWidget> widget(
      plugin.getWidget(nullptr, robot.address().host, robot.address().port, "/icons/"));
  EXPECT_TRUE(widget->findChild<QLabel*>()->text().contains("Greeter"));
  plugin.broker()->shutdown();
}

TEST(Examples, TheRobotModuleServesUntilItIsStopped) {
  const TcpRobot robot;
  Process module(ROBOT_MODULE, {robot.address().toString()});
  ASSERT_EQ(module.waitForLine("serving"), "serving Greeter on " + robot.address().toString());
  Ky::KyBrokerOptions options;
  options.name = "caller";
  options.parent = robot.address();
  const auto caller = Ky::KyBroker::create(options);
  EXPECT_EQ(caller->getProxy("Greeter")->call<std::string>("greet", "you"), "Hello you!");
  module.signal(SIGINT);
  EXPECT_EQ(module.waitForExit(), 0);
  EXPECT_FALSE(caller->isModulePresent("Greeter"));
  caller->shutdown();
}

TEST(Examples, TheRobotModuleSaysWhenThereIsNoRobot) {
  Process module(ROBOT_MODULE, {"127.0.0.1:1"});
  EXPECT_EQ(module.waitForExit(), 1);
  EXPECT_NE(module.errors().find("nobody listens there"), std::string::npos);
}
