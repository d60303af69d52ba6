#pragma once

#include <QByteArray>
#include <QString>

class QWidget;

namespace zelvion {

class Picture;
struct Power;

/// The picture with its title, on paper, in a format: "svg", "pdf" or "png".
QByteArray pictureBytes(const Picture& picture, const QString& format);

/// The list of the cycles, as `velmoire cycles --csv` writes it, with --bassins if they are counted.
QByteArray listBytes(const Power& power);

/// Writes a whole file, in place of an old one only once it is whole. Returns nothing, or a French sentence
/// that says why it could not be written.
QString writeFile(const QString& name, const QByteArray& bytes);

/// Asks for a printer and prints the picture on one page.
void printPicture(const Picture& picture, QWidget* parent);

}  // namespace zelvion
