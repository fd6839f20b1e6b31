// SPDX-License-Identifier: Apache-2.0
#include "robots/robot_views.h"

#include <QTimer>
#include <algorithm>

#include "lookout/lookout_widget.h"
#include "robots/robot_session.h"
#include "robots/view_dock.h"
#include "robots/view_kind.h"
#include "zu/log.h"

namespace Lookout {

RobotViews::RobotViews(RobotSession& session, QString owner)
    : fSession(session), fOwner(std::move(owner)), fOwnerTitle(fOwner) {
  connect(&fSession, &RobotSession::widgetMade, this, [this](QWidget* widget) {
    if (const auto* made = qobject_cast<LookoutWidget*>(widget))
      connect(made, &LookoutWidget::viewWanted, this,
              qOverload<const QString&, bool>(&RobotViews::open));
  });
}

RobotViews::~RobotViews() {
  for (const auto& dock : std::exchange(fDocks, {})) delete dock.data();
}

QStringList RobotViews::kinds() const {
  return fSession.viewKinds();
}

std::vector<ViewDock*> RobotViews::docks() const {
  std::vector<ViewDock*> present;
  for (const auto& dock : fDocks)
    if (dock && !dock->isClosing()) present.push_back(dock);
  return present;
}

ViewDock* RobotViews::first(const QString& kind) const {
  const auto all = docks();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [&](const ViewDock* dock) { return dock->kind() == kind; });
  return found != all.end() ? *found : nullptr;
}

ViewDock* RobotViews::open(const QString& kind, bool another) {
  if (fSession.state() == RobotSession::State::Closed) return nullptr;
  if (ViewDock* present = first(kind); present != nullptr && !another) {
    present->bringToFront();
    return present;
  }
  if (fSession.widget() != nullptr && !kinds().contains(kind)) {
    refuse(kind);
    return nullptr;
  }
  ViewDock* added = add(kind, freeNumber(kind), {});
  if (added->isClosing()) return nullptr;
  added->bringToFront();
  return added;
}

std::vector<ViewMemory> RobotViews::memory() const {
  std::vector<ViewMemory> memory;
  for (const ViewDock* dock : docks())
    memory.push_back({dock->kind(), dock->number(), dock->viewState(), dock->isInFront()});
  return memory;
}

void RobotViews::open(const std::vector<ViewMemory>& before) {
  std::vector<QPointer<ViewDock>> front;
  for (const ViewMemory& view : before) {
    ViewDock* dock = add(view.kind, view.number, view.state);
    if (view.isInFront) front.emplace_back(dock);
  }
  // The tabs are made when all docks are laid out.
  for (const auto& dock : front)
    if (dock) QTimer::singleShot(0, dock, &QWidget::raise);
}

ViewDock* RobotViews::add(const QString& kind, int number, const QByteArray& state) {
  auto* dock = new ViewDock(fSession, fOwner, kind, number, state);
  std::erase_if(fDocks, [](const auto& gone) { return !gone; });
  fDocks.emplace_back(dock);
  dock->setOwnerTitle(fOwnerTitle);
  connect(dock, &ViewDock::viewWanted, this, qOverload<const QString&, bool>(&RobotViews::open));
  connect(dock, &ViewDock::closed, this, &RobotViews::closed);
  connect(dock, &ViewDock::notOffered, this, [this, kind] { refuse(kind); });
  emit opened(dock);
  dock->start();
  return dock;
}

int RobotViews::freeNumber(const QString& kind) const {
  const auto all = docks();
  const auto isTaken = [&](int number) {
    return std::any_of(all.begin(), all.end(), [&](const ViewDock* dock) {
      return dock->kind() == kind && dock->number() == number;
    });
  };
  int number = 1;
  while (isTaken(number)) ++number;
  return number;
}

void RobotViews::setOwnerTitle(const QString& title) {
  fOwnerTitle = title;
  for (ViewDock* dock : docks()) dock->setOwnerTitle(title);
}

void RobotViews::refuse(const QString& kind) {
  const QString known = kinds().join(", ");
  const QString why = tr("%1 has no view \"%2\"; it has: %3")
                          .arg(fOwner, kind, known.isEmpty() ? tr("none") : known);
  zu::log::warning("lookout", "views") << why.toStdString();
  emit refused(why);
}

}  // namespace Lookout
