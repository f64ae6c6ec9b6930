#include "geometry/ShapeFileBytes.h"

#include "frame/Fouten.h"

#include <QtEndian>

#include <bit>

namespace geometry {
namespace {

// The four bytes in reverse: from memory to the big-endian fields.
quint32 SwapLong(qint32 value)
{
    return qToBigEndian(static_cast<quint32>(value));
}

template <typename Number>
void PutBytes(QByteArray& bytes, Number number)
{
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

} // namespace

void RaiseDamaged(const QFile& file, int number)
{
    RaiseRuntimeFout(number, "Het shapebestand is beschadigd.|" + file.fileName());
}

QByteArray ReadAt(QFile& file, qint64 position, qint64 size)
{
    constexpr int kBadRecordNumber = 63;
    if (position < 0)
        RaiseDamaged(file, kBadRecordNumber);
    QByteArray bytes;
    if (position < file.size() && file.seek(position))
        bytes = file.read(size);
    bytes.append(QByteArray(size - bytes.size(), '\0'));
    return bytes;
}

void WriteAt(QFile& file, qint64 position, const QByteArray& bytes)
{
    if (!file.seek(position) || file.write(bytes) != bytes.size())
        RaiseRuntimeFout(RuntimeFout::FileAccess,
                         "Het bestand kan niet worden geschreven.|" + file.fileName());
}

void Append(QFile& file, const QByteArray& bytes)
{
    WriteAt(file, file.size(), bytes);
}

qint32 BigAt(const QByteArray& bytes, qint64 place)
{
    return qFromBigEndian<qint32>(bytes.constData() + place);
}

qint32 LittleAt(const QByteArray& bytes, qint64 place)
{
    return qFromLittleEndian<qint32>(bytes.constData() + place);
}

double DoubleAt(const QByteArray& bytes, qint64 place)
{
    return std::bit_cast<double>(qFromLittleEndian<quint64>(bytes.constData() + place));
}

void PutBig(QByteArray& bytes, qint64 value)
{
    PutBytes(bytes, SwapLong(static_cast<qint32>(value)));
}

void PutLittle(QByteArray& bytes, qint64 value)
{
    PutBytes(bytes, qToLittleEndian(static_cast<quint32>(value)));
}

void PutDouble(QByteArray& bytes, double value)
{
    PutBytes(bytes, qToLittleEndian(std::bit_cast<quint64>(value)));
}

} // namespace geometry
