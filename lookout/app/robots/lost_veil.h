// SPDX-License-Identifier: Apache-2.0
// What lies over a picture that has stopped.
#pragma once

#include <QLabel>
#include <QWidget>

namespace Lookout {

// Covers its parent, darkens it, keeps clicks away from it, and says at the top why. GUI thread.
class LostVeil : public QWidget {
  Q_OBJECT

 public:
  explicit LostVeil(QWidget* parent);
  void cover(const QString& text);
  // Covers it, or where there is nothing to say, uncovers it.
  void setText(const QString& text);
  QString text() const { return fBanner->text(); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QLabel* fBanner;
};

}  // namespace Lookout
