// SPDX-License-Identifier: Apache-2.0
#include "language/translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace Lookout {
namespace {

// "de_AT.UTF-8@euro" is {"de_AT", "de"}.
QStringList namesOf(const QString& locale) {
  const QString name = locale.section('@', 0, 0).section('.', 0, 0);
  const QString language = name.section('_', 0, 0);
  return name == language ? QStringList{name} : QStringList{name, language};
}

bool isPlain(const QString& language) {
  return language == "C" || language == "POSIX";
}

QString locale() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
    if (const QString value = qEnvironmentVariable(variable); !value.isEmpty()) return value;
  return {};
}

// Who sets C wants what programs say to be the same everywhere.
QStringList locales() {
  const QString chosen = locale();
  const QString list = qEnvironmentVariable("LANGUAGE");
  if (list.isEmpty() || isPlain(namesOf(chosen).last())) return {chosen};
  return list.split(':', Qt::SkipEmptyParts);
}

}  // namespace

QStringList wantedLanguages() {
  QStringList wanted;
  for (const QString& each : locales()) {
    const QStringList names = namesOf(each);
    const QString& language = names.last();
    if (language.isEmpty() || language == "en" || isPlain(language)) break;
    wanted << names;
  }
  wanted.removeDuplicates();
  return wanted;
}

QString translationsFolder(const QString& bin) {
  return QDir(bin).filePath("../share/lookout/translations");
}

bool installTranslation(const QString& name, const QStringList& folders) {
  auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
  for (const QString& language : wantedLanguages())
    for (const QString& folder : folders) {
      const QString file = QDir(folder).filePath(name + "_" + language + ".qm");
      // Asked for what does not exist, a translator loads files of similar names.
      if (QFileInfo::exists(file) && translator->load(file))
        return QCoreApplication::installTranslator(translator.release());
    }
  return false;
}

void installTranslations() {
  installTranslation("qtbase", {QLibraryInfo::path(QLibraryInfo::TranslationsPath)});
  installTranslation("lookout", {translationsFolder(QCoreApplication::applicationDirPath())});
}

}  // namespace Lookout
