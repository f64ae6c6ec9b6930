#include "mainwindow/parts/HRdbDatabase.h"

#include "database/modODBC.h"
#include "database/ui/modHRdbOpenSaveFuncs.h"
#include "frame/Ports.h"

HRdbDatabase::HRdbDatabase(HRdb& database, QWidget& owner, StatusBar& statusBar)
    : m_database(database), m_owner(owner), m_statusBar(statusBar)
{
    m_database.setStatusbarForm(&m_statusBar);
}

HRdbDatabase::~HRdbDatabase()
{
    m_database.setStatusbarForm(nullptr);
}

int HRdbDatabase::OpenDB(const QString& path, bool readOnly, bool check)
{
    return static_cast<int>(m_database.OpenDB(path, readOnly, check));
}

void HRdbDatabase::CloseDB()
{
    m_database.CloseDB();
}

bool HRdbDatabase::IsOpen() const
{
    return m_database.IsOpen();
}

QString HRdbDatabase::OpenErrDescription() const
{
    return m_database.OpenErrDescription();
}

/// `tryOut` gives the path of an accepted file; otherwise the present one is
/// opened again, also when a calculation had it last.
template <typename Try>
QString HRdbDatabase::WithFreeFile(Try&& tryOut)
{
    m_database.CloseDB();
    const std::unique_ptr<HRdb> accepted = tryOut();
    if (accepted)
        return accepted->fileName();
    m_database.reOpenDB(false);
    return {};
}

QString HRdbDatabase::ChooseChecked(const QString& folder, const QString& title)
{
    return WithFreeFile([&] { return OpenDatabaseDialog(&m_owner, m_statusBar, folder, title); });
}

bool HRdbDatabase::Check(const QString& path)
{
    return !WithFreeFile([&] { return OpenHRdbChecked(&m_statusBar, path); }).isEmpty();
}

void HRdbDatabase::RemoveDataSources(const QStringList& names)
{
    for (const QString& name : names)
        RemoveDataSource(name);
}
