#include "jet/storage/Journal.h"

#include "jet/base/ByteOrder.h"
#include "jet/base/Error.h"
#include "jet/base/Text.h"
#include "jet/storage/Checksum.h"

#include <array>
#include <cstring>
#include <random>
#include <string_view>

namespace jet {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kMagic = "JetTerug"sv; // 8 bytes; the version is in the next field
constexpr std::uint32_t kFormat = 1;
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kRecordHeader = 16;
constexpr std::size_t kBufferBytes = 1u << 20;
// A journal larger than this is not kept for the next transaction.
constexpr std::uint64_t kKeptBytes = 4u << 20;

using HeaderBytes = std::array<std::byte, kHeaderSize>;

struct HeaderFields {
    std::uint32_t pageSize = 0;
    FileState state;
    std::uint64_t nonce = 0;
};

HeaderBytes EncodeHeader(const HeaderFields& fields)
{
    HeaderBytes bytes{};
    std::memcpy(bytes.data(), kMagic.data(), kMagic.size());
    PutU32(bytes, 8, kFormat);
    PutU32(bytes, 12, fields.pageSize);
    PutU64(bytes, 16, fields.state.headerSum);
    PutU64(bytes, 24, fields.state.size);
    PutU16(bytes, 32, fields.state.commitWord);
    PutU64(bytes, 40, fields.nonce);
    PutU64(bytes, kHeaderSize - 8,
           Checksum(std::span<const std::byte>(bytes).first(kHeaderSize - 8), kFormat));
    return bytes;
}

/// Nothing when these bytes are no whole header of ours.
std::optional<HeaderFields> DecodeHeader(const HeaderBytes& bytes)
{
    if (std::memcmp(bytes.data(), kMagic.data(), kMagic.size()) != 0 || GetU32(bytes, 8) != kFormat)
        return std::nullopt;
    const auto covered = std::span<const std::byte>(bytes).first(kHeaderSize - 8);
    if (GetU64(bytes, kHeaderSize - 8) != Checksum(covered, kFormat))
        return std::nullopt;
    HeaderFields fields;
    fields.pageSize = GetU32(bytes, 12);
    fields.state = {GetU64(bytes, 16), GetU16(bytes, 32), GetU64(bytes, 24)};
    fields.nonce = GetU64(bytes, 40);
    return fields;
}

std::uint64_t RecordSum(PageNumber page, std::span<const std::byte> old, std::uint64_t nonce)
{
    return Checksum(old, nonce ^ (std::uint64_t{page} << 20));
}

std::uint64_t FreshNonce()
{
    static std::mt19937_64 generator = [] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }();
    return generator();
}

} // namespace

FileState FileState::Of(std::span<const std::byte> page0, FileVersion version, std::uint64_t size)
{
    const std::size_t word = CommitWordsOffset(version);
    FileState state;
    state.commitWord = GetU16(page0, word);
    state.headerSum = Checksum(page0.subspan(word + 2), Checksum(page0.first(word), 0));
    state.size = size;
    return state;
}

bool FileState::IsFollowedBy(const FileState& now) const
{
    // A transaction only ever lengthens the file and raises the word by one. A
    // backup put back, or a file another program went on with, has another word.
    return now.headerSum == headerSum && now.size >= size &&
           (now.commitWord == commitWord || now.commitWord == NextCommitWord(commitWord));
}

Journal::Journal(FileSystem& files, std::filesystem::path path, std::size_t pageSize)
    : m_files(files), m_path(std::move(path)), m_pageSize(pageSize)
{}

std::uint64_t Journal::RecordOffset(std::uint32_t index) const
{
    return kHeaderSize + std::uint64_t{index} * (kRecordHeader + m_pageSize);
}

void Journal::Begin(const FileState& state)
{
    m_state = state;
    m_nonce = FreshNonce();
    m_count = 0;
    m_written = 0;
    m_records.Clear();
    m_buffer.clear();
    m_active = true;
    m_headerWritten = false;
}

void Journal::Keep(PageNumber page, std::span<const std::byte> old)
{
    if (m_buffer.size() + kRecordHeader + m_pageSize > kBufferBytes)
        WriteBuffer();
    const std::size_t at = m_buffer.size();
    m_buffer.resize(at + kRecordHeader + m_pageSize);
    const std::span<std::byte> record = std::span(m_buffer).subspan(at);
    PutU32(record, 0, page);
    PutU32(record, 4, 0);
    PutU64(record, 8, RecordSum(page, old, m_nonce));
    std::memcpy(record.data() + kRecordHeader, old.data(), m_pageSize);
    m_records.Set(page, ++m_count);
}

void Journal::ReadOld(PageNumber page, std::span<std::byte> into)
{
    const std::uint32_t index = m_records.Get(page) - 1;
    if (index >= m_written) {
        const std::size_t at = (index - m_written) * (kRecordHeader + m_pageSize) + kRecordHeader;
        std::memcpy(into.data(), m_buffer.data() + at, m_pageSize);
    } else {
        m_file->ReadAt(RecordOffset(index) + kRecordHeader, into);
    }
}

void Journal::WriteHeader()
{
    m_file->WriteAt(0, EncodeHeader({static_cast<std::uint32_t>(m_pageSize), m_state, m_nonce}));
    m_headerWritten = true;
}

void Journal::Create()
{
    try {
        m_files.Remove(m_path); // what an earlier process left means nothing by now
        m_file = m_files.Open(m_path, FileSystem::Mode::CreateNew, Sharing::Exclusive);
    } catch (const Error& error) {
        if (error.Kind() != ErrorKind::AccessDenied)
            throw;
        throw Error(ErrorKind::AccessDenied,
                    "De database kan niet worden gewijzigd, omdat er geen herstelbestand naast mag"
                    " staan: " +
                        std::string(error.what()));
    }
    m_folderSynced = false;
    m_endSynced = true;
}

void Journal::WriteBuffer()
{
    if (!m_file) {
        Create();
    }
    // The end of the transaction before must be on disk before its records are
    // overwritten: with its header still valid they would be half a journal.
    if (!m_endSynced) {
        m_file->Sync();
        m_endSynced = true;
    }
    if (!m_headerWritten)
        WriteHeader();
    if (!m_buffer.empty()) {
        m_file->WriteAt(RecordOffset(m_written), m_buffer);
        m_written = m_count;
        m_buffer.clear();
    }
}

void Journal::Sync()
{
    WriteBuffer();
    m_file->Sync();
    if (!m_folderSynced) {
        m_files.SyncFolder(m_path.parent_path());
        m_folderSynced = true;
    }
}

void Journal::PlayBack(File& database)
{
    Bytes record(kRecordHeader + m_pageSize);
    if (!m_headerWritten) // an End that failed half-way has taken it out
        WriteHeader();
    m_file->Sync();
    for (std::uint32_t i = 0; i < m_count; ++i) {
        if (i < m_written)
            m_file->ReadAt(RecordOffset(i), record);
        else // never synced, so never overwritten in the database
            break;
        database.WriteAt(std::uint64_t{GetU32(record, 0)} * m_pageSize,
                         std::span<const std::byte>(record).subspan(kRecordHeader));
    }
    if (database.Size() != m_state.size)
        database.Resize(m_state.size);
    database.Sync();
}

void Journal::End(Flush flush)
{
    if (m_headerWritten) {
        m_headerWritten = false;
        m_endSynced = false;
        m_file->WriteAt(0, HeaderBytes{});
    }
    if (flush == Flush::Yes && !m_endSynced) {
        m_file->Sync();
        m_endSynced = true;
    }
    m_active = false;
    m_records.Clear();
    m_buffer.clear();
    if (m_file && RecordOffset(m_written) > kKeptBytes) {
        try {
            Remove();
        } catch (const Error&) { // it means nothing any more, however large it is
        }
    }
}

void Journal::Remove()
{
    if (!m_file)
        return;
    if (!m_endSynced) {
        m_file->Sync();
        m_endSynced = true;
    }
    m_file.reset();
    m_files.Remove(m_path);
    m_files.SyncFolder(m_path.parent_path());
}

LeftJournal::LeftJournal(FileSystem& files, const std::filesystem::path& path, std::size_t pageSize,
                         const FileState& now)
    : m_files(files), m_path(path), m_pageSize(pageSize)
{
    if (!files.Exists(path))
        return;
    m_file = files.Open(path, FileSystem::Mode::ReadOnly, Sharing::Shared);
    const std::uint64_t size = m_file->Size();
    HeaderBytes bytes{};
    if (size < bytes.size())
        return;
    m_file->ReadAt(0, bytes);
    const auto header = DecodeHeader(bytes);
    if (!header)
        return;
    m_state = header->state;
    if (header->pageSize != pageSize || !m_state.IsFollowedBy(now)) {
        m_kind = Kind::Foreign;
        return;
    }
    m_kind = Kind::Hot;
    Bytes record(kRecordHeader + pageSize);
    std::uint64_t offset = kHeaderSize;
    for (std::uint32_t i = 0; offset + record.size() <= size; ++i, offset += record.size()) {
        m_file->ReadAt(offset, record);
        const PageNumber page = GetU32(record, 0);
        const auto old = std::span<const std::byte>(record).subspan(kRecordHeader);
        if (GetU64(record, 8) != RecordSum(page, old, header->nonce) ||
            (std::uint64_t{page} + 1) * pageSize > m_state.size)
            break;
        m_records.Set(page, i + 1);
        m_pages.push_back(page);
    }
}

bool LeftJournal::ReadOld(PageNumber page, std::span<std::byte> into) const
{
    const std::uint32_t record = m_records.Get(page);
    if (record == 0)
        return false;
    m_file->ReadAt(kHeaderSize + std::uint64_t{record - 1} * (kRecordHeader + m_pageSize) +
                       kRecordHeader,
                   into);
    return true;
}

void LeftJournal::PlayBack(File& database) const
{
    Bytes old(m_pageSize);
    for (const PageNumber page : m_pages) {
        ReadOld(page, old);
        database.WriteAt(std::uint64_t{page} * m_pageSize, old);
    }
    if (database.Size() != m_state.size)
        database.Resize(m_state.size);
    database.Sync();
}

void LeftJournal::End()
{
    m_file.reset();
    m_file = m_files.Open(m_path, FileSystem::Mode::ReadWrite, Sharing::Exclusive);
    m_file->WriteAt(0, HeaderBytes{});
    m_file->Sync();
}

} // namespace jet
