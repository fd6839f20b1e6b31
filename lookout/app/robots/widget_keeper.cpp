// SPDX-License-Identifier: Apache-2.0
#include "robots/widget_keeper.h"

#include "lookout/lookout_widget.h"
#include "robots/robot_session.h"

namespace Lookout {

WidgetKeeper::WidgetKeeper(RobotSession& session, QString plugin, bool startsFresh)
    : fSession(session),
      fRobot(QString::fromStdString(session.robot()->toString())),
      fPlugin(std::move(plugin)) {
  const auto before = startsFresh ? std::nullopt : RobotMemory::widget(fRobot, fPlugin);
  if (before) session.beginWith(*before);
  connect(&session, &RobotSession::widgetMade, this, &WidgetKeeper::meet);
  connect(&session, &RobotSession::changed, this, [this] {
    if (fSession.state() == RobotSession::State::Lost) keep();
  });
}

void WidgetKeeper::meet(const QWidget* widget) {
  const auto* made = qobject_cast<const LookoutWidget*>(widget);
  if (made == nullptr) return;
  fHadWidget = true;
  fUntouched = {made->saveState(), made->isPlaying()};
}

void WidgetKeeper::keep() const {
  if (!fHadWidget || fSession.state() == RobotSession::State::Closed) return;
  const WidgetMemory now = fSession.widgetMemory();
  if (now == fUntouched && !RobotMemory::widget(fRobot, fPlugin)) return;
  RobotMemory::setWidget(fRobot, fPlugin, now);
}

}  // namespace Lookout
