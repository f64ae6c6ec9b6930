#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

/// The code page of every text file of the system.
///
/// Qt knows Windows-1252 only where it was built with ICU, so the table of the
/// differing characters is our own. The five bytes that the code page leaves
/// undefined (81, 8D, 8F, 90, 9D) stand for the control characters of the same
/// number: every sequence of bytes survives the way in and out.

[[nodiscard]] QString FromWindows1252(QByteArrayView bytes);

/// A character that the code page lacks becomes "?" (one for a surrogate pair).
[[nodiscard]] QByteArray ToWindows1252(QStringView text);

/// For input boxes: what cannot be stored must not be typed.
[[nodiscard]] bool FitsWindows1252(QStringView text);

/// The byte of the same letter in lower case; bytes that are no letters, and
/// letters whose other case the code page lacks, as they are.
[[nodiscard]] unsigned char LowerWindows1252(unsigned char byte);
