#pragma once

#include "jet/storage/Journal.h"
#include "jet/storage/PageCache.h"
#include "jet/storage/PageTable.h"
#include "jet/storage/Pager.h"
#include "jet/storage/SavepointStore.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace jet {

/// Where images of nested transactions go when they take too much memory.
std::filesystem::path SavepointPath(std::filesystem::path database);

/// The Pager over one open file; see there for what it promises.
///
/// The outermost level of a transaction keeps old content in the journal only.
/// An inner level keeps, per page, either nothing (the page was as in the file
/// when the level began, so the journal has it) or an image in the
/// SavepointStore. Pages behind the end that a level began with need neither:
/// they vanish.
class FilePager final : public Pager {
public:
    struct Opened {
        std::filesystem::path path;
        std::unique_ptr<File> file;
        FileHeader header;
        std::string whyReadOnly;
        /// Of a file that is only read: what stands in the file is to be seen
        /// through this journal.
        std::unique_ptr<LeftJournal> overlay;
        PageNumber pageCount = 0;
    };

    FilePager(FileSystem& files, Opened opened, const PagerOptions& options);
    ~FilePager() override;

    const std::filesystem::path& Path() const override { return m_path; }
    FileVersion Version() const override { return m_header.version; }
    const FileHeader& Header() const override { return m_header; }
    std::size_t PageSize() const override { return m_pageSize; }
    PageNumber PageCount() const override { return m_pageCount; }
    bool IsReadOnly() const override { return !m_whyReadOnly.empty(); }
    const std::string& WhyReadOnly() const override { return m_whyReadOnly; }
    std::size_t CachedBytes() const override { return m_cache.Bytes(); }

    PageView Read(PageNumber page) override;
    PageEdit Write(PageNumber page) override;
    PageEdit Append() override;

    void Begin() override;
    void Commit(Flush flush) override;
    void Rollback() override;
    int Depth() const override { return static_cast<int>(m_levels.size()); }
    void Fail() override;

    std::uint64_t RollbackCount() const override { return m_rollbackCount; }
    std::uint64_t ChangeCount() const override { return m_changeCount; }

private:
    static constexpr std::uint32_t kAsInFile = 0xFFFFFFFF;

    struct Level {
        std::uint64_t id = 0;
        PageNumber pageCount = 0; ///< when the level began
        /// Old content: a slot of the store, or kAsInFile. Unused in the outermost.
        std::unordered_map<PageNumber, std::uint32_t> saved;
    };

    void RequireUsable() const;
    void RequireChangeable() const;

    PageCacheEntry* Fetch(PageNumber page);
    PageCacheEntry* NewEntry(PageNumber page);
    void Load(PageNumber page, std::span<std::byte> into);

    void StartChanging();
    void TakeAlone();
    void KeepForRollback(PageCacheEntry* entry);
    PageEdit EditOf(PageCacheEntry* entry);
    void MarkDirty(PageCacheEntry* entry);
    void RaiseCommitWord();
    /// Writes changed pages into the file, the journal flushed first. Pages that
    /// are pinned may still be changing; they are left out unless `all`.
    void WriteDirtyPages(bool all);
    void ForgetCleanPages();
    void TrimFile();

    void CommitOutermost(Flush flush);
    void CommitInner();
    void RollbackOutermost();
    void RollbackInner();
    void RestoreSaved(PageNumber page, std::uint32_t slot);
    void DropPagesFrom(PageNumber first);
    void ForgetChange(PageCacheEntry* entry);
    void ForgetChanges();
    void EndTransaction();
    void RemoveJournal();

    FileSystem& m_files;
    std::filesystem::path m_path;
    std::unique_ptr<File> m_file;
    FileHeader m_header;
    std::size_t m_pageSize;
    std::string m_whyReadOnly;
    Sharing m_sharing;
    std::unique_ptr<LeftJournal> m_overlay;
    PageNumber m_pageCount;
    std::uint64_t m_fileSize; // as it is now, in bytes

    PageCache m_cache;
    Journal m_journal;
    SavepointStore m_store;

    std::vector<Level> m_levels;
    std::uint64_t m_nextLevelId = 1;
    std::vector<PageNumber> m_dirtyPages; // a superset, with repeats
    PageTable<bool> m_spilled;            // written into the file by this transaction
    bool m_changed = false;               // anything in this transaction
    bool m_fileTouched = false;           // the file itself, so that the journal is needed
    int m_failedDepth = 0;                // 0: not failed
    bool m_broken = false;                // roll-back failed; only the next opener can help
    bool m_lockLost = false;              // of a file opened Shared
    std::uint64_t m_rollbackCount = 0;
    std::uint64_t m_changeCount = 0;
};

} // namespace jet
