// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_dock.h"

#include <QCloseEvent>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "robots/lost_veil.h"
#include "robots/robot_address.h"
#include "robots/robot_views.h"
#include "robots/view_dock.h"
#include "robots/widget_keeper.h"

namespace Lookout {
namespace {

using State = RobotSession::State;

constexpr int kStatusMs = 1000;

QString textOf(const std::vector<std::string>& streams) {
  QStringList texts;
  for (const std::string& stream : streams) texts << QString::fromStdString(stream);
  return texts.join(", ");
}

}  // namespace

RobotDock::RobotDock(const Plugin& plugin, std::optional<Ky::KyAddress> robot, const QString& icons,
                     BrokerCloser& closer, QWidget* parent)
    : QDockWidget(parent), fPluginName(plugin.name) {
  buildBody();
  fSession = std::make_unique<RobotSession>(*plugin.interface, std::move(robot),
                                            icons.toStdString(), *fScroll, closer);
  if (!plugin.brokerName.isEmpty()) fSession->setBrokerName(plugin.brokerName.toStdString());
  setObjectName("robot " + name());
  updateExposed();
  fViews = std::make_unique<RobotViews>(*fSession, name());
  connect(this, &QWidget::windowTitleChanged, fViews.get(), &RobotViews::setOwnerTitle);
  connect(fSession.get(), &RobotSession::widgetMade, this, &RobotDock::showWidget);
  connect(fSession.get(), &RobotSession::changed, this, &RobotDock::showState);
  connect(fSession.get(), &RobotSession::closed, this, &RobotDock::closed);
  connect(fSession.get(), &RobotSession::closed, this, &QObject::deleteLater);
  fPicture = std::make_unique<PictureWatch>(*fSession);
  connect(fPicture.get(), &PictureWatch::changed, this, &RobotDock::showStatus);
  connect(&fStatusTimer, &QTimer::timeout, this, &RobotDock::measure);
  fStatusTimer.start(kStatusMs);
  showState();
}

RobotDock::~RobotDock() {
  // The session tells nobody any more, and its widget goes before the dock's other parts.
  fSession->disconnect(this);
  fPicture.reset();
  fKeeper.reset();
  fViews.reset();
  fStatusTimer.stop();
  // Events may go on while its widget waits for the robot: then the dock is still whole.
  fSession->close();
  fSession.reset();
}

void RobotDock::remember(bool startsFresh) {
  fStartsFresh = startsFresh;
  fKeeper = std::make_unique<WidgetKeeper>(*fSession, fPluginName, startsFresh);
}

void RobotDock::openViewsOfBefore() {
  if (fKeeper && !fStartsFresh) fViews->open(RobotMemory::views(robotName(), fPluginName));
}

void RobotDock::keep() const {
  if (!fKeeper || fSession->state() == State::Closed) return;
  fKeeper->keep();
  RobotMemory::setViews(robotName(), fPluginName, fViews->memory());
}

void RobotDock::keepForGood() {
  keep();
  fKeeper.reset();
}

void RobotDock::buildBody() {
  auto* body = new QWidget(this);
  fPages = new QStackedWidget(body);
  fPlaceholder = new QLabel(fPages);
  fPlaceholder->setTextFormat(Qt::PlainText);
  fPlaceholder->setAlignment(Qt::AlignCenter);
  fPlaceholder->setWordWrap(true);
  fPlaceholder->setTextInteractionFlags(Qt::TextSelectableByMouse);
  // So that a plug-in's widget of a fixed size forces no size on the window.
  fScroll = new QScrollArea(fPages);
  fScroll->setWidgetResizable(true);
  fScroll->setFrameShape(QFrame::NoFrame);
  fScroll->setAlignment(Qt::AlignCenter);
  fPages->addWidget(fPlaceholder);
  fPages->addWidget(fScroll);
  fVeil = new LostVeil(fPages);
  fStatus = new StatusLine(body);
  fPlugins = new QToolButton(body);
  fPlugins->setObjectName("plugins");
  fPlugins->setText(tr("Plug-ins \u25be"));
  // The style's own arrow would lie on the text.
  fPlugins->setStyleSheet("QToolButton::menu-indicator { image: none; }");
  fPlugins->setToolTip(tr("Open another plug-in for this robot"));
  fPlugins->setPopupMode(QToolButton::InstantPopup);
  fPlugins->setAutoRaise(true);
  fPlugins->hide();

  auto* line = new QHBoxLayout;
  line->addWidget(fStatus, 1);
  line->addWidget(fPlugins);
  line->addSpacing(4);
  auto* layout = new QVBoxLayout(body);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(fPages, 1);
  layout->addLayout(line);
  setWidget(body);
}

QString RobotDock::robotName() const {
  const auto& robot = fSession->robot();
  return robot ? QString::fromStdString(robot->toString()) : QString();
}

QString RobotDock::name() const {
  return (fPluginName + " " + robotName()).trimmed();
}

QString RobotDock::title() const {
  return fExposed ? tr("%1, not encrypted").arg(name()) : name();
}

// To be called when a connection has just been made.
void RobotDock::updateExposed() {
  fExposed = fSession->robot() && Lookout::isExposed(*fSession->robot());
}

void RobotDock::offer(QMenu* plugins) {
  plugins->setParent(fPlugins, plugins->windowFlags());
  fPlugins->setMenu(plugins);
  fPlugins->show();
}

QSize RobotDock::wantedSize() const {
  const QWidget* shown = fScroll->widget();
  if (shown == nullptr) return size();
  const QSize wanted =
      shown->sizeHint().boundedTo(shown->maximumSize()).expandedTo(shown->minimumSize());
  return wanted + size() - fPages->size();
}

void RobotDock::showWidget(QWidget* widget) {
  updateExposed();
  fScroll->setWidget(widget);
  widget->show();
  fPages->setCurrentWidget(fScroll);
  emit widgetShown(!std::exchange(fHadWidget, true));
}

void RobotDock::showState() {
  const State state = fSession->state();
  const QString& problem = fSession->problem();
  setWindowTitle(state == State::Lost         ? tr("%1 (connection lost)").arg(title())
                 : state == State::Silent     ? tr("%1 (silent)").arg(title())
                 : state == State::Connecting ? tr("%1 (connecting)").arg(title())
                                              : title());
  if (state == State::Connecting) {
    const QString doing = fSession->robot() ? tr("Connecting to %1...").arg(robotName())
                                            : tr("Opening %1...").arg(fPluginName);
    fPlaceholder->setText(problem.isEmpty() ? doing : doing + "\n\n" + problem);
    fPages->setCurrentWidget(fPlaceholder);
  }
  fVeil->setText(lossText(state, problem));
  showStatus();
}

void RobotDock::measure() {
  fBytesPerSecond =
      fBandwidth.update(fSession->statistics().bytesIn, std::chrono::steady_clock::now());
  showStatus();
}

void RobotDock::showStatus() {
  fStatus->setVisible(fSession->robot().has_value());
  fStatus->show(status());
}

quint64 RobotDock::framesPainted() const {
  quint64 most = fSession->framesPainted();
  for (const ViewDock* view : fViews->docks()) most = std::max(most, view->framesPainted());
  return most;
}

// Null while the widget's own picture can be seen, or nobody's.
const ViewDock* RobotDock::viewInSight() const {
  if (fPicture->reading().state != PictureState::None) return nullptr;
  const std::vector<ViewDock*> views = fViews->docks();
  const auto found = std::find_if(views.begin(), views.end(), [](const ViewDock* view) {
    return view->reading().state != PictureState::None;
  });
  return found != views.end() ? *found : nullptr;
}

RobotStatus RobotDock::status() const {
  const Ky::KyStatistics statistics = fSession->statistics();
  const ViewDock* view = viewInSight();
  const PictureReading& picture = view != nullptr ? view->reading() : fPicture->reading();
  return {fSession->state(), statistics.roundTrip,      fBytesPerSecond, picture,
          fExposed,          textOf(statistics.streams)};
}

QString RobotDock::problem() const {
  if (!fSession->problem().isEmpty()) return fSession->problem();
  const ViewDock* view = viewInSight();
  return view != nullptr ? view->problem() : fPicture->problem();
}

void RobotDock::closeEvent(QCloseEvent* event) {
  event->accept();
  emit closing();
  keep();
  fSession->close();
}

}  // namespace Lookout
