#include "database/FolderChanges.h"

#include "Unprivileged.h"
#include "WerkmapFixture.h"
#include "database/HRdb.h"
#include "frame/Paths.h"

#include <filesystem>

namespace {

class FolderChangesTest : public WerkmapTest {
protected:
    QString map = MaakMapVanBerekening("Plas-01", "som");
};

TEST_F(FolderChangesTest, AReturnedFolderIsAsItWas)
{
    {
        FolderChanges changes(db.WerkMap());
        changes.Remove(map);
        EXPECT_FALSE(MapBestaat(map));
        changes.Rename(InWerkmap("Plas-01/berekeningen"), InWerkmap("Plas-01/anders"));
    }
    EXPECT_TRUE(QFileInfo::exists(map + "/uitvoer.log"));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01/anders")));
    EXPECT_TRUE(Resten().isEmpty());
}

TEST_F(FolderChangesTest, ACommittedRemovalLeavesNothing)
{
    SetReadOnly(map + "/uitvoer.log", true);
    FolderChanges changes(db.WerkMap());
    changes.Remove(map);
    changes.Remove(MaakMapVanBerekening("Plas-02", "som"));
    changes.Commit();
    EXPECT_FALSE(MapBestaat(map));
    EXPECT_TRUE(Resten().isEmpty());
    changes.Commit();
}

TEST_F(FolderChangesTest, AMissingFolderIsPassedOver)
{
    FolderChanges changes(db.WerkMap());
    changes.Remove(InWerkmap("weg"));
    changes.Rename(InWerkmap("weg"), InWerkmap("nieuw"));
    changes.Commit();
    EXPECT_FALSE(MapBestaat(InWerkmap("nieuw")));
}

TEST_F(FolderChangesTest, AnExistingTargetIsRefused)
{
    const QString other = MaakMapVanBerekening("Plas-01", "ander");
    FolderChanges changes(db.WerkMap());
    EXPECT_THROW(changes.Rename(map, other), Fout);
    EXPECT_TRUE(MapBestaat(map));
    EXPECT_TRUE(MapBestaat(other));
}

TEST_F(FolderChangesTest, AFolderThatCannotBeRemovedIsError13WithItsPath)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can give up his rights";
    FolderChanges changes(db.WerkMap());
    QString description;
    {
        const Unprivileged nobody;
        EXPECT_EQ(FoutVan([&] { changes.Remove(map); }, &description), 13);
    }
    EXPECT_TRUE(description.contains(map)) << description.toStdString();
    EXPECT_TRUE(QFileInfo::exists(map + "/uitvoer.log"));
}

TEST_F(FolderChangesTest, OfALinkedFolderOnlyTheLinkGoes)
{
    const QString elsewhere = Pad("archief");
    MaakMap(elsewhere);
    Schrijf(elsewhere + "/uitvoer.log", "bewaard");
    const QString link = InWerkmap("Plas-01/berekeningen/link");
    ASSERT_TRUE(QFile::link(elsewhere, link));
    FolderChanges changes(db.WerkMap());
    changes.Remove(link);
    changes.Commit();
    EXPECT_FALSE(QFileInfo(link).isSymbolicLink());
    EXPECT_TRUE(Resten().isEmpty());
    EXPECT_TRUE(QFileInfo::exists(elsewhere + "/uitvoer.log"));
}

// What a program that was killed in the middle left behind.

class InterruptedFolderChangesTest : public FolderChangesTest {
protected:
    /// The files and folders of the work folder as a program leaves them that is killed
    /// after `work`.
    template <typename Work>
    void KilledAfter(Work&& work)
    {
        const auto copy = [](const QString& from, const QString& to) {
            std::filesystem::remove_all(to.toStdU16String());
            std::filesystem::copy(from.toStdU16String(), to.toStdU16String(),
                                  std::filesystem::copy_options::recursive);
        };
        {
            FolderChanges changes(db.WerkMap());
            work(changes);
            copy(db.WerkMap(), Pad("toen"));
        }
        copy(Pad("toen"), db.WerkMap());
        QFile::remove(InWerkmap(".wijzigingen.lock")); // its owner is gone
    }

    QString log = map + "/uitvoer.log";
};

TEST_F(InterruptedFolderChangesTest, RemovedAndRenamedFoldersComeBack)
{
    KilledAfter([&](FolderChanges& changes) {
        changes.Remove(map);
        changes.Rename(InWerkmap("Plas-01/berekeningen"), InWerkmap("Plas-01/anders"));
        changes.Rename(InWerkmap("Plas-01"), InWerkmap("Plas-99"));
    });
    ASSERT_FALSE(QFileInfo::exists(log));
    FolderChanges::UndoInterrupted(db.WerkMap());
    EXPECT_TRUE(QFileInfo::exists(log));
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-99")));
    EXPECT_TRUE(Resten().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(InWerkmap(".wijzigingen")));
}

TEST_F(InterruptedFolderChangesTest, ADeletionThatWasKeptIsFinished)
{
    KilledAfter([&](FolderChanges& changes) {
        changes.Remove(map);
        changes.Keep();
    });
    ASSERT_FALSE(Resten().isEmpty());
    FolderChanges::UndoInterrupted(db.WerkMap());
    EXPECT_FALSE(MapBestaat(map));
    EXPECT_TRUE(Resten().isEmpty());
}

TEST_F(InterruptedFolderChangesTest, OpeningTheDatabasePutsThemBackBeforeItIsChecked)
{
    KilledAfter([&](FolderChanges& changes) { changes.Remove(map); });
    const QString file = db.fileName();
    db.CloseDB();
    HRdb again;
    ASSERT_EQ(again.OpenDB(file, true), OpenResult::Accepted);
    EXPECT_FALSE(QFileInfo::exists(log)) << "an opener who may only read changes nothing";
    again.CloseDB();
    HRdb writer;
    ASSERT_EQ(writer.OpenDB(file, false), OpenResult::Accepted);
    EXPECT_TRUE(QFileInfo::exists(log));
}

TEST_F(InterruptedFolderChangesTest, ALineThatWasCutOffIsPassedOver)
{
    KilledAfter([&](FolderChanges& changes) { changes.Remove(map); });
    QFile note(InWerkmap(".wijzigingen"));
    ASSERT_TRUE(note.open(QIODevice::Append));
    note.write("/Plas-02\t/.verwij");
    note.close();
    FolderChanges::UndoInterrupted(db.WerkMap());
    EXPECT_TRUE(QFileInfo::exists(log));
    EXPECT_TRUE(Resten().isEmpty());
}

TEST_F(InterruptedFolderChangesTest, WhatCannotBePutBackIsKeptForTheNextOpener)
{
    KilledAfter([&](FolderChanges& changes) { changes.Remove(map); });
    MaakMapVanBerekening("Plas-01", "som"); // somebody made it anew
    FolderChanges::UndoInterrupted(db.WerkMap());
    EXPECT_EQ(Resten().size(), 1);
    ASSERT_TRUE(QDir(map).removeRecursively());
    FolderChanges::UndoInterrupted(db.WerkMap());
    EXPECT_TRUE(QFileInfo::exists(log));
    EXPECT_TRUE(Resten().isEmpty());
}

TEST_F(InterruptedFolderChangesTest, WhatALivingProgramIsAtIsLeftAlone)
{
    FolderChanges changes(db.WerkMap());
    changes.Remove(map);
    FolderChanges::UndoInterrupted(db.WerkMap());
    EXPECT_FALSE(MapBestaat(map));

    FolderChanges other(db.WerkMap());
    QString description;
    try {
        other.Remove(InWerkmap("Plas-01"));
    } catch (const Fout& fout) {
        EXPECT_EQ(fout.Number(), RuntimeFout::FileAccess);
        description = fout.Description();
    }
    EXPECT_TRUE(description.contains("ander programma")) << description.toStdString();
    EXPECT_TRUE(MapBestaat(InWerkmap("Plas-01")));
}

} // namespace
