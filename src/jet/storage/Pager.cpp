#include "jet/storage/Pager.h"

#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/storage/FilePager.h"

#include <algorithm>
#include <utility>

namespace jet {

// Views and edits ---------------------------------------------------------------

PageView::PageView(PageCacheEntry* entry) : m_entry(entry)
{
    ++m_entry->pins;
}
PageView::PageView(PageView&& other) noexcept : m_entry(std::exchange(other.m_entry, nullptr)) {}
PageView& PageView::operator=(PageView&& other) noexcept
{
    std::swap(m_entry, other.m_entry);
    return *this;
}
PageView::~PageView()
{
    if (m_entry)
        --m_entry->pins;
}
PageNumber PageView::Number() const
{
    return m_entry->Number();
}
std::span<const std::byte> PageView::Data() const
{
    return m_entry->Data();
}

PageEdit::PageEdit(PageCacheEntry* entry) : m_entry(entry)
{
    ++m_entry->pins;
}
PageEdit::PageEdit(PageEdit&& other) noexcept : m_entry(std::exchange(other.m_entry, nullptr)) {}
PageEdit& PageEdit::operator=(PageEdit&& other) noexcept
{
    std::swap(m_entry, other.m_entry);
    return *this;
}
PageEdit::~PageEdit()
{
    if (m_entry)
        --m_entry->pins;
}
PageNumber PageEdit::Number() const
{
    return m_entry->Number();
}
std::span<std::byte> PageEdit::Data() const
{
    return m_entry->Data();
}

// Opening -----------------------------------------------------------------------

std::filesystem::path JournalPath(std::filesystem::path database)
{
    database += "-journal";
    return database;
}

std::filesystem::path SavepointPath(std::filesystem::path database)
{
    database += "-savepoint";
    return database;
}

bool HasSharedUsers(FileSystem& files, std::filesystem::path database)
{
    // Programs that share a database keep this file beside it, locked.
    return files.IsInUse(database.replace_extension(".ldb")) ||
           files.IsInUse(database.replace_extension(".LDB"));
}

namespace {

void SetAside(FileSystem& files, const std::filesystem::path& journal)
{
    std::filesystem::path aside = journal;
    aside += "-vreemd";
    files.Replace(journal, aside);
    files.SyncFolder(journal.parent_path());
}

Bytes ReadStart(File& file)
{
    Bytes start(std::min<std::uint64_t>(file.Size(), kFileHeaderBytes));
    file.ReadAt(0, start);
    return start;
}

/// The journal of a process that ended within a transaction is played back, or,
/// when nothing may be written, returned to be read through.
std::unique_ptr<LeftJournal> TakeUpLeftJournal(FileSystem& files, const FilePager::Opened& opened,
                                               bool mayWrite, Sharing sharing)
{
    const std::filesystem::path path = JournalPath(opened.path);
    File& file = *opened.file;
    const Bytes start = ReadStart(file);
    const std::size_t pageSize = opened.header.PageSize();
    const auto state =
        FileState::Of(std::span(start).first(pageSize), opened.header.version, file.Size());
    auto journal = std::make_unique<LeftJournal>(files, path, pageSize, state);
    const LeftJournal::Kind kind = journal->GetKind();
    if (!mayWrite)
        return kind == LeftJournal::Kind::Hot ? std::move(journal) : nullptr;

    if (kind == LeftJournal::Kind::Hot) {
        if (sharing == Sharing::Shared && !file.TryLock(Sharing::Exclusive))
            throw Error(ErrorKind::Locked,
                        "De database " + Utf8FromPath(opened.path) +
                            " moet worden hersteld, maar is ook door een ander geopend.");
        journal->PlayBack(file);
        journal->End();
        if (sharing == Sharing::Shared)
            file.TryLock(Sharing::Shared);
    }
    journal.reset(); // closes the file, which is moved or removed now
    if (!files.Exists(path))
        return nullptr;
    if (kind == LeftJournal::Kind::Foreign) {
        SetAside(files, path);
    } else {
        files.Remove(path);
        files.SyncFolder(path.parent_path());
    }
    return nullptr;
}

} // namespace

Pager::~Pager() = default;

std::unique_ptr<Pager> Pager::Open(FileSystem& files, const std::filesystem::path& path,
                                   const PagerOptions& options)
{
    FilePager::Opened opened;
    opened.path = files.Resolve(path);
    const bool toWrite = options.access == Access::ReadWrite;
    if (options.sharing == Sharing::Exclusive && HasSharedUsers(files, opened.path))
        throw Error(ErrorKind::Locked,
                    "De database " + Utf8FromPath(path) +
                        " wordt door anderen gedeeld gebruikt (er is een .ldb-bestand in gebruik)"
                        " en kan nu niet exclusief worden geopend.");
    opened.file =
        files.Open(opened.path, toWrite ? FileSystem::Mode::ReadWrite : FileSystem::Mode::ReadOnly,
                   options.sharing);
    opened.header = ReadFileHeader(ReadStart(*opened.file), path);
    const std::size_t pageSize = opened.header.PageSize();
    opened.whyReadOnly = opened.header.WhyReadOnly(path);
    const bool mayWrite = toWrite && opened.whyReadOnly.empty();
    if (!toWrite && opened.whyReadOnly.empty())
        opened.whyReadOnly =
            "De database " + Utf8FromPath(path) + " is alleen geopend om te lezen.";

    if (mayWrite && options.sharing == Sharing::Exclusive)
        files.Remove(SavepointPath(opened.path)); // left by a process that was killed
    opened.overlay = TakeUpLeftJournal(files, opened, mayWrite, options.sharing);
    const std::uint64_t size = opened.overlay ? opened.overlay->OldSize() : opened.file->Size();
    if (size % pageSize != 0)
        throw Error(ErrorKind::Damaged,
                    "De database " + Utf8FromPath(path) + " is beschadigd: de lengte van " +
                        std::to_string(size) + " bytes is geen heel aantal pagina's van " +
                        std::to_string(pageSize) + " bytes.");
    if (size / pageSize < 2)
        throw Error(ErrorKind::NotADatabase, "Het bestand " + Utf8FromPath(path) +
                                                 " is geen Access-database: het bevat niets dan"
                                                 " een kop.");
    if (size > 0xFFFFFFFF)
        throw Error(ErrorKind::Unsupported,
                    "Het bestand " + Utf8FromPath(path) + " is te groot voor een Access-database.");
    opened.pageCount = static_cast<PageNumber>(size / pageSize);
    return std::make_unique<FilePager>(files, std::move(opened), options);
}

std::unique_ptr<Pager> Pager::Create(FileSystem& files, const std::filesystem::path& path,
                                     std::span<const std::byte> firstPages,
                                     const PagerOptions& options)
{
    const std::filesystem::path resolved = files.Resolve(path);
    {
        const auto file = files.Open(resolved, FileSystem::Mode::CreateNew, Sharing::Exclusive);
        try {
            file->WriteAt(0, firstPages);
            file->Sync();
            files.SyncFolder(resolved.parent_path());
            if (files.Exists(JournalPath(resolved))) // of a file that stood here once
                SetAside(files, JournalPath(resolved));
        } catch (...) {
            try {
                files.Remove(resolved);
            } catch (const Error&) { // the first error is the one to tell
            }
            throw;
        }
    }
    PagerOptions exclusive = options;
    exclusive.access = Access::ReadWrite;
    exclusive.sharing = Sharing::Exclusive;
    return Open(files, resolved, exclusive);
}

// ChangeScope -------------------------------------------------------------------

ChangeScope::ChangeScope(Pager& pager)
    : m_pager(pager), m_ownTransaction(pager.Depth() == 0), m_changesBefore(pager.ChangeCount())
{
    if (m_ownTransaction)
        m_pager.Begin();
}

ChangeScope::~ChangeScope()
{
    if (m_done)
        return;
    if (!m_ownTransaction) {
        if (m_pager.ChangeCount() != m_changesBefore)
            m_pager.Fail();
        return;
    }
    try {
        m_pager.Rollback();
    } catch (const Error&) { // the pager is marked; whoever uses it next is told
    }
}

void ChangeScope::Done()
{
    if (m_ownTransaction)
        m_pager.Commit(Flush::No);
    m_done = true;
}

} // namespace jet
