#pragma once

class QAccessibleInterface;
class QObject;
class QString;

namespace zelvion {

/// The factory of what assistive tools read of a LongText: its text to the letter, however it is broken into
/// lines on the screen. Null for any other object.
QAccessibleInterface* accessibleLongText(const QString& className, QObject* object);

}  // namespace zelvion
