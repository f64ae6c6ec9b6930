#include "navigation/FolderChanges.h"

#include "Unprivileged.h"
#include "WerkmapFixture.h"
#include "frame/Paths.h"

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

} // namespace
