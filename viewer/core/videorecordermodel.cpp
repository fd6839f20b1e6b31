// SPDX-License-Identifier: Apache-2.0
#include "viewer/core/videorecordermodel.h"

#include <QRegularExpression>
#include <QString>

bool VideoRecorderModel::setRecordName(const std::string& name) {
  static const QRegularExpression kFileNameRegExp(
      QRegularExpression::anchoredPattern("[A-Za-z_][A-Za-z0-9_]*"));
  if (!kFileNameRegExp.match(QString::fromStdString(name)).hasMatch()) return false;
  fRecordName = kRecordNamePrefix + name;
  return true;
}
