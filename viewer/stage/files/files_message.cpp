// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/files_message.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

FilesMessage::FilesMessage(QWidget* parent)
    : QFrame(parent), fText(new QLabel(this)), fButton(new QPushButton(this)) {
  fText->setTextFormat(Qt::PlainText);  // it may be the robot's
  fText->setWordWrap(true);
  fText->setAlignment(Qt::AlignCenter);
  fText->setTextInteractionFlags(Qt::TextSelectableByMouse);
  fText->setAccessibleName(tr("Message"));
  auto* layout = new QVBoxLayout(this);
  layout->addStretch(1);
  layout->addWidget(fText);
  layout->addWidget(fButton, 0, Qt::AlignHCenter);
  layout->addStretch(1);
  connect(fButton, &QPushButton::clicked, this, [this] {
    const auto action = fAction;  // which may say something else
    action();
  });
  hide();
}

void FilesMessage::say(const QString& text, const QString& button, std::function<void()> action) {
  fText->setText(text);
  fButton->setText(button);
  fButton->setVisible(!button.isEmpty());
  fAction = std::move(action);
  show();
}

void FilesMessage::setAlone(bool isAlone) {
  setSizePolicy(QSizePolicy::Preferred, isAlone ? QSizePolicy::Expanding : QSizePolicy::Maximum);
}
