// SPDX-License-Identifier: Apache-2.0
// The list of what is drawn over the stage's picture, to be ticked off.
#pragma once

#include <QJsonObject>
#include <QTimer>
#include <QWidget>
#include <optional>
#include <set>
#include <string>

#include "viewer/stage/overlays/moment.h"

class QCheckBox;
class QLabel;
class QListView;
class SourcesModel;

// What is hidden here is so in this view only. GUI thread.
class SourcesPanel : public QWidget {
  Q_OBJECT

 public:
  explicit SourcesPanel(QWidget* parent = nullptr);
  ~SourcesPanel() override;

  // What is shown now. May be called for each picture: the list follows four times a second.
  void follow(const Moment::Shown& shown);

  const std::set<std::string>& hidden() const;
  // Whether detections are to be drawn on the frames in which they were seen.
  bool isOnFrame() const;
  void setOnFrame(bool on);

  // What is hidden, and whether detections are drawn on their frames. False, and nothing is
  // changed, for what is no such state.
  QJsonObject saveState() const;
  bool restoreState(const QJsonObject& state);

 signals:
  void hiddenChanged();
  void onFrameChanged(bool on);

 private:
  void catchUp();

  SourcesModel* fModel = nullptr;
  QListView* fList = nullptr;
  QLabel* fNothing = nullptr;
  QCheckBox* fOnFrame = nullptr;
  QTimer fPace;
  std::optional<Moment::Shown> fLatest;  // until the list shows it
};
