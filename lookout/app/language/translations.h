// SPDX-License-Identifier: Apache-2.0
// The texts in the user's language, from files NAME_LANGUAGE.qm.
#pragma once

#include <QString>
#include <QStringList>

namespace Lookout {

// What the environment asks for, the best first, such as {"de_AT", "de"}: LANGUAGE, a list; or else
// the first of LC_ALL, LC_MESSAGES and LANG that is set. Ends where English comes, the language of
// the sources, which has no files; so it is empty for English and for the locale C.
QStringList wantedLanguages();

// Where the files of the host and of the plug-ins lie, beside an installed or built program whose
// folder is `bin`.
QString translationsFolder(const QString& bin);

// Has all texts that are shown from now on in the first wanted language of which one of the folders
// has a file of this name; false when there is none. Lasts as long as the application. What is
// installed later is asked first. GUI thread.
bool installTranslation(const QString& name, const QStringList& folders);

// Qt's own texts, where they are installed, and the host's.
void installTranslations();

}  // namespace Lookout
