// SPDX-License-Identifier: Apache-2.0
#include "window/pictures_menu.h"

#include <QActionGroup>

#include "robots/picture_choice.h"
#include "robots/robot_session.h"

namespace Lookout {

PicturesMenu::PicturesMenu(QWidget* parent) : QMenu(parent), fChoices(new QActionGroup(this)) {
  setToolTipsVisible(true);
  for (const PictureChoice& choice : pictureChoices()) {
    QAction* action = addAction(choice.text);
    action->setData(choice.word);
    action->setToolTip(choice.tip);
    action->setStatusTip(choice.tip);
    action->setCheckable(true);
    fChoices->addAction(action);
  }
  connect(fChoices, &QActionGroup::triggered, this,
          [this](const QAction* action) { emit chosen(action->data().toString()); });
  showFor(nullptr);
}

void PicturesMenu::showFor(const RobotSession* session) {
  const bool hasRobot = session != nullptr && session->robot();
  setTitle(hasRobot
               ? tr("Pict&ures of %1").arg(QString::fromStdString(session->robot()->toString()))
               : tr("Pict&ures"));
  setEnabled(hasRobot && session->offers("KyVideoDevice", "openPictures"));
  const std::string word = hasRobot ? session->preference(kPicturePreference) : std::string();
  for (QAction* action : fChoices->actions())
    action->setChecked(action->data().toString().toStdString() == word);
}

}  // namespace Lookout
