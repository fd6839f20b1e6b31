// SPDX-License-Identifier: Apache-2.0
// Labels painted once, to be drawn often.
#pragma once

#include <QFont>
#include <QImage>
#include <string>
#include <unordered_map>

// White on a dark box, with a bar in the colour of what it belongs to, which can be read on any
// picture. Thread-bound.
class LabelPictures {
 public:
  // A label that may find no place: it is painted when it is wanted.
  struct Label {
    QString words;
    QRgb colour = 0;
    QSize size;  // device pixels; empty where there is nothing to say
    QImage picture;
  };

  // Before the first, and at each painting: labels stay until the next call of it.
  void begin(const QFont& font, double pixelRatio);

  // Of a robot's text and, where it is 0 or more, of an age in tenths of a second.
  Label& of(const std::string& text, std::int64_t age, QRgb colour);
  const QImage& pictureOf(Label& label);

 private:
  struct Key {
    std::string text;
    std::int64_t age;
    QRgb colour;

    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const {
      return std::hash<std::string>()(key.text) * 31 + static_cast<std::size_t>(key.age) * 7 +
             key.colour;
    }
  };

  QSize sizeOf(const QString& words) const;
  QImage painted(const Label& label) const;

  QFont fFont;
  double fPixelRatio = 1;
  std::unordered_map<Key, Label, Hash> fLabels;
  qsizetype fBytes = 0;
};
