// SPDX-License-Identifier: Apache-2.0
// A bad network between two programs on this computer.
#pragma once

#include <functional>
#include <list>
#include <optional>
#include <thread>
#include <vector>

#include "support/link_settings.h"
#include "support/link_stream.h"
#include "zu/mutex.h"
#include "zu/unique_fd.h"

enum class LinkWay { ToRobot, ToViewer };

// How the link receives a new connection.
enum class LinkDoor {
  Open,
  Closed,  // nobody listens: it is refused
  Slammed  // it is accepted, and reset
};

// Listens on a port of 127.0.0.1 and passes every connection on to a robot's port there, as a line
// with this delay and rate would: to a millisecond, in order, and with no more in its buffer than
// what leaves within 0.1 s, so that a sender that is too fast has to wait. Without a delay or rate
// it carries some Gbit/s.
//
//   Link link(robot.address().port);
//   link.set({.delay = 50ms, .bitsPerSecond = 10'000'000});
//   connect(link.port());
//
// Thread-safe. Everything holds from the moment at which the call returns, also for connections
// and bytes that are under way.
class Link {
 public:
  // Throws std::runtime_error when there is no port.
  explicit Link(int robotPort);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  int port() const { return fPort; }
  // For connections that are made from now on.
  void setRobotPort(int port);

  void set(const LinkSettings& bothWays);
  void set(LinkWay way, const LinkSettings& settings);
  void setDoor(LinkDoor door);

  // End all connections that are there: in order, each side reading the end of the stream; or with
  // a reset. What is under way is lost.
  void cut();
  void reset();
  // Ends one way of them; the other works on.
  void halfClose(LinkWay way);

  // How many there are.
  std::size_t connections();
  // Since the link was made; without those that were refused.
  std::size_t accepted();

 private:
  using Time = LinkStream::Time;
  struct Connection;
  struct Poll;

  // Has the link's thread do it, and waits for that.
  void onThread(const std::function<void()>& task);

  // The link's thread.
  void run();
  bool doTasks();
  void listenAgain();
  void acceptAll(Time now);
  void pumpAll(const Poll& poll, Time now);
  std::optional<Time> nextTurn(Time now) const;

  zu::os::UniqueFd fPlace;  // keeps the port while nobody listens
  zu::os::UniqueFd fWake;
  int fPort = 0;

  zu::Mutex fMutex;
  zu::ConditionVariable fDone;
  std::vector<std::function<void()>> fTasks ZU_GUARDED_BY(fMutex);
  bool fStop ZU_GUARDED_BY(fMutex) = false;

  // The link's thread's own:
  zu::os::UniqueFd fListener;
  int fRobotPort;
  LinkDoor fDoor = LinkDoor::Open;
  LinkSettings fToRobot;
  LinkSettings fToViewer;
  std::list<Connection> fConnections;
  std::size_t fAccepted = 0;

  std::thread fThread;  // last: uses all the others
};
