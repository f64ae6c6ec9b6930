#pragma once

#include "jet/base/Flush.h"
#include "jet/storage/FileHeader.h"
#include "jet/storage/FileSystem.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace jet {

using PageNumber = std::uint32_t;

struct PagerOptions {
    Access access = Access::ReadWrite;
    Sharing sharing = Sharing::Exclusive;
    std::size_t cacheBytes = 64u << 20;
};

class PageCacheEntry; // internal to the pager

/// A page to read, pinned in the cache for as long as this object lives.
class PageView {
public:
    PageView() = default;
    PageView(PageView&&) noexcept;
    PageView& operator=(PageView&&) noexcept;
    ~PageView();

    PageNumber Number() const;
    std::span<const std::byte> Data() const;

private:
    friend class Pager;
    explicit PageView(PageCacheEntry* entry);
    PageCacheEntry* m_entry = nullptr; // pinned, not owned
};

/// A page to change. Its old content has been kept for roll-back before this
/// object is handed out; what is written into Data() belongs to the transaction.
class PageEdit {
public:
    PageEdit(PageEdit&&) noexcept;
    PageEdit& operator=(PageEdit&&) noexcept;
    ~PageEdit();

    PageNumber Number() const;
    std::span<std::byte> Data() const;

private:
    friend class Pager;
    explicit PageEdit(PageCacheEntry* entry);
    PageCacheEntry* m_entry = nullptr; // pinned, not owned
};

/// Where the rollback journal of a database stands.
std::filesystem::path JournalPath(std::filesystem::path database);
/// Whether other programs have this database open together (a .ldb file in use).
bool HasSharedUsers(FileSystem& files, std::filesystem::path database);

/// The pages of one database file, with transactions: a bounded cache, a
/// rollback journal beside the file, and the lock that keeps others out.
///
/// Crash safety: before a page of the file is overwritten for the first time in
/// a transaction its old content stands, checksummed and flushed, in the journal
/// `<file>-journal`; commit writes the pages, flushes as asked, and removes the
/// journal. The next opener plays a left-over journal back. A killed process
/// leaves the file as it was before or after the transaction, never between.
///
/// Transactions nest; an inner roll-back undoes the inner part only. A change
/// needs an open transaction (see ChangeScope). When a write fails half-way the
/// transaction is marked failed: everything but Rollback then throws
/// TransactionFailed.
///
/// One thread at a time. All operations throw Error.
class Pager {
public:
    /// Opens `path`, checks that it is a Jet file we support, takes the lock and
    /// plays back a left-over journal (not when read-only and nobody may write:
    /// then the error says so). `files` must outlive the pager.
    static std::unique_ptr<Pager> Open(FileSystem& files, const std::filesystem::path& path,
                                       const PagerOptions& options);
    /// Creates `path` with the given first pages (whole pages, Jet 4) and opens
    /// it exclusively. Refuses an existing file.
    static std::unique_ptr<Pager> Create(FileSystem& files, const std::filesystem::path& path,
                                         std::span<const std::byte> firstPages,
                                         const PagerOptions& options);
    virtual ~Pager();

    virtual const std::filesystem::path& Path() const = 0;
    virtual FileVersion Version() const = 0;
    virtual const FileHeader& Header() const = 0;
    virtual std::size_t PageSize() const = 0; ///< 2048 or 4096
    virtual PageNumber PageCount() const = 0;
    /// Opened for reading, or of a kind that can only be read (see WhyReadOnly).
    virtual bool IsReadOnly() const = 0;
    /// The Dutch reason why nothing can be written, empty when it can be.
    virtual const std::string& WhyReadOnly() const = 0;

    /// Memory that cached pages take now.
    virtual std::size_t CachedBytes() const = 0;

    /// Throws Damaged when the page lies beyond the file.
    virtual PageView Read(PageNumber page) = 0;
    /// Throws ReadOnly, NoTransaction, TransactionFailed, Locked (shared, and others
    /// have the file open), DiskFull, Io. Page 0 is the pager's own. An edit must not be
    /// written to across a Begin.
    virtual PageEdit Write(PageNumber page) = 0;
    /// A new page of zeros at the end of the file. Throws FileFull before 2 GB.
    virtual PageEdit Append() = 0;

    virtual void Begin() = 0;
    virtual void Commit(Flush flush) = 0;
    virtual void Rollback() = 0;
    /// 0 = no transaction.
    virtual int Depth() const = 0;
    /// Marks the transaction as failed (used when a change above the pages broke
    /// off half-way).
    virtual void Fail() = 0;

    /// Rises with every roll-back, inner ones too: whoever keeps decoded pages
    /// (definitions, usage maps, the catalog) forgets them when it changed.
    virtual std::uint64_t RollbackCount() const = 0;
    /// Rises with every change of any page; scans use it to notice that the
    /// file moved under them.
    virtual std::uint64_t ChangeCount() const = 0;

protected:
    Pager() = default;
    static PageView MakeView(PageCacheEntry* entry) { return PageView(entry); }
    static PageEdit MakeEdit(PageCacheEntry* entry) { return PageEdit(entry); }
};

/// Makes one operation on several pages all or nothing: starts a transaction
/// when none is open and ends it on Done(); inside an open transaction it costs
/// nothing, but an operation that leaves without Done() after its first page
/// change marks that transaction failed. So: check everything first, then change.
class ChangeScope {
public:
    explicit ChangeScope(Pager& pager);
    ~ChangeScope();
    ChangeScope(const ChangeScope&) = delete;
    ChangeScope& operator=(const ChangeScope&) = delete;

    void Done();

private:
    Pager& m_pager;
    bool m_ownTransaction;
    std::uint64_t m_changesBefore;
    bool m_done = false;
};

} // namespace jet
