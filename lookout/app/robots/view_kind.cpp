// SPDX-License-Identifier: Apache-2.0
#include "robots/view_kind.h"

#include <QCoreApplication>

namespace Lookout {
namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("Lookout::ViewKind", text);
}

QString capitalized(const QString& word) {
  return word.left(1).toUpper() + word.mid(1);
}

}  // namespace

ViewKind viewKind(const QString& kind) {
  if (kind == "stage") return {tr("Stage"), tr("&Stage"), tr("&Another stage")};
  if (kind == "files") return {tr("Files"), tr("F&iles"), {}};
  return {capitalized(kind), capitalized(kind).replace('&', "&&"), {}};
}

}  // namespace Lookout
