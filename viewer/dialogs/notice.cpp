// SPDX-License-Identifier: Apache-2.0
#include "viewer/dialogs/notice.h"

namespace {

constexpr int kLongest = 200;  // letters: nobody reads more in passing

// White on these, as the host's own banners.
const char* colour(Notice::Kind kind) {
  return kind == Notice::Kind::Failed ? "#b00020" : "#323232";
}

QString shortened(const QString& text) {
  return text.size() <= kLongest ? text : text.left(kLongest - 1) + QChar(0x2026);
}

}  // namespace

Notice::Notice(QWidget* parent, std::chrono::milliseconds shownFor) : QLabel(parent) {
  setObjectName("notice");
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  fEnd.setSingleShot(true);
  fEnd.setInterval(shownFor);
  connect(&fEnd, &QTimer::timeout, this, &QWidget::hide);
  hide();
}

void Notice::say(Kind kind, const QString& text, const QRect& room) {
  setStyleSheet(QString("QLabel { color: white; background: %1; padding: 4px 8px; }")
                    .arg(QLatin1String(colour(kind))));
  setText(shortened(text));
  place(room);
  raise();
  show();
  fEnd.start();
}

void Notice::place(const QRect& room) {
  setWordWrap(false);
  QSize size = sizeHint();
  if (size.width() > room.width()) {
    setWordWrap(true);
    size = QSize(room.width(), heightForWidth(room.width()));
  }
  QRect place(QPoint(), size);
  place.moveCenter(room.center());
  place.moveTop(room.top());
  setGeometry(place);
}
