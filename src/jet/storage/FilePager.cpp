#include "jet/storage/FilePager.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace jet {
namespace {

// The file stays below 2 GB: other programs keep offsets in 31 bits.
constexpr std::uint64_t kFileSizeLimit = 1u << 31;
// Neighbouring changed pages go to the file in one write of at most this size.
constexpr std::size_t kWriteBytes = 256u << 10;

/// Keeps an entry in memory while the cache may be making room.
class Pin {
public:
    explicit Pin(PageCacheEntry* entry) : m_entry(entry) { ++m_entry->pins; }
    ~Pin() { --m_entry->pins; }
    Pin(const Pin&) = delete;
    Pin& operator=(const Pin&) = delete;

private:
    PageCacheEntry* m_entry;
};

} // namespace

FilePager::FilePager(FileSystem& files, Opened opened, const PagerOptions& options)
    : m_files(files),
      m_path(std::move(opened.path)),
      m_file(std::move(opened.file)),
      m_header(opened.header),
      m_pageSize(m_header.PageSize()),
      m_whyReadOnly(std::move(opened.whyReadOnly)),
      m_sharing(options.sharing),
      m_overlay(std::move(opened.overlay)),
      m_pageCount(opened.pageCount),
      m_fileSize(std::uint64_t{m_pageCount} * m_pageSize),
      m_cache(m_pageSize, options.cacheBytes),
      m_journal(files, JournalPath(m_path), m_pageSize),
      m_store(files, SavepointPath(m_path), m_pageSize, options.cacheBytes / 4)
{}

FilePager::~FilePager()
{
    try {
        while (Depth() > 0 && !m_broken)
            Rollback();
        if (!m_broken)
            RemoveJournal();
    } catch (const std::exception&) {
        // What could not be undone stands in the journal, for the next opener.
    }
}

/// Between transactions the journal means nothing: that it cannot be removed is no
/// reason to fail.
void FilePager::RemoveJournal()
{
    try {
        m_journal.Remove();
    } catch (const Error&) {
    }
}

void FilePager::RequireUsable() const
{
    if (m_broken)
        throw Error(ErrorKind::Io, "Een wijziging van " + Utf8FromPath(m_path) +
                                       " kon niet ongedaan worden gemaakt. Sluit het bestand; bij"
                                       " het opnieuw openen wordt het hersteld.");
    if (m_lockLost)
        throw Error(ErrorKind::Locked, "De database " + Utf8FromPath(m_path) +
                                           " is intussen door een ander in gebruik genomen. Sluit"
                                           " het bestand en open het opnieuw.");
    if (m_failedDepth != 0)
        throw Error(ErrorKind::TransactionFailed,
                    "Een wijziging van " + Utf8FromPath(m_path) +
                        " is halverwege mislukt; de transactie kan alleen nog ongedaan worden"
                        " gemaakt.");
}

void FilePager::RequireChangeable() const
{
    RequireUsable();
    if (IsReadOnly())
        throw Error(ErrorKind::ReadOnly, m_whyReadOnly);
    if (m_levels.empty())
        throw Error(ErrorKind::NoTransaction,
                    "Er is geen transactie begonnen op " + Utf8FromPath(m_path) + ".");
}

// Reading ---------------------------------------------------------------------

PageView FilePager::Read(PageNumber page)
{
    RequireUsable();
    return MakeView(Fetch(page));
}

PageCacheEntry* FilePager::Fetch(PageNumber page)
{
    if (PageCacheEntry* entry = m_cache.Find(page)) {
        entry->referenced = true;
        return entry;
    }
    if (page >= m_pageCount)
        throw Error(ErrorKind::Damaged, "De database " + Utf8FromPath(m_path) +
                                            " is beschadigd: er wordt verwezen naar" + " pagina " +
                                            std::to_string(page) + ", maar er zijn er maar " +
                                            std::to_string(m_pageCount) + ".");
    PageCacheEntry* entry = NewEntry(page);
    try {
        Load(page, entry->Data());
    } catch (...) {
        m_cache.Drop(entry);
        throw;
    }
    return entry;
}

PageCacheEntry* FilePager::NewEntry(PageNumber page)
{
    if (m_cache.IsFull()) {
        // With few clean pages left the search for one gets long: better to write
        // many at once.
        const bool mostlyDirty = m_dirtyPages.size() > m_cache.Limit() / 4 * 3;
        if ((mostlyDirty || !m_cache.MakeRoom()) && m_changed) {
            WriteDirtyPages(false);
            m_cache.MakeRoom();
        }
    }
    return m_cache.Insert(page);
}

void FilePager::Load(PageNumber page, std::span<std::byte> into)
{
    if (!m_overlay || !m_overlay->ReadOld(page, into))
        m_file->ReadAt(std::uint64_t{page} * m_pageSize, into);
}

// Changing --------------------------------------------------------------------

PageEdit FilePager::Write(PageNumber page)
{
    RequireChangeable();
    if (page == 0)
        throw std::logic_error("page 0 belongs to the pager");
    PageCacheEntry* entry = Fetch(page);
    const Pin pin(entry);
    StartChanging();
    KeepForRollback(entry);
    return EditOf(entry);
}

PageEdit FilePager::Append()
{
    RequireChangeable();
    if ((std::uint64_t{m_pageCount} + 1) * m_pageSize >= kFileSizeLimit)
        throw Error(ErrorKind::FileFull, "De database " + Utf8FromPath(m_path) +
                                             " is vol: een bestand kan niet groter worden dan"
                                             " 2 GB.");
    StartChanging();
    PageCacheEntry* entry = NewEntry(m_pageCount);
    std::ranges::fill(entry->Data(), std::byte{0});
    ++m_pageCount;
    entry->level = m_levels.back().id;
    return EditOf(entry);
}

PageEdit FilePager::EditOf(PageCacheEntry* entry)
{
    MarkDirty(entry);
    ++m_changeCount;
    return MakeEdit(entry);
}

void FilePager::MarkDirty(PageCacheEntry* entry)
{
    if (!entry->dirty) {
        entry->dirty = true;
        m_dirtyPages.push_back(entry->Number());
    }
}

void FilePager::StartChanging()
{
    if (m_changed)
        return;
    if (m_sharing == Sharing::Shared)
        TakeAlone();
    m_journal.Begin(FileState::Of(Fetch(0)->Data(), m_header.version, m_fileSize));
    m_changed = true;
}

/// Who shares the file may change it only while nobody else has it open.
void FilePager::TakeAlone()
{
    bool alone = false;
    try {
        alone = !HasSharedUsers(m_files, m_path) && m_file->TryLock(Sharing::Exclusive);
    } catch (const Error&) {
        m_lockLost = true;
        throw;
    }
    if (!alone)
        throw Error(ErrorKind::Locked, "De database " + Utf8FromPath(m_path) +
                                           " is ook door een ander geopend; wijzigen kan pas als"
                                           " die is gesloten.");
}

void FilePager::KeepForRollback(PageCacheEntry* entry)
{
    Level& level = m_levels.back();
    if (entry->level == level.id)
        return;
    const PageNumber page = entry->Number();
    if (m_levels.size() > 1 && page < level.pageCount && !level.saved.contains(page)) {
        const bool asInFile = !entry->dirty && !m_spilled.Get(page);
        level.saved.emplace(page, asInFile ? kAsInFile : m_store.Put(entry->Data()));
    }
    if (page < m_levels.front().pageCount && !m_journal.Contains(page))
        m_journal.Keep(page, entry->Data());
    entry->level = level.id;
}

void FilePager::WriteDirtyPages(bool all)
{
    std::sort(m_dirtyPages.begin(), m_dirtyPages.end());
    m_dirtyPages.erase(std::unique(m_dirtyPages.begin(), m_dirtyPages.end()), m_dirtyPages.end());
    std::vector<PageCacheEntry*> entries;
    for (const PageNumber page : m_dirtyPages) {
        PageCacheEntry* entry = m_cache.Find(page);
        if (entry && entry->dirty && (all || entry->pins == 0))
            entries.push_back(entry);
    }
    if (entries.empty()) {
        ForgetCleanPages();
        return;
    }

    m_journal.Sync();
    m_fileTouched = true;
    Bytes run;
    run.reserve(std::min(kWriteBytes, entries.size() * m_pageSize));
    for (std::size_t i = 0; i < entries.size();) {
        const PageNumber first = entries[i]->Number();
        run.clear();
        do {
            const auto data = entries[i]->Data();
            run.insert(run.end(), data.begin(), data.end());
            m_spilled.Set(entries[i]->Number(), true);
            ++i;
        } while (i < entries.size() && run.size() < kWriteBytes &&
                 entries[i]->Number() == entries[i - 1]->Number() + 1);
        const std::uint64_t offset = std::uint64_t{first} * m_pageSize;
        m_fileSize = std::max(m_fileSize, offset + run.size());
        m_file->WriteAt(offset, run);
    }
    for (PageCacheEntry* entry : entries)
        entry->dirty = false;
    ForgetCleanPages();
}

void FilePager::ForgetCleanPages()
{
    std::erase_if(m_dirtyPages, [this](PageNumber page) {
        const PageCacheEntry* entry = m_cache.Find(page);
        return !entry || !entry->dirty;
    });
}

// Transactions ----------------------------------------------------------------

void FilePager::Begin()
{
    RequireUsable();
    Level level;
    level.id = m_nextLevelId++;
    level.pageCount = m_pageCount;
    m_levels.push_back(std::move(level));
}

void FilePager::Commit(Flush flush)
{
    RequireUsable();
    if (m_levels.empty())
        throw Error(ErrorKind::NoTransaction,
                    "Er is geen transactie om vast te leggen op " + Utf8FromPath(m_path) + ".");
    if (m_levels.size() > 1)
        CommitInner();
    else
        CommitOutermost(flush);
}

void FilePager::CommitOutermost(Flush flush)
{
    if (m_changed) {
        try {
            RaiseCommitWord();
            WriteDirtyPages(true);
            TrimFile();
            m_file->Sync();
            m_journal.End(flush);
        } catch (...) {
            Fail();
            throw;
        }
    }
    EndTransaction();
}

void FilePager::RaiseCommitWord()
{
    PageCacheEntry* header = Fetch(0);
    const Pin pin(header);
    KeepForRollback(header);
    const std::size_t word = CommitWordsOffset(m_header.version);
    PutU16(header->Data(), word, NextCommitWord(GetU16(header->Data(), word)));
    MarkDirty(header);
}

/// Pages that were spilled and then rolled back leave the file too long.
void FilePager::TrimFile()
{
    const std::uint64_t size = std::uint64_t{m_pageCount} * m_pageSize;
    if (m_fileSize > size) {
        m_file->Resize(size);
        m_fileSize = size;
    }
}

void FilePager::CommitInner()
{
    Level inner = std::move(m_levels.back());
    m_levels.pop_back();
    Level& outer = m_levels.back();
    const bool outermost = m_levels.size() == 1;
    for (const auto& [page, slot] : inner.saved) {
        const bool needed = !outermost && page < outer.pageCount && !outer.saved.contains(page);
        if (needed)
            outer.saved.emplace(page, slot);
        else if (slot != kAsInFile)
            m_store.Release(slot);
    }
}

void FilePager::Rollback()
{
    if (m_levels.empty())
        throw Error(ErrorKind::NoTransaction,
                    "Er is geen transactie om ongedaan te maken op " + Utf8FromPath(m_path) + ".");
    ++m_rollbackCount;
    ++m_changeCount;
    const int depth = Depth();
    if (m_broken) {
        m_levels.pop_back();
        RequireUsable();
    }
    if (m_failedDepth != 0 && m_failedDepth < depth) {
        // An outer level has failed as well and will be undone as a whole.
        m_levels.pop_back();
        return;
    }
    try {
        if (depth > 1)
            RollbackInner();
        else
            RollbackOutermost();
    } catch (...) {
        // The outermost roll-back takes all from the journal and can still mend this.
        if (depth > 1)
            m_failedDepth = 1;
        else
            m_broken = true;
        throw;
    }
    if (m_failedDepth >= depth)
        m_failedDepth = 0;
}

void FilePager::RollbackInner()
{
    Level level = std::move(m_levels.back());
    m_levels.pop_back();
    DropPagesFrom(level.pageCount);
    for (const auto& [page, slot] : level.saved)
        RestoreSaved(page, slot);
}

void FilePager::RestoreSaved(PageNumber page, std::uint32_t slot)
{
    PageCacheEntry* entry = m_cache.Find(page);
    if (slot == kAsInFile && !m_spilled.Get(page)) {
        if (entry)
            ForgetChange(entry);
        return;
    }
    if (!entry)
        entry = NewEntry(page);
    if (slot == kAsInFile) {
        m_journal.ReadOld(page, entry->Data());
    } else {
        m_store.Get(slot, entry->Data());
        m_store.Release(slot);
    }
    MarkDirty(entry);
}

void FilePager::DropPagesFrom(PageNumber first)
{
    for (PageNumber page = first; page < m_pageCount; ++page) {
        if (PageCacheEntry* entry = m_cache.Find(page))
            m_cache.Drop(entry);
    }
    m_pageCount = first;
}

void FilePager::RollbackOutermost()
{
    if (m_fileTouched)
        m_journal.PlayBack(*m_file);
    m_fileSize = std::uint64_t{m_levels.front().pageCount} * m_pageSize;
    DropPagesFrom(m_levels.front().pageCount);
    ForgetChanges();
    if (m_journal.IsActive()) {
        try {
            m_journal.End(Flush::No);
        } catch (const Error&) {
            // The journal still says what the file says: played back again it does no harm,
            // and the next transaction writes over it.
        }
    }
    EndTransaction();
}

/// Brings a cached page back to what the file has.
void FilePager::ForgetChange(PageCacheEntry* entry)
{
    entry->dirty = false;
    if (entry->pins > 0)
        Load(entry->Number(), entry->Data());
    else
        m_cache.Drop(entry);
}

void FilePager::ForgetChanges()
{
    m_cache.ForEach([this](PageCacheEntry* entry) {
        if (entry->dirty || m_spilled.Get(entry->Number()))
            ForgetChange(entry);
    });
}

void FilePager::EndTransaction()
{
    m_levels.clear();
    m_dirtyPages.clear();
    m_spilled.Clear();
    m_fileTouched = false;
    m_failedDepth = 0;
    if (m_changed && m_sharing == Sharing::Shared) {
        // Whoever comes in now must not take our journal for one left behind.
        RemoveJournal();
        m_lockLost = !m_file->TryLock(Sharing::Shared);
    }
    m_changed = false;
    m_store.Clear();
}

void FilePager::Fail()
{
    if (!m_levels.empty() && m_failedDepth == 0)
        m_failedDepth = Depth();
}

} // namespace jet
