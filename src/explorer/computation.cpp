#include "explorer/computation.h"

#include <sys/resource.h>
#include <unistd.h>

#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace zelvion {
namespace {

constexpr int kNiceness = 10;

/// Why a computation has no result, for the user.
QString reasonOf(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const std::bad_alloc&) {
    return "La mémoire ne suffit pas pour ce calcul. La fenêtre reste utilisable.";
  } catch (const std::system_error&) {
    return "Le système n’accorde pas de quoi calculer : fermez d’autres programmes, puis recommencez.";
  } catch (const std::exception& error) {
    return QString::fromUtf8(error.what());
  }
}

}  // namespace

Computation::~Computation() {
  stop();
  if (thread_.joinable()) thread_.join();
}

void Computation::start(Work work) {
  stop();
  current_ = std::make_shared<Progress>();
  clock_.start();
  waiting_ = std::move(work);
  if (!thread_.joinable()) launch();
}

void Computation::stop() {
  if (current_) current_->stop = true;
  current_.reset();
  waiting_ = nullptr;
}

void Computation::launch() {
  const auto run = [this, progress = current_, work = std::exchange(waiting_, nullptr)] {
    // On Linux a thread has a niceness of its own, which the threads that it starts take over.
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kNiceness);
    Delivery delivery;
    QString failure;
    try {
      delivery = work(*progress);
    } catch (...) {
      failure = reasonOf(std::current_exception());
    }
    QMetaObject::invokeMethod(
        this, [=, this] { end(progress, delivery, failure); }, Qt::QueuedConnection);
  };
  try {
    thread_ = std::thread(run);
  } catch (const std::system_error&) {
    current_.reset();
    emit failed(reasonOf(std::current_exception()));
  }
}

void Computation::end(const std::shared_ptr<Progress>& progress, const Delivery& delivery,
                      const QString& failure) {
  thread_.join();
  const bool wanted = progress == current_;
  if (wanted) current_.reset();
  if (waiting_) launch();
  if (!wanted) return;
  if (delivery) {
    delivery();
  } else {
    emit failed(failure);
  }
}

}  // namespace zelvion
