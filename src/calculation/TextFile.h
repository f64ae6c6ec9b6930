#pragma once

#include <QByteArray>
#include <QString>

/// Texts that the calculation core left behind, made fit for a text box: Windows-1252,
/// any line end, control characters shown as "·" (a file may be
/// anything), lines of more than kLongestLine characters broken.
/// The file is closed again after each read, so that its folder stays free to be deleted.
/// All raise RuntimeFout::FileAccess when the file cannot be read.
namespace textfile {

inline constexpr int kLongestLine = 4000;

[[nodiscard]] QString Clean(const QByteArray& bytes);

/// The whole file, or its first `limit` bytes; `cut` tells which.
[[nodiscard]] QString ReadAll(const QString& path, qint64 limit, bool& cut);

} // namespace textfile

/// A text file read from its end, so that a log of any size shows its last lines
/// at once; what stands before them follows on demand.
class TailReader {
public:
    explicit TailReader(const QString& path) : m_path(path) {}

    /// The last lines, about `bytes` of them, as the file is now.
    [[nodiscard]] QString ReadLast(qint64 bytes);
    /// The lines before those read so far, with the line end behind them.
    [[nodiscard]] QString ReadBefore(qint64 bytes);
    /// Everything has been read (or nothing could be).
    [[nodiscard]] bool AtStart() const { return m_start <= 0; }
    /// Bytes of the file, and those of them that have been read.
    [[nodiscard]] qint64 Size() const { return m_size; }
    [[nodiscard]] qint64 BytesRead() const { return m_size - m_start; }
    [[nodiscard]] const QString& Path() const { return m_path; }

private:
    [[nodiscard]] QString Read(qint64 bytes);

    QString m_path;
    qint64 m_size = 0;
    qint64 m_start = 0; // of what was read; always the start of a line
};
