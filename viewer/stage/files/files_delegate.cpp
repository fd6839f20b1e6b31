// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/files_delegate.h"

#include <QApplication>
#include <QListView>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>

#include "viewer/stage/files/files_model.h"
#include "viewer/stage/files/recording_picture.h"

namespace {

constexpr double kLines = 4.2;   // that a picture is high
constexpr int kCharacters = 34;  // that a row is wide

int marginOf(const QFontMetrics& font) {
  return font.height() / 3;
}

// The largest.
QSize pictureSize(const QFontMetrics& font) {
  const int height = static_cast<int>(kLines * font.height());
  return {height * 4 / 3, height};
}

QColor mixed(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](float x, float y) {
    return static_cast<float>(x + share * (static_cast<double>(y) - x));
  };
  return QColor::fromRgbF(mix(a.redF(), b.redF()), mix(a.greenF(), b.greenF()),
                          mix(a.blueF(), b.blueF()));
}

// What a row is painted with.
struct Colours {
  explicit Colours(const QStyleOptionViewItem& option) {
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    const auto group =
        (option.state & QStyle::State_Active) != 0 ? QPalette::Active : QPalette::Inactive;
    const QPalette& palette = option.palette;
    const QColor ground = palette.color(group, isSelected ? QPalette::Highlight : QPalette::Base);
    text = palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    details = mixed(text, ground, 0.3);
    empty = mixed(ground, text, 0.12);
    bar = isSelected ? text : palette.color(group, QPalette::Highlight);
  }

  QColor text;
  QColor details;
  QColor empty;  // where nothing is, or not yet
  QColor bar;
};

void paintProgress(QPainter& painter, const QRectF& place, const DownloadState& state,
                   const Colours& colours) {
  const double radius = place.height() / 2;
  painter.setPen(Qt::NoPen);
  painter.setBrush(colours.empty);
  painter.drawRoundedRect(place, radius, radius);
  if (state.totalBytes <= 0) return;
  const double share = static_cast<double>(state.readBytes) / static_cast<double>(state.totalBytes);
  QRectF done = place;
  done.setWidth(std::max(place.width() * std::clamp(share, 0.0, 1.0), 2 * radius));
  painter.setBrush(colours.bar);
  painter.drawRoundedRect(done, radius, radius);
}

// In as many lines as there is room for; what does not fit ends in an ellipsis.
void paintWrapped(QPainter& painter, const QRect& place, const QString& text) {
  const QFontMetrics font = painter.fontMetrics();
  const int lines = std::max(place.height() / font.height(), 1);
  QTextLayout layout(text, painter.font());
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  for (int i = 0; i < lines; ++i) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(place.width());
    const QString rest = text.mid(line.textStart());
    const QString shown = i + 1 < lines ? rest.left(line.textLength())
                                        : font.elidedText(rest, Qt::ElideRight, place.width());
    painter.drawText(place.left(), place.top() + i * font.height() + font.ascent(),
                     shown.trimmed());
  }
  layout.endLayout();
}

// Below the picture: some styles fill it, and would colour that.
void paintFocus(QPainter& painter, const QStyleOptionViewItem& option, const QStyle& style) {
  QStyleOptionFocusRect focus;
  focus.QStyleOption::operator=(option);
  focus.state |= QStyle::State_KeyboardFocusChange;
  style.drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, option.widget);
}

}  // namespace

void FilesDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
  const auto& model = *qobject_cast<const FilesModel*>(index.model());
  const int row = index.row();
  const DownloadState& state = model.state(row);
  const QStyle* style = option.widget != nullptr ? option.widget->style() : QApplication::style();
  style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
  if ((option.state & QStyle::State_HasFocus) != 0) paintFocus(*painter, option, *style);

  painter->save();
  painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
  const Colours colours(option);
  const QFontMetrics& font = option.fontMetrics;
  const int margin = marginOf(font);
  const QRect inside = option.rect.adjusted(margin, margin, -margin, -margin);
  // In a narrow list words need room, too.
  const QSize largest = pictureSize(font).boundedTo({inside.width() * 2 / 5, inside.height()});
  const QRect picture(inside.topLeft(), QSize(4, 3).scaled(largest, Qt::KeepAspectRatio));
  painter->fillRect(picture, colours.empty);
  paintRecording(*painter, picture, model.file(row).kind(), model.thumbnail(row), colours.details);

  QRect text = inside.adjusted(picture.width() + 2 * margin, 0, 0, 0);
  QFont bold = option.font;
  bold.setBold(true);
  painter->setFont(bold);
  painter->setPen(colours.text);
  painter->drawText(
      text.left(), text.top() + font.ascent(),
      QFontMetrics(bold).elidedText(model.file(row).name, Qt::ElideMiddle, text.width()));
  text.setTop(text.top() + font.height() + margin / 2);
  painter->setFont(option.font);
  painter->setPen(colours.details);
  if (state.kind != DownloadState::Running) {
    paintWrapped(*painter, text, model.details(row));
  } else {
    const int height = std::max(font.height() / 3, 3);
    const QRectF bar(text.left(), text.bottom() + 1 - height, text.width(), height);
    paintWrapped(*painter, text.adjusted(0, 0, 0, -height), model.details(row));
    paintProgress(*painter, bar, state, colours);
  }
  painter->restore();
}

QSize FilesDelegate::sizeHint(const QStyleOptionViewItem& option,
                              const QModelIndex& /*index*/) const {
  const auto* list = qobject_cast<const QListView*>(option.widget);
  if (list != nullptr && list->gridSize().isValid()) return list->gridSize();
  const QSize picture = pictureSize(option.fontMetrics);
  const int margin = marginOf(option.fontMetrics);
  return {picture.width() + kCharacters * option.fontMetrics.averageCharWidth(),
          picture.height() + 2 * margin};
}
