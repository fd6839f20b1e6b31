// SPDX-License-Identifier: Apache-2.0
#include "robots/picture_choice.h"

#include <QCoreApplication>

namespace Lookout {
namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(Lookout::PictureChoice)
};

}  // namespace

std::vector<PictureChoice> pictureChoices() {
  return {
      {"automatic", Texts::tr("Automatic"),
       Texts::tr("Exact pictures while the link carries them, compressed ones otherwise")},
      {"exact", Texts::tr("Exact"),
       Texts::tr("Every picture as the camera took it; over a slow link there are few")},
      {"saving", Texts::tr("Saving"),
       Texts::tr(
           "Compressed pictures that take little of the link, even where it would carry more")},
  };
}

QStringList pictureWords() {
  QStringList words;
  for (const PictureChoice& choice : pictureChoices()) words << choice.word;
  return words;
}

}  // namespace Lookout
