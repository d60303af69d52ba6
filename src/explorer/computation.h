#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <functional>
#include <memory>
#include <thread>

#include "engine/parallel/pieces.h"

namespace zelvion {

/// Works in the background, at one thing at a time: what is asked next ends what runs, whose result nobody
/// gets any more. The thread that asks never waits, but for the end of the object, which is soon.
class Computation : public QObject {
  Q_OBJECT

 public:
  /// What hands over a result; called in the thread of the object.
  using Delivery = std::function<void()>;
  /// Runs in a thread of its own, below the window's priority, as do the threads that it starts. Returns an
  /// empty delivery if it was stopped; what it throws is told by failed().
  using Work = std::function<Delivery(Progress&)>;

  ~Computation() override;

  void start(Work work);
  /// Ends what runs, if anything does; nothing more is heard of it.
  void stop();
  bool isRunning() const { return current_ != nullptr; }
  /// How the work stands that runs, and for how many seconds it has.
  const Progress& progress() const { return *current_; }
  double seconds() const { return static_cast<double>(clock_.elapsed()) / 1000; }

 signals:
  /// A French sentence that says why there is no result.
  void failed(const QString& sentence);

 private:
  void launch();
  void end(const std::shared_ptr<Progress>& progress, const Delivery& delivery, const QString& failure);

  std::shared_ptr<Progress> current_;  ///< of the work whose result is wanted
  Work waiting_;                       ///< until the thread of the one before has ended
  std::thread thread_;
  QElapsedTimer clock_;
};

}  // namespace zelvion
