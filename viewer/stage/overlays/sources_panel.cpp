// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/overlays/sources_panel.h"

#include <QCheckBox>
#include <QJsonArray>
#include <QLabel>
#include <QListView>
#include <QVBoxLayout>
#include <chrono>
#include <utility>

#include "viewer/stage/overlays/sources_model.h"

namespace {

constexpr std::chrono::milliseconds kPace(250);
constexpr qsizetype kMostHidden = 1024;

// Keys are any bytes: one character each.
QString written(const std::string& key) {
  return QString::fromLatin1(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace

SourcesPanel::SourcesPanel(QWidget* parent)
    : QWidget(parent),
      fModel(new SourcesModel(this)),
      fList(new QListView),
      fNothing(new QLabel(tr("Nothing is drawn over the picture. Detections are switched on in "
                             "the settings below the small picture."))),
      fOnFrame(new QCheckBox(tr("Detections on their &frame"))) {
  fList->setModel(fModel);
  fList->setAccessibleName(tr("What is drawn over the picture"));
  fList->setSelectionMode(QAbstractItemView::SingleSelection);
  fList->setUniformItemSizes(true);
  fList->setTextElideMode(Qt::ElideMiddle);
  fList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  fNothing->setWordWrap(true);
  fNothing->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  fNothing->setMargin(fontMetrics().height() / 2);
  fOnFrame->setChecked(true);
  fOnFrame->setToolTip(
      tr("The picture waits until its detections are there, half a second at "
         "most, so that they stand on what they were found on"));

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(fList, 1);
  layout->addWidget(fNothing, 1);
  layout->addWidget(fOnFrame);
  fList->hide();

  fPace.setSingleShot(true);
  fPace.setInterval(kPace);
  connect(&fPace, &QTimer::timeout, this, &SourcesPanel::catchUp);
  connect(fModel, &SourcesModel::hiddenChanged, this, &SourcesPanel::hiddenChanged);
  connect(fOnFrame, &QCheckBox::toggled, this, &SourcesPanel::onFrameChanged);
}

SourcesPanel::~SourcesPanel() = default;

void SourcesPanel::follow(const Moment::Shown& shown) {
  fLatest = shown;
  if (!fPace.isActive()) catchUp();
}

void SourcesPanel::catchUp() {
  if (!fLatest) return;
  fModel->update(*std::exchange(fLatest, std::nullopt));
  const bool isEmpty = fModel->rowCount() == 0;
  fList->setVisible(!isEmpty);
  fNothing->setVisible(isEmpty);
  fPace.start();
}

const std::set<std::string>& SourcesPanel::hidden() const {
  return fModel->hidden();
}

bool SourcesPanel::isOnFrame() const {
  return fOnFrame->isChecked();
}

void SourcesPanel::setOnFrame(bool on) {
  fOnFrame->setChecked(on);
}

QJsonObject SourcesPanel::saveState() const {
  QJsonArray keys;
  for (const std::string& key : hidden()) keys.append(written(key));
  return {{"hidden", keys}, {"onFrame", isOnFrame()}};
}

bool SourcesPanel::restoreState(const QJsonObject& state) {
  const QJsonValue keys = state["hidden"], onFrame = state["onFrame"];
  if (!keys.isArray() || !onFrame.isBool() || keys.toArray().size() > kMostHidden) return false;
  std::set<std::string> hidden;
  for (const auto& key : keys.toArray()) {
    if (!key.isString()) return false;
    hidden.insert(key.toString().toLatin1().toStdString());
  }
  fModel->setHidden(std::move(hidden));
  setOnFrame(onFrame.toBool());
  return true;
}
