// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/stage_line.h"

#include <QStringList>

#include "lookout/figure_texts.h"

namespace {

using Lookout::PictureState;

QString stateText(const StageStatus& status) {
  if (status.frozen) return StageLine::tr("Frozen");
  switch (status.picture.state) {
    case PictureState::Live:
      return StageLine::tr("Live");
    case PictureState::Paused:
      return StageLine::tr("Paused");
    case PictureState::Waiting:
      return StageLine::tr("Waiting for a picture");
    case PictureState::Stalled:
      return StageLine::tr("No new picture for %1")
          .arg(Lookout::durationText(status.picture.standstill));
    default:
      return StageLine::tr("Not playing");
  }
}

// Strong enough for light and dark backgrounds; as the host's.
const char* colourOf(const StageStatus& status) {
  if (status.frozen) return "#1976d2";
  switch (status.picture.state) {
    case PictureState::Live:
      return "#2e9e44";
    case PictureState::Waiting:
    case PictureState::Stalled:
      return "#d98200";
    default:
      return "#808080";
  }
}

QStringList liveTexts(const StageStatus& status) {
  QStringList texts;
  if (status.picture.framesPerSecond > 0)
    texts << StageLine::tr("%1 fps").arg(status.picture.framesPerSecond, 0, 'f', 1);
  if (status.picture.age)
    texts << StageLine::tr("newest picture %1 ago").arg(Lookout::durationText(*status.picture.age));
  return texts;
}

}  // namespace

QString stageText(const StageStatus& status) {
  QStringList texts = {stateText(status)};
  if (status.picture.state == PictureState::Live && !status.frozen) texts << liveTexts(status);
  if (!status.size.isEmpty())
    texts << StageLine::tr("%1 x %2").arg(status.size.width()).arg(status.size.height());
  if (!status.encoding.isEmpty()) texts << status.encoding;
  if (!status.size.isEmpty()) {
    texts << StageLine::tr("%1 dropped").arg(status.dropped);
    texts << StageLine::tr("%1 %").arg(status.scale * 100, 0, 'f', status.scale < 0.1 ? 1 : 0);
  }
  return texts.join(QString::fromUtf8(" \u00b7 "));
}

StageLine::StageLine(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::RichText);
  setContentsMargins(6, 2, 6, 2);
  setAccessibleName(tr("State of the picture"));
  // So that a long text forces no width on the stage.
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void StageLine::show(const StageStatus& status) {
  const QString text = QString("<span style=\"color:%1\">\u25cf</span> %2")
                           .arg(colourOf(status), stageText(status).toHtmlEscaped());
  if (text != this->text()) setText(text);
}
