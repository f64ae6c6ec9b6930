#pragma once

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QString>
#include <QStringList>

#include <array>
#include <map>
#include <memory>

/// Text and binary files by number, ten searches through folders, and small
/// questions about names; the shared instance is gFile.
class QLMFile {
public:
    enum Mode { Output = 1, Input = 2, Append = 3, Random = 4, Binary = 5 };
    /// Results of FOpen that are no file numbers.
    enum Refusal { NameNotAllowed = -1, NotOverwritten = -2, ReadOnly = -3, OpenFailed = -10 };

    /// A file number (above 0), or a Refusal. With `ask`, question 5000 comes
    /// before an existing file is replaced (mode Output). Never raises.
    /// The name may hold none of ; < = > ? [ * ] anywhere, folder included.
    [[nodiscard]] int FOpen(const QString& name, int mode, int recordLength = 0, bool ask = false);
    /// A number that is not open is passed over.
    void FClose(int number);
    /// The open file. Raises RuntimeFout::OutOfRange for a number that is not.
    [[nodiscard]] QFile& Stream(int number);
    [[nodiscard]] int RecordLength(int number) const;

    /// Text by line: Windows-1252, CR LF written, CR LF or LF read.
    void PrintLine(int number, const QString& line);
    void Print(int number, const QString& text);
    [[nodiscard]] QString LineInput(int number);
    [[nodiscard]] bool Eof(int number);

    /// What follows the last separator.
    [[nodiscard]] QString GetFile(const QString& path) const;
    /// All before the last ".", folder included; "" without a dot.
    [[nodiscard]] QString GetBaseFile(const QString& name) const;
    /// All up to and including the last separator; ".\" without one.
    [[nodiscard]] QString GetPath(const QString& path) const;
    /// The short (8.3) form on Windows, the path itself elsewhere.
    [[nodiscard]] QString GetShortPathName(const QString& path) const;

    /// Whether it is a file (folders are not).
    [[nodiscard]] bool Exists(const QString& name) const;
    /// True when the file is gone afterwards. Read-only files are not deleted.
    bool KillFile(const QString& name);
    /// Local time; false and 1 January 1900 when there is no such file.
    bool GetLastWriteTime(const QString& name, QDateTime& time) const;

    /// Searches in slots 1 to 10 (any other raises RuntimeFout::OutOfRange).
    /// A pattern is a path whose last part may hold * and ?, case ignored.
    /// FirstFile and NextFile meet folders too, "." and ".." among them;
    /// FirstDir and NextDir meet only folders, without those two.
    bool FirstFile(int slot, const QString& pattern);
    bool NextFile(int slot);
    bool FirstDir(int slot, const QString& pattern);
    bool NextDir(int slot);
    [[nodiscard]] QString FoundFileName(int slot) const;
    [[nodiscard]] bool FileWithPatternExists(const QString& pattern) const;

private:
    struct OpenFile {
        std::unique_ptr<QFile> file;
        int recordLength = 0;
    };
    static constexpr int kSlots = 10;
    struct Search {
        QFileInfoList entries;
        qsizetype current = -1;
    };
    enum class Wanted { Everything, Folders };

    /// The index of a slot's search; raises for a slot that does not exist.
    [[nodiscard]] static std::size_t SlotIndex(int slot);
    bool Start(int slot, const QString& pattern, Wanted wanted);
    bool Advance(int slot, Wanted wanted);

    std::map<int, OpenFile> m_files;
    std::array<Search, kSlots> m_searches;
};

/// Splits a file specification.
class CFileName {
public:
    CFileName() = default;
    explicit CFileName(const QString& fileSpec) : m_fileSpec(fileSpec) {}

    void SetFileSpec(const QString& fileSpec) { m_fileSpec = fileSpec; }
    [[nodiscard]] const QString& GetFileSpec() const { return m_fileSpec; }

    /// Between the last separator and the last ".". Raises
    /// RuntimeFout::InvalidArgument when no "." follows the separator.
    [[nodiscard]] QString GetBaseName() const;
    /// Both raise InvalidFileSpec when the file spec is empty or the new
    /// part holds one of ? " | / \ : < >.
    void SetBaseName(const QString& baseName);
    /// Behind the last "."; without one the whole specification.
    [[nodiscard]] QString GetExtension() const;
    /// Without a "." the extension replaces the whole specification.
    void SetExtension(const QString& extension);

    static constexpr int InvalidFileSpec = -2147220989;

private:
    void Check(const QString& part, const QString& source) const;

    QString m_fileSpec;
};
