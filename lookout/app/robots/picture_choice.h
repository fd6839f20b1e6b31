// SPDX-License-Identifier: Apache-2.0
// How a robot's pictures come, as far as its user chooses.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace Lookout {

// The preference of a broker (Ky::KyBroker::setPreference()) whose value is a choice's word.
inline constexpr const char* kPicturePreference = "KyVideoDevice.pictures";

struct PictureChoice {
  QString word;  // "exact"
  QString text;  // for the menu
  QString tip;   // what it means
};

// The first holds where nothing was chosen.
std::vector<PictureChoice> pictureChoices();
QStringList pictureWords();

}  // namespace Lookout
