#pragma once

#include "frame/Windows1252.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// Reader and writer of every ini file of the system.
///
/// The whole file is one string of bytes with a CR LF put before and behind
/// it, and every operation is a search in that string:
/// - only CR LF ends a line; a bare CR or LF is an ordinary character;
/// - a section starts at "[name]" in the first column (what follows the "]" is
///   ignored) and ends before the next line that starts with "[";
/// - a key line is the key in the first column, directly followed by "=";
/// - of two sections, or two keys, with one name the first counts;
/// - there are no comments: a line that matches no key is kept as it is.
///
/// The file is read at the first access and written by Save, Sluit or the
/// destructor, without a line end behind its last line. Two instances on one
/// file do not see each other's changes; the last to write wins.
/// Bytes are Windows-1252. A file that an editor has saved as Unicode, which
/// its first bytes tell, is taken for what it says and written back as ours.
///
/// Some rules look like mistakes and are meant, because files out there depend
/// on them: see SaveString and RemoveSection.
class QLMIniFile {
public:
    enum class Comparison { Exact = 0, IgnoreCase = 1 };

    /// On the program's own ini, `Zandvoet.ini` in its folder.
    QLMIniFile();
    explicit QLMIniFile(const QString& file);
    ~QLMIniFile();
    QLMIniFile(const QLMIniFile&) = delete;
    QLMIniFile& operator=(const QLMIniFile&) = delete;

    [[nodiscard]] const QString& file() const { return m_file; }
    /// Sets the path and nothing else: a text that has been read stays, and
    /// the next write puts it into the new file. Call Sluit first to avoid that.
    void setFile(const QString& file) { m_file = file; }

    [[nodiscard]] Comparison CompareMethod() const { return m_compareMethod; }
    /// How section and key names are compared. Cuts of sections are always exact.
    void setCompareMethod(Comparison method) { m_compareMethod = method; }

    /// The value without trailing blanks (leading ones stay), or `defaultValue`
    /// if section or key is absent. A key with nothing behind the "=" gives "".
    /// Throws Fout if a file that exists cannot be read; so do the next three.
    [[nodiscard]] QString GetString(const QString& section, const QString& key,
                                    const QString& defaultValue = {});

    /// Sets or adds a key. The search is for the key's characters at the start
    /// of a line, without the "=": saving `Left` replaces a line `Left.0=...`
    /// that stands in front of `Left=...`. So put `FREQ.1` before `FREQ.10`.
    void SaveString(const QString& section, const QString& key, const QString& value);

    void RemoveKey(const QString& section, const QString& key);

    /// Removing the last section also takes the CR LF in front of it; if no
    /// empty line stood there, the next write drops two characters more.
    void RemoveSection(const QString& section);

    /// Writes the text if it was read and changed. Stays "changed", so that
    /// each further Save writes again. False if the file could not be written;
    /// what stood in the file is then still there.
    bool Save();

    /// As Save, and forgets the text: the next access reads the file again.
    bool Sluit();

private:
    struct Range {
        qsizetype start;
        qsizetype length;
    };

    [[nodiscard]] std::optional<Range> FindSection(const QByteArray& section) const;
    [[nodiscard]] std::optional<Range> FindLine(Range section, const QByteArray& beginning) const;
    [[nodiscard]] qsizetype FindFolded(const QByteArray& pattern, qsizetype from,
                                       qsizetype end) const;
    void EnsureLoaded();
    void LoadFile();
    [[nodiscard]] bool WriteFile(const QString& path) const;

    QByteArray m_text;
    QString m_file;
    bool m_loaded = false;
    bool m_dirty = false;
    Comparison m_compareMethod = Comparison::IgnoreCase;
};
