#include "jet/dao/Workspace.h"

#include "jet/catalog/Session.h"
#include "jet/upkeep/Compact.h"

namespace jet {

Workspace::Workspace() : Workspace(FileSystem::System()) {}

Workspace::Workspace(FileSystem& files) : m_group(std::make_shared<SessionGroup>(files)) {}

Workspace::~Workspace()
{
    m_group->CloseAll();
}

std::unique_ptr<Database> Workspace::OpenDatabase(const std::filesystem::path& path,
                                                  const OpenOptions& options)
{
    return std::make_unique<Database>(m_group->Open(path, options));
}

std::unique_ptr<Database> Workspace::CreateDatabase(const std::filesystem::path& path)
{
    return std::make_unique<Database>(m_group->Create(path));
}

void Workspace::BeginTrans()
{
    m_group->Begin();
}

void Workspace::CommitTrans(Flush flush)
{
    m_group->Commit(flush);
}

void Workspace::Rollback()
{
    m_group->Rollback();
}

int Workspace::TransactionDepth() const
{
    return m_group->Depth();
}

void CompactDatabase(const std::filesystem::path& path)
{
    CompactFile(FileSystem::System(), path);
}

} // namespace jet
