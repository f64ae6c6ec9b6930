#pragma once

#include "database/HRdb.h"
#include "mainwindow/Panes.h"

class QWidget;
class StatusBar;

/// The program's database, gHRdb, as the main window sees it.
///
/// A file is checked on an object of its own. Because a database is opened
/// exclusively, the present one lets go of its file meanwhile: otherwise the
/// file that is open could not be chosen again.
class HRdbDatabase : public MainDatabase {
public:
    /// `owner` of the dialogs. All must outlive this object.
    HRdbDatabase(HRdb& database, QWidget& owner, StatusBar& statusBar);
    ~HRdbDatabase() override;

    int OpenDB(const QString& path, bool readOnly, bool check) override;
    void CloseDB() override;
    bool IsOpen() const override;
    QString OpenErrDescription() const override;
    QString ChooseChecked(const QString& folder, const QString& title) override;
    bool Check(const QString& path) override;
    void RemoveDataSources(const QStringList& names) override;

private:
    template <typename Try>
    QString WithFreeFile(Try&& tryOut);

    HRdb& m_database;
    QWidget& m_owner;
    StatusBar& m_statusBar;
};
