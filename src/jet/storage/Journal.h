#pragma once

#include "jet/base/Flush.h"
#include "jet/base/Value.h"
#include "jet/storage/FileHeader.h"
#include "jet/storage/FileSystem.h"
#include "jet/storage/PageTable.h"

#include <optional>

namespace jet {

using PageNumber = std::uint32_t;

/// Which database file, in which state, a journal belongs to: everything in page
/// 0 (creation date and all), the commit word, and the size.
struct FileState {
    std::uint64_t headerSum = 0; ///< of page 0 without commit word 0
    std::uint16_t commitWord = 0;
    std::uint64_t size = 0;

    static FileState Of(std::span<const std::byte> page0, FileVersion version, std::uint64_t size);
    /// Whether `now` can be what this file is during or right after a
    /// transaction that began in this state.
    bool IsFollowedBy(const FileState& now) const;
};

/// The rollback journal of one database file: the old content of every page
/// that a transaction overwrites, so that it can be undone by us or, after a
/// crash, by the next opener.
///
///     header, 512 bytes: magic, page size, FileState, nonce, checksum
///     then per page: u32 page, u32 0, u64 checksum, the page's old bytes
///
/// The checksums are seeded with the nonce, a number of this transaction alone,
/// so that what an earlier transaction left behind in the file never counts.
/// Reading stops at the first record that is not whole: what comes after the last
/// Sync() concerns pages that were not overwritten yet.
///
/// The file stays between transactions with a header of zeros; the pager removes
/// it on closing.
class Journal {
public:
    Journal(FileSystem& files, std::filesystem::path path, std::size_t pageSize);

    /// Starts a transaction; nothing is written yet.
    void Begin(const FileState& state);
    bool IsActive() const { return m_active; }
    bool Contains(PageNumber page) const { return m_records.Get(page) != 0; }
    /// Keeps the old bytes of a page. They may still be in memory only.
    void Keep(PageNumber page, std::span<const std::byte> old);
    /// Gives back what was kept.
    void ReadOld(PageNumber page, std::span<std::byte> into);
    /// Returns when the disk has all that was kept: from then on these pages may
    /// be overwritten.
    void Sync();
    /// Puts every kept page and the old size back into the file, and flushes it.
    void PlayBack(File& database);
    /// The transaction is over: the journal means nothing any more. With
    /// Flush::Yes that is on disk when this returns.
    void End(Flush flush);
    /// Removes the file, its end flushed first. To be called between transactions.
    void Remove();

private:
    std::uint64_t RecordOffset(std::uint32_t index) const;
    void Create();
    void WriteBuffer();
    void WriteHeader();

    FileSystem& m_files;
    std::filesystem::path m_path;
    std::size_t m_pageSize;
    std::unique_ptr<File> m_file; // empty until something must be written
    bool m_folderSynced = false;
    bool m_active = false;
    bool m_headerWritten = false; // in the file, as opposed to zeros or nothing
    bool m_endSynced = true;
    FileState m_state;
    std::uint64_t m_nonce = 0;
    std::uint32_t m_count = 0;
    std::uint32_t m_written = 0;        // records that are in the file
    PageTable<std::uint32_t> m_records; // page -> record + 1
    Bytes m_buffer;                     // records m_written .. m_count
};

/// A journal found beside a file that is being opened, left by a process that
/// ended within a transaction.
class LeftJournal {
public:
    enum class Kind {
        None,    ///< no journal, or one that means nothing (any more)
        Hot,     ///< must be played back before the file can be read
        Foreign, ///< belongs to another file, or to another state of this one
    };

    LeftJournal(FileSystem& files, const std::filesystem::path& path, std::size_t pageSize,
                const FileState& now);

    Kind GetKind() const { return m_kind; }
    /// The database's size before the interrupted transaction.
    std::uint64_t OldSize() const { return m_state.size; }
    /// The old bytes of a page; false when the journal does not have it.
    bool ReadOld(PageNumber page, std::span<std::byte> into) const;
    /// Undoes the interrupted transaction and flushes the database.
    void PlayBack(File& database) const;
    /// After PlayBack: makes the journal mean nothing, on disk.
    void End();

private:
    FileSystem& m_files;
    std::filesystem::path m_path;
    std::unique_ptr<File> m_file;
    std::size_t m_pageSize;
    Kind m_kind = Kind::None;
    FileState m_state;
    PageTable<std::uint32_t> m_records; // page -> record + 1
    std::vector<PageNumber> m_pages;
};

} // namespace jet
