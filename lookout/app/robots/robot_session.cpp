// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_session.h"

#include <algorithm>

#include "ky/meanwhile.h"
#include "lookout/broker_loan.h"
#include "lookout/robot_broker.h"
#include "lookout/widget_interface.h"
#include "robots/open_dialogs.h"
#include "zu/log.h"

namespace Lookout {
namespace {

constexpr int kFirstRetryMs = 1000;
constexpr int kLastRetryMs = 8000;
constexpr int kDialogCheckMs = 200;
constexpr int kWaitCheckMs = 50;
constexpr int kProbeCheckMs = 1000;

// A plug-in has one slot for the broker that it opened last, so only one getWidget() runs at a
// time, even when it shows a message box and events go on meanwhile. GUI thread.
bool pluginAtWork = false;

}  // namespace

RobotSession::RobotSession(WidgetInterface& plugin, std::optional<Ky::KyAddress> robot,
                           std::string icons, QWidget& home, BrokerCloser& closer, QObject* parent)
    : QObject(parent),
      fPlugin(plugin),
      fRobot(std::move(robot)),
      fIcons(std::move(icons)),
      fHome(home),
      fCloser(closer),
      fRetryMs(kFirstRetryMs) {
  fRetry.setSingleShot(true);
  connect(&fRetry, &QTimer::timeout, this, &RobotSession::retry);
  fProbeCheck.setInterval(kProbeCheckMs);
  connect(&fProbeCheck, &QTimer::timeout, this, &RobotSession::showProbeProblem);
  connect(&fGaps, &GapWatch::answering, this, &RobotSession::makeAgain);
}

RobotSession::~RobotSession() {
  close();
  removeWidget();
  dropProbe();
}

void RobotSession::beginWith(const WidgetMemory& before) {
  fWidgetState = before.state;
  fPlaying = before.playing;
}

void RobotSession::chooseAtFirst(const QString& setting, const QString& value) {
  fChoices.emplace_back(setting, value);
}

WidgetMemory RobotSession::widgetMemory() const {
  const LookoutWidget* widget = lookoutWidget();
  const bool isAlive = fState == State::Connected || fState == State::Silent;
  if (widget == nullptr || !isAlive) return {fWidgetState, fPlaying};
  return {stateFrom(*widget), fState == State::Connected ? widget->isPlaying() : fPlaying};
}

void RobotSession::start() {
  if (fRobot)
    startProbe();
  else
    QMetaObject::invokeMethod(this, &RobotSession::openWidget, Qt::QueuedConnection);
}

void RobotSession::close() {
  if (fState == State::Closed) return;
  fWatcher.reset();
  fRetry.stop();
  setState(State::Closed, tr("Closed"));
  if (!fMaking) finishClosing();  // otherwise openWidget() will
}

void RobotSession::finishClosing() {
  if (Ky::KyMeanwhile::isAtWork()) {
    QTimer::singleShot(kWaitCheckMs, this, &RobotSession::finishClosing);
    return;
  }
  removeWidget();
  dropProbe();
  emit closed();
}

// ---- the connection

void RobotSession::startProbe() {
  Ky::KyBrokerOptions options = robotBrokerOptions(fBrokerName, *fRobot);
  options.connectLater = true;
  try {
    fProbe = Ky::KyBroker::create(std::move(options));
  } catch (const Ky::KyError& error) {
    // Nothing has been sent yet, so it is about the keys.
    fail(tr("%1. If the robot was started with --insecure, connect to it without encryption.")
             .arg(QString::fromUtf8(error.what())));
    return;
  }
  prepare(*fProbe);
  fProbeCheck.start();
  watch(fProbe, Ky::KyConnection::Connecting);
}

void RobotSession::dropProbe() {
  fProbeCheck.stop();
  if (!fProbe) return;
  fCloser.close(std::exchange(fProbe, nullptr));
}

void RobotSession::watch(const Broker& broker, Ky::KyConnection expected) {
  fWatcher = std::make_unique<ConnectionWatcher>(broker, expected);
  connect(fWatcher.get(), &ConnectionWatcher::changed, this, &RobotSession::onConnection);
}

void RobotSession::onConnection(Ky::KyConnection connection, const QString& why) {
  if (fState == State::Closed || fMaking) return;
  const bool hasRobot = fState == State::Connected || fState == State::Silent;
  if (connection == Ky::KyConnection::Connected && hasRobot) {
    goOn();
  } else if (connection == Ky::KyConnection::Connected) {
    openWidget();
  } else if (connection == Ky::KyConnection::Silent && hasRobot) {
    pause(why);
  } else if (connection == Ky::KyConnection::Lost && hasRobot) {
    lose(why);
  } else if (connection == Ky::KyConnection::Lost && fState == State::Connecting) {
    setState(fState, why);
  }
}

// What plays would only ask in vain, and say so, at each of its ticks.
void RobotSession::pause(const QString& why) {
  LookoutWidget* widget = lookoutWidget();
  if (widget != nullptr && fState == State::Connected) {
    fPlaying = widget->isPlaying();
    if (fPlaying) widget->setPlaying(false);
  }
  setState(State::Silent, why);
}

void RobotSession::goOn() {
  LookoutWidget* widget = lookoutWidget();
  if (widget != nullptr && fState == State::Silent && fPlaying) widget->setPlaying(true);
  setState(State::Connected, {});
}

void RobotSession::lose(const QString& why) {
  if (LookoutWidget* widget = lookoutWidget()) {
    if (fState == State::Connected) fPlaying = widget->isPlaying();
    fWidgetState = stateFrom(*widget);
    emit widget->disconnected(&fPlugin);
  }
  fGaps.stop();
  fChoices.clear();  // from now on the widget's state counts
  setState(State::Lost, why);
  if (!fBroker) return;
  fWatcher.reset();
  fBroker->disconnect();
  startProbe();
}

void RobotSession::showProbeProblem() {
  if (!fProbe || fState != State::Connecting || fRetry.isActive()) return;
  if (fProbe->connection() == Ky::KyConnection::Connected) return;
  try {
    fProbe->moduleNames();  // fails at once, and knows why
  } catch (const Ky::KyError& error) {
    const QString why = QString::fromUtf8(error.what());
    if (why != fProblem) zu::log::warning("lookout", "session") << error.what();
    setState(State::Connecting, why);
  }
}

// ---- the widget

void RobotSession::openWidget() {
  if (fState == State::Closed || fMaking) return;
  fRetry.stop();
  // An open dialog of the old widget's has code of the widget waiting for it: the user answers
  // first.
  if (pluginAtWork || hasOpenDialogs()) {
    fRetry.start(kDialogCheckMs);
    return;
  }
  if (Ky::KyMeanwhile::isAtWork()) {
    fRetry.start(kWaitCheckMs);
    return;
  }
  QString why;
  fMaking = pluginAtWork = true;
  removeWidget();
  QWidget* widget = makeWidget(why);
  fMaking = pluginAtWork = false;
  if (widget != nullptr) keepWidget(widget);
  if (fState == State::Closed) {
    finishClosing();
  } else if (widget == nullptr) {
    fail(why);
  }
}

QWidget* RobotSession::makeWidget(QString& why) {
  const Broker before = fPlugin.broker();
  const BrokerLoan loan(fProbe);
  fGaps.begin(fProbe);
  QWidget* widget = nullptr;
  const Ky::KyAddress robot = fRobot.value_or(Ky::KyAddress{"", 0});
  try {
    widget = fPlugin.getWidget(&fHome, robot.host, robot.port, fIcons);
    if (widget == nullptr) why = tr("the plug-in made no widget");
  } catch (const std::exception& error) {
    why = QString::fromUtf8(error.what());
  } catch (...) {
    why = tr("the plug-in failed and did not say why");
  }
  // The plug-in's broker is the latest widget's only: each session keeps its own.
  if (loan.isTaken())
    fBroker = std::exchange(fProbe, nullptr);
  else if (fPlugin.broker() != before)
    fBroker = fPlugin.broker();
  if (widget == nullptr && fBroker) {
    fBroker->shutdown();
    fBroker.reset();
  }
  if (fBroker) prepare(*fBroker);
  return widget;
}

void RobotSession::keepWidget(QWidget* widget) {
  fWidget = widget;
  if (fState == State::Closed) return;
  fRetryMs = kFirstRetryMs;
  if (fRobot) zu::log::info("lookout", "session") << "connected to " << fRobot->toString();
  emit widgetMade(widget);
  if (LookoutWidget* made = lookoutWidget())
    takeUp(*made);
  else
    choose(nullptr);
  setState(State::Connected, {});
  if (fBroker) {
    watch(fBroker, Ky::KyConnection::Connected);
    dropProbe();
  } else if (fProbe) {
    watch(fProbe, Ky::KyConnection::Connected);
  } else if (fRobot) {
    startProbe();
  }
}

// Goes on where the widget before was lost.
void RobotSession::takeUp(LookoutWidget& widget) {
  if (!fWidgetState.isEmpty() && !widget.restoreState(fWidgetState))
    zu::log::warning("lookout", "session")
        << fRobot->toString() << ": the widget can't take up what was set before";
  choose(&widget);
  fTakenUp = widget.saveState();
  fGaps.end(fBroker);
  if (!fGaps.hasGaps()) fChoices.clear();
  if (fPlaying) widget.setPlaying(true);
}

// Null: the plug-in's widget is of another kind.
void RobotSession::choose(LookoutWidget* widget) {
  for (const auto& [setting, value] : fChoices) {
    const QString why = widget != nullptr ? widget->choose(setting, value)
                                          : tr("%1 can't be set here").arg(setting);
    if (why.isEmpty()) continue;
    const QString what = tr("%1 is not %2: %3").arg(setting, value, why);
    zu::log::error("lookout", "session") << what.toStdString();
    emit notChosen(what);
  }
}

// A widget that lacks answers may not have been able to take up everything: it passes on what it
// was given, unless somebody has changed something since.
QByteArray RobotSession::stateFrom(const LookoutWidget& widget) const {
  const QByteArray now = widget.saveState();
  return fGaps.hasGaps() && now == fTakenUp ? fWidgetState : now;
}

void RobotSession::removeWidget() {
  fGaps.stop();
  emit widgetGoing();
  for (const auto& view : std::exchange(fViews, {})) delete view.data();
  fFramesBefore = framesPainted();
  delete fWidget.data();
  if (!fBroker) return;
  if (!fProbe) fWatcher.reset();  // it is the broker's
  fBroker->shutdown();
  fBroker.reset();
}

bool RobotSession::hasOpenDialogs() const {
  return (fWidget && hasOpenDialog(*fWidget)) ||
         std::any_of(fViews.begin(), fViews.end(),
                     [](const auto& view) { return view && hasOpenDialog(*view); });
}

QStringList RobotSession::viewKinds() const {
  const LookoutWidget* widget = lookoutWidget();
  return widget != nullptr ? widget->viewKinds() : QStringList();
}

LookoutWidget* RobotSession::makeView(const QString& kind, QWidget& parent) {
  LookoutWidget* widget = lookoutWidget();
  if (widget == nullptr || fState == State::Closed) return nullptr;
  LookoutWidget* view = widget->makeView(kind, &parent);
  std::erase_if(fViews, [](const auto& gone) { return !gone; });
  if (view != nullptr) fViews.emplace_back(view);
  return view;
}

// ---- trying again

void RobotSession::fail(const QString& why) {
  zu::log::error("lookout", "session")
      << (fRobot ? fRobot->toString() : "plug-in") << ": " << why.toStdString();
  setState(State::Connecting, why);
  fRetry.start(fRetryMs);
  fRetryMs = std::min(2 * fRetryMs, kLastRetryMs);
}

void RobotSession::retry() {
  if (fState == State::Closed || fState == State::Connected) return;
  if (fRobot && !fProbe && !fBroker)
    startProbe();
  else if (!fRobot || fWatcher->connection() == Ky::KyConnection::Connected)
    openWidget();
}

// Cut off first, the old widget can't end its film.
void RobotSession::makeAgain() {
  const bool isBusy = fMaking || pluginAtWork || Ky::KyMeanwhile::isAtWork();
  if (fState != State::Connected || isBusy || !fWidget || hasOpenDialogs()) return;
  if (const LookoutWidget* widget = lookoutWidget()) {
    fPlaying = widget->isPlaying();
    fWidgetState = stateFrom(*widget);
  }
  fWatcher.reset();
  fBroker->disconnect();
  openWidget();
}

// ---- what is known

void RobotSession::setState(State state, const QString& problem) {
  if (state == fState && problem == fProblem) return;
  fState = state;
  fProblem = problem;
  emit changed();
}

LookoutWidget* RobotSession::lookoutWidget() const {
  return qobject_cast<LookoutWidget*>(fWidget.data());
}

Ky::KyStatistics RobotSession::statistics() const {
  if (fBroker) return fBroker->statistics();
  return fProbe ? fProbe->statistics() : Ky::KyStatistics{};
}

void RobotSession::setPreference(const std::string& name, const std::string& value) {
  fPreferences[name] = value;
  for (const Broker& broker : {fProbe, fBroker})
    if (broker) broker->setPreference(name, value);
}

std::string RobotSession::preference(const std::string& name) const {
  const auto found = fPreferences.find(name);
  return found != fPreferences.end() ? found->second : std::string();
}

void RobotSession::prepare(Ky::KyBroker& broker) const {
  for (const auto& [name, value] : fPreferences) broker.setPreference(name, value);
}

bool RobotSession::offers(const std::string& module, const std::string& what) const {
  const Broker& broker = fBroker ? fBroker : fProbe;
  return broker && broker->offers(module, what);
}

void RobotSession::setPlaying(bool playing) {
  fPlaying = playing;
  if (LookoutWidget* widget = lookoutWidget()) widget->setPlaying(playing);
}

quint64 RobotSession::framesPainted() const {
  const LookoutWidget* widget = lookoutWidget();
  return fFramesBefore + (widget != nullptr ? widget->framesPainted() : 0);
}

}  // namespace Lookout
