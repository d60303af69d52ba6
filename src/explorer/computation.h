#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <functional>
#include <memory>
#include <thread>

#include "engine/parallel/pieces.h"

namespace zelvion {

/// Runs one computation at a time in the background. Starting the next one cancels the one before, whose
/// result is dropped. The calling thread never waits, except in the destructor, and there only briefly.
class Computation : public QObject {
  Q_OBJECT

 public:
  /// Delivers a result; called in the thread of the object.
  using Delivery = std::function<void()>;
  /// Runs in its own thread, below the window's priority, as do the threads that it starts. Returns an empty
  /// delivery if it was stopped; an exception is reported by failed().
  using Work = std::function<Delivery(Progress&)>;

  ~Computation() override;

  void start(Work work);
  /// Cancels the computation, if any; nothing of it is delivered.
  void stop();
  bool isRunning() const { return current_ != nullptr; }
  /// The progress of the running computation, and for how many seconds it has run.
  const Progress& progress() const { return *current_; }
  double seconds() const { return static_cast<double>(clock_.elapsed()) / 1000; }

 signals:
  /// A French sentence that says why there is no result.
  void failed(const QString& sentence);

 private:
  void launch();
  void end(const std::shared_ptr<Progress>& progress, const Delivery& delivery, const QString& failure);

  std::shared_ptr<Progress> current_;  ///< of the computation whose result is wanted
  Work waiting_;                       ///< until the thread of the one before has ended
  std::thread thread_;
  QElapsedTimer clock_;
};

}  // namespace zelvion
