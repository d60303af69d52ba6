#pragma once

#include <QGuiApplication>

namespace zelvion {

/// Shows the wait cursor while it lives.
class WaitCursor {
 public:
  WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;
  ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

/// Lifts the wait cursor, if it shows, while the user is asked something.
class UserTurn {
 public:
  UserTurn() : waiting_(QGuiApplication::overrideCursor() != nullptr) {
    if (waiting_) QGuiApplication::restoreOverrideCursor();
  }
  UserTurn(const UserTurn&) = delete;
  UserTurn& operator=(const UserTurn&) = delete;
  ~UserTurn() {
    if (waiting_) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  }

 private:
  bool waiting_;
};

}  // namespace zelvion
