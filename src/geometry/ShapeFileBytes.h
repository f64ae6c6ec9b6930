#pragma once

#include <QByteArray>
#include <QFile>

namespace geometry {

/// Reading and writing the fields of a shape-file pair.
///
/// Byte order follows the ESRI rule: file code, file length, record headers and
/// index records are big-endian, all the rest is little-endian. Places are in
/// bytes from the start, lengths and offsets inside the files in 16-bit words.

inline constexpr qint32 kShapeFileCode = 9994;
inline constexpr qint32 kShapeFileVersion = 1000;
inline constexpr int kShapeHeaderSize = 100;
inline constexpr int kLengthPlace = 24; ///< the file's length, in words
inline constexpr int kTypePlace = 32;
inline constexpr int kBoundsPlace = 36; ///< Xmin, Ymin, Xmax, Ymax
inline constexpr int kRecordHeaderSize = 8;
inline constexpr int kIndexRecordSize = 8;

/// Raises run-time failure `number` with a text that names the file.
[[noreturn]] void RaiseDamaged(const QFile& file, int number);

/// `size` bytes from `position` on; what lies behind the end reads as zeros. A
/// position before the start is a failure.
QByteArray ReadAt(QFile& file, qint64 position, qint64 size);
/// Throws `Fout` if not all of it could be written.
void WriteAt(QFile& file, qint64 position, const QByteArray& bytes);
void Append(QFile& file, const QByteArray& bytes);

qint32 BigAt(const QByteArray& bytes, qint64 place);
qint32 LittleAt(const QByteArray& bytes, qint64 place);
double DoubleAt(const QByteArray& bytes, qint64 place);

/// Only the low 32 bits are written, as the fields have no room for more.
void PutBig(QByteArray& bytes, qint64 value);
void PutLittle(QByteArray& bytes, qint64 value);
void PutDouble(QByteArray& bytes, double value);

} // namespace geometry
