// SPDX-License-Identifier: Apache-2.0
// A plug-in inside the test program, which does as it is told and says what became of its widgets.
#pragma once

#include <QPointer>
#include <QStringList>
#include <functional>
#include <vector>

#include "ky/error.h"
#include "lookout/lookout_widget.h"
#include "lookout/widget_interface.h"

// A view of a TestWidget: all of it is picture. GUI thread.
class TestView : public LookoutWidget {
  Q_OBJECT

 public:
  TestView(const QString& kind, QStringList& events, QWidget* parent)
      : LookoutWidget(parent), fEvents(events) {
    setWindowTitle("My " + kind);
  }
  ~TestView() override { fEvents << "view deleted"; }

  bool isPlaying() const override { return playing; }
  QByteArray saveState() const override { return state; }
  bool restoreState(const QByteArray& saved) override {
    state = saved;
    return true;
  }
  quint64 framesPainted() const override { return frames; }
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const override {
    return painted;
  }
  double frameRateWanted() const override { return 5; }
  QWidget* pictureArea() const override { return area; }

  void paintPicture() {
    ++frames;
    painted = std::chrono::steady_clock::now();
  }

  bool playing = false;
  quint64 frames = 0;
  QByteArray state;
  std::optional<std::chrono::steady_clock::time_point> painted;
  QWidget* area = this;

 private:
  QStringList& fEvents;
};

// GUI thread.
class TestWidget : public LookoutWidget {
  Q_OBJECT

 public:
  TestWidget(boost::shared_ptr<Ky::KyBroker> broker, QStringList& events, QWidget* parent)
      : LookoutWidget(parent), fBroker(std::move(broker)), fEvents(events) {
    connect(this, &LookoutWidget::disconnected, [this] { fEvents << "disconnected"; });
  }
  ~TestWidget() override {
    const bool hasBroker = !fBroker || fBroker->connection() != Ky::KyConnection::Closed;
    fEvents << (hasBroker ? "deleted" : "deleted after its broker was closed");
  }

  void setPlaying(bool playing) override { fPlaying = playing; }
  bool isPlaying() const override { return fPlaying; }
  QByteArray saveState() const override { return state; }
  bool restoreState(const QByteArray& saved) override {
    state = fPlaying ? "given to one that plays already" : takesUp.isEmpty() ? saved : takesUp;
    return true;
  }
  quint64 framesPainted() const override { return frames; }
  std::optional<std::chrono::steady_clock::time_point> lastPainted() const override {
    return painted;
  }
  double frameRateWanted() const override { return 5; }
  QString pictureProblem() const override { return problem; }
  QStringList viewKinds() const override { return kinds; }
  LookoutWidget* makeView(const QString& kind, QWidget* parent) override {
    if (!kinds.contains(kind)) return nullptr;
    fEvents << "makeView " + kind;
    views.emplace_back(new TestView(kind, fEvents, parent));
    return views.back();
  }
  QString choose(const QString& setting, const QString& value) override {
    fEvents << QString("choose %1 %2%3").arg(setting, value, fPlaying ? " playing" : "");
    return refusal;
  }
  QWidget* pictureArea() const override { return area; }

  // Shows pictures from now on, on its right half.
  void addPicture() {
    area = new QWidget(this);
    area->setGeometry(width() / 2, 0, width() - width() / 2, height());
    area->setAutoFillBackground(true);
    area->setPalette(Qt::white);
    area->show();
  }
  // A new picture came.
  void paintPicture() {
    ++frames;
    painted = std::chrono::steady_clock::now();
  }

  quint64 frames = 0;
  QByteArray state;
  QByteArray takesUp;  // of any state; empty: all
  std::optional<std::chrono::steady_clock::time_point> painted;
  QString problem;
  QWidget* area = nullptr;
  QStringList kinds;  // of views
  std::vector<QPointer<TestView>> views;
  QString refusal;  // of any choice

 private:
  const boost::shared_ptr<Ky::KyBroker> fBroker;
  QStringList& fEvents;
  bool fPlaying = false;
};

class TestPlugin : public WidgetInterface {
 public:
  QWidget* getWidget(QWidget* parent, const std::string& robotIp, int robotPort,
                     const std::string& resourcePath) override {
    events << "getWidget";
    icons = QString::fromStdString(resourcePath);
    if (opensBroker) {
      initBroker(fBroker, "TestBroker", robotIp, robotPort, resourcePath);
      brokers.push_back(fBroker);
    }
    if (whileMaking) whileMaking();
    if (!failure.isEmpty()) throw Ky::KyError(failure.toStdString());
    if (throwsNumber) throw 42;
    fWidget = nullptr;
    if (makesNothing) return nullptr;
    auto* made = new TestWidget(fBroker, events, parent);
    made->takesUp = takesUp;
    made->kinds = kinds;
    made->refusal = refusal;
    return fWidget = made;
  }
  TestWidget* latest() const { return static_cast<TestWidget*>(widget()); }

  QString failure;  // getWidget() throws it
  bool throwsNumber = false;
  bool makesNothing = false;
  bool opensBroker = true;
  QByteArray takesUp;  // see TestWidget
  QStringList kinds;
  QString refusal;
  std::function<void()> whileMaking;

  QStringList events;
  QString icons;
  std::vector<boost::shared_ptr<Ky::KyBroker>> brokers;
};
