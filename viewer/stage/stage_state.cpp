// SPDX-License-Identifier: Apache-2.0
// What a stage hands to the one after it.
#include <QJsonDocument>
#include <QJsonObject>

#include "viewer/stage/overlays/sources_panel.h"
#include "viewer/stage/stage.h"
#include "viewer/stage/stage_canvas.h"

namespace {

constexpr int kStateVersion = 1;

// The names of the switches in the state.
std::vector<std::pair<const char*, QAction*>> switchesOf(const StageActions& actions) {
  return {{"overlays", actions.overlays}, {"sources", actions.sources},     {"grid", actions.grid},
          {"pixel", actions.pixel},       {"histogram", actions.histogram}, {"line", actions.line},
          {"toolBar", actions.toolBar}};
}

QJsonObject toJson(const Viewport::State& state) {
  return {{"scale", state.scale},
          {"x", state.middle.x()},
          {"y", state.middle.y()},
          {"quarters", state.quarters},
          {"mirrored", state.mirrored}};
}

Viewport::State viewOf(const QJsonObject& json) {
  Viewport::State state;
  state.scale = json["scale"].toDouble();
  state.middle = {json["x"].toDouble(0.5), json["y"].toDouble(0.5)};
  state.quarters = json["quarters"].toInt();
  state.mirrored = json["mirrored"].toBool();
  return state;
}

}  // namespace

QByteArray Stage::saveState() const {
  QJsonObject state{{"version", kStateVersion},
                    {"view", toJson(fCanvas->scene().viewport().state())}};
  for (const auto& [name, action] : switchesOf(fActions)) state[name] = action->isChecked();
  state["hidden"] = fSources->saveState();
  return QJsonDocument(state).toJson(QJsonDocument::Compact);
}

bool Stage::restoreState(const QByteArray& state) {
  const QJsonObject read = QJsonDocument::fromJson(state).object();
  if (read["version"].toInt() != kStateVersion) return false;
  for (const auto& [name, action] : switchesOf(fActions))
    if (read[name].isBool()) action->setChecked(read[name].toBool());
  fSources->restoreState(read["hidden"].toObject());
  fCanvas->restoreView(viewOf(read["view"].toObject()));
  return true;
}
