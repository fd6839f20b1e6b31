// SPDX-License-Identifier: Apache-2.0
#include "robots/view_kind.h"

#include <QCoreApplication>

namespace Lookout {
namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(Lookout::ViewKind)
};

QString capitalized(const QString& word) {
  return word.left(1).toUpper() + word.mid(1);
}

}  // namespace

ViewKind viewKind(const QString& kind) {
  if (kind == "stage")
    return {Words::tr("Stage"), Words::tr("&Stage"), Words::tr("&Another stage")};
  if (kind == "files") return {Words::tr("Files"), Words::tr("F&iles"), {}};
  return {capitalized(kind), capitalized(kind).replace('&', "&&"), {}};
}

}  // namespace Lookout
