#pragma once

#include "database/HRdb.h"

#include "FakePorts.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// All rows of a statement as text, nulls as "null": what the tests compare.
using Rijen = std::vector<std::vector<std::string>>;

/// An installed folder of its own with the project's ini files, and an HRdb.
class DatabaseTest : public testing::Test {
protected:
    DatabaseTest();
    ~DatabaseTest() override;

    /// A fresh copy of the example database (24 locations, no calculations), not opened.
    QString VoorbeeldDatabase(const std::string& naam = "boezem.mdb");
    /// As databases were before the program upgraded them.
    QString OudeDatabase(const std::string& naam = "oud.mdb");
    /// The example opened unchecked in `db`.
    void OpenVoorbeeld();

    /// Reads rows with an engine of their own. The file must be closed.
    Rijen Lees(const QString& bestand, const std::string& sql);
    /// Changes the file beside HRdb. The file must be closed.
    void Voeruit(const QString& bestand, const std::vector<std::string>& statements);
    /// Rows through the open connection of `db`.
    Rijen Lees(const std::string& sql);

    QString Pad(const std::string& naam) const;
    void MaakMap(const QString& pad);
    /// The engine's own examination finds no fault.
    void ExpectSound(const QString& bestand);

    TemporaryFolder folder;
    FakeStatusBar status;
    FakeLog log;
    FakeBoxes boxes;
    HRdb db;
};

/// The rows of an open recordset, from the first.
Rijen Alle(const RecordsetPtr& rijen);
Rijen Alle(const RecordsetPtr& rijen, const std::vector<std::string>& velden);

/// `number` of the Fout that `action` throws; 0 when it throws none.
template <typename Action>
int FoutVan(Action&& action, QString* omschrijving = nullptr);

#include "frame/Fouten.h"

template <typename Action>
int FoutVan(Action&& action, QString* omschrijving)
{
    try {
        action();
    } catch (const Fout& fout) {
        if (omschrijving)
            *omschrijving = fout.Description();
        return fout.Number() - FoutCode(0);
    }
    return 0;
}
