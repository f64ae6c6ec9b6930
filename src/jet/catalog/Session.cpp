#include "jet/catalog/Session.h"

#include "jet/base/Text.h"
#include "jet/catalog/Clock.h"

#include <algorithm>

namespace jet {

namespace {

/// The same file under two spellings counts as one.
bool SameFile(const std::filesystem::path& a, const std::filesystem::path& b)
{
    std::error_code ignored;
    return a == b || std::filesystem::equivalent(a, b, ignored);
}

} // namespace

Session::Session(std::shared_ptr<SessionGroup> group, std::filesystem::path path,
                 std::unique_ptr<Pager> pager)
    : m_group(std::move(group)),
      m_path(std::move(path)),
      m_pager(std::move(pager)),
      m_catalog(std::make_unique<Catalog>(*m_pager))
{}

Session::~Session()
{
    Close();
}

Pager& Session::File() const
{
    if (!m_pager)
        throw Error(ErrorKind::Closed, "De database " + Utf8FromPath(m_path) + " is gesloten.");
    return *m_pager;
}

Catalog& Session::Tables() const
{
    File();
    return *m_catalog;
}

void Session::Close() noexcept
{
    if (!m_pager)
        return;
    for (const auto users = std::move(m_users); SessionUser * user : users)
        user->FileCloses();
    m_users.clear();
    m_catalog.reset();
    try {
        while (m_pager->Depth() > 0)
            m_pager->Rollback();
    } catch (const Error&) {
        // The journal stays beside the file; the next opener plays it back.
    }
    m_pager.reset();
}

void Session::Enter(SessionUser& user)
{
    m_users.push_back(&user);
}

void Session::Leave(SessionUser& user) noexcept
{
    std::erase(m_users, &user);
}

void Session::RefuseWhileInUse(std::string_view table) const
{
    for (const SessionUser* user : m_users)
        if (user->Uses(table))
            throw Error(ErrorKind::InUse,
                        "De tabel \"" + std::string(table) + "\" is nog geopend in een recordset.");
}

std::shared_ptr<Session> SessionGroup::Open(const std::filesystem::path& path,
                                            const OpenOptions& options)
{
    PagerOptions wanted;
    wanted.access = options.readOnly ? Access::ReadOnly : Access::ReadWrite;
    wanted.sharing = options.exclusive ? Sharing::Exclusive : Sharing::Shared;

    std::unique_ptr<Pager> pager;
    try {
        pager = Pager::Open(m_files, path, wanted);
    } catch (const Error& error) {
        const bool readable =
            error.Kind() == ErrorKind::AccessDenied || error.Kind() == ErrorKind::ReadOnly;
        if (!readable || options.readOnly || !options.fallBackToReadOnly)
            throw;
        wanted.access = Access::ReadOnly;
        pager = Pager::Open(m_files, path, wanted);
    }
    if (pager->IsReadOnly() && !options.readOnly && !options.fallBackToReadOnly)
        throw Error(ErrorKind::ReadOnly, "Het bestand " + Utf8FromPath(path) +
                                             " kan alleen gelezen worden: " + pager->WhyReadOnly());
    return Join(path, std::move(pager));
}

std::shared_ptr<Session> SessionGroup::Create(const std::filesystem::path& path)
{
    const Bytes pages = Catalog::EmptyFile(LocalNow());
    return Join(path, Pager::Create(m_files, path, pages, {}));
}

std::shared_ptr<Session> SessionGroup::Join(const std::filesystem::path& path,
                                            std::unique_ptr<Pager> pager)
{
    // A file opened during a transaction takes part in it from here on.
    while (!pager->IsReadOnly() && pager->Depth() < m_depth)
        pager->Begin();
    auto session = std::make_shared<Session>(shared_from_this(), path, std::move(pager));
    std::erase_if(m_sessions, [](const auto& known) { return known.expired(); });
    m_sessions.push_back(session);
    return session;
}

std::vector<std::shared_ptr<Session>> SessionGroup::Sessions() const
{
    std::vector<std::shared_ptr<Session>> open;
    for (const auto& known : m_sessions)
        if (auto session = known.lock(); session && session->IsOpen())
            open.push_back(std::move(session));
    return open;
}

std::shared_ptr<Session> SessionGroup::Find(const std::filesystem::path& path) const
{
    for (auto& session : Sessions())
        if (SameFile(session->Path(), path))
            return session;
    return nullptr;
}

void SessionGroup::CloseAll() noexcept
{
    for (const auto& session : Sessions())
        session->Close();
    m_depth = 0;
}

void SessionGroup::Begin()
{
    for (const auto& session : Sessions())
        if (!session->File().IsReadOnly())
            session->File().Begin();
    ++m_depth;
}

void SessionGroup::Commit(Flush flush)
{
    if (m_depth == 0)
        throw Error(ErrorKind::NoTransaction, "Er is geen transactie om vast te leggen.");
    for (const auto& session : Sessions())
        if (session->File().Depth() >= m_depth)
            session->File().Commit(flush);
    --m_depth;
}

void SessionGroup::Rollback()
{
    if (m_depth == 0)
        throw Error(ErrorKind::NoTransaction, "Er is geen transactie om terug te draaien.");
    const int depth = m_depth--;
    for (const auto& session : Sessions())
        if (session->File().Depth() >= depth)
            session->File().Rollback();
}

AllOrNothing::AllOrNothing(Pager& pager) : m_pager(pager)
{
    m_pager.Begin();
}

AllOrNothing::~AllOrNothing()
{
    if (m_done)
        return;
    try {
        m_pager.Rollback();
    } catch (const Error&) {
        m_pager.Fail(); // nothing but a roll-back of the whole helps now
    }
}

void AllOrNothing::Done()
{
    m_pager.Commit(Flush::No);
    m_done = true;
}

} // namespace jet
