// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/shortcut_sheet.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QScreen>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

using Row = std::pair<QString, QString>;

QString keysOf(const QAction& action) {
  QStringList keys;
  for (const QKeySequence& sequence : action.shortcuts())
    keys << sequence.toString(QKeySequence::NativeText);
  return keys.join(ShortcutSheet::tr(" or "));
}

QString section(const QString& title, const QList<Row>& rows) {
  QString html = QString("<h3>%1</h3><table cellpadding=\"3\">").arg(title.toHtmlEscaped());
  for (const auto& [keys, what] : rows)
    html += QString("<tr><td width=\"130\"><b>%1</b></td><td>%2</td></tr>")
                .arg(keys.toHtmlEscaped(), what.toHtmlEscaped());
  return html + "</table>";
}

QList<Row> rowsOf(const StageActions::Group& group) {
  QList<Row> rows;
  for (const QAction* action : group.actions)
    rows << Row(keysOf(*action), action->text() + ": " + action->statusTip());
  return rows;
}

QList<Row> mouseRows() {
  return {{ShortcutSheet::tr("Wheel"), ShortcutSheet::tr("Zooms around the pointer")},
          {ShortcutSheet::tr("Drag"), ShortcutSheet::tr("Moves the picture")},
          {ShortcutSheet::tr("Double click"), ShortcutSheet::tr("Full screen, and back")},
          {ShortcutSheet::tr("Right click"), ShortcutSheet::tr("All of this as a menu")},
          {ShortcutSheet::tr("Arrows"), ShortcutSheet::tr("Move the picture")},
          {ShortcutSheet::tr("Ctrl+Arrows"), ShortcutSheet::tr("Point at the next pixel")}};
}

}  // namespace

ShortcutSheet::ShortcutSheet(const StageActions& actions, QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Shortcuts of the stage"));
  QString html;
  for (const StageActions::Group& group : actions.groups())
    html += section(group.title, rowsOf(group));
  html += section(tr("Mouse and arrows"), mouseRows());
  auto* text = new QTextBrowser(this);
  text->setAccessibleName(windowTitle());
  text->setHtml(html);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text);
  layout->addWidget(buttons);
  const int line = fontMetrics().height();
  resize(QSize(32 * line, 40 * line).boundedTo(screen()->availableSize() * 9 / 10));
}

void ShortcutSheet::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Question)
    reject();
  else
    QDialog::keyPressEvent(event);
}
