// SPDX-License-Identifier: Apache-2.0
#include "robots/picture_choice.h"

#include <QCoreApplication>

namespace Lookout {
namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("Lookout::PictureChoice", text);
}

}  // namespace

std::vector<PictureChoice> pictureChoices() {
  return {
      {"automatic", tr("Automatic"),
       tr("Exact pictures while the link carries them, compressed ones otherwise")},
      {"exact", tr("Exact"),
       tr("Every picture as the camera took it; over a slow link there are few")},
      {"saving", tr("Saving"),
       tr("Compressed pictures that take little of the link, even where it would carry more")},
  };
}

QStringList pictureWords() {
  QStringList words;
  for (const PictureChoice& choice : pictureChoices()) words << choice.word;
  return words;
}

}  // namespace Lookout
