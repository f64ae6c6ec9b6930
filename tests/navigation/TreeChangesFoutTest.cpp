// Folder, database and tree stay together when one of them fails.
#include "FullDisk.h"
#include "TreeChangesFixture.h"
#include "Unprivileged.h"

#ifdef __linux__
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <filesystem>
#include <functional>
#include <map>

namespace {

namespace fs = std::filesystem;

/// Every operation, on nodes that the fixture has.
class TreeChangesFoutTest : public TreeChangesTest {
protected:
    using Change = std::function<void()>;
    /// Those that change database and folders, and those that change the database alone.
    std::map<std::string, Change> WithFolders()
    {
        return {
            {"rename a calculation everywhere",
             [&] { changes.RenameBerekening(Node("ROOTBEREKENINGEN\\som"), "x"); }},
            {"rename a calculation of a location",
             [&] { changes.RenameBerekening(Node(kSom), "x"); }},
            {"rename a ring", [&] { changes.RenameDijkring(Node(kRing), "Kade"); }},
            {"delete a calculation everywhere",
             [&] { changes.DeleteBerekening(Node("ROOTBEREKENINGEN\\som")); }},
            {"delete a calculation of a location", [&] { changes.DeleteBerekening(Node(kSom)); }},
            {"delete a ring", [&] { changes.DeleteDijkring(Node(kRing)); }},
            {"delete locations",
             [&] {
                 changes.DeleteLocaties({"Plas-01", "Plas-02"});
             }},
        };
    }
    std::map<std::string, Change> InDatabase()
    {
        return {
            {"paste a ring", [&] { changes.PasteDijkring("Ring Oost"); }},
            {"unlink a profile",
             [&] {
                 changes.UnlinkProfiel(Node("ROOTLOCATIES\\Plas-02\\profielen\\Voorland 1op4"));
             }},
            {"delete a profile", [&] { changes.DeleteProfiel("Strekdam"); }},
            {"assign a profile",
             [&] {
                 changes.AssignProfiel("Strekdam", {"Plas-01", "Plas-02"});
             }},
        };
    }
    /// Of database and work folder.
    void KeepCopy()
    {
        db.CloseDB();
        fs::copy_file(Database(), folder / "bewaard.mdb");
        fs::copy(Werkmap(), folder / "bewaard", fs::copy_options::recursive);
    }
    void RestoreCopy()
    {
        db.CloseDB();
        fs::copy_file(folder / "bewaard.mdb", Database(), fs::copy_options::overwrite_existing);
        fs::remove_all(Werkmap());
        fs::copy(folder / "bewaard", Werkmap(), fs::copy_options::recursive);
        Bouw();
    }
    std::map<std::string, Change> All()
    {
        auto all = WithFolders();
        all.merge(InDatabase());
        return all;
    }

    fs::path Database() const { return db.fileName().toStdString(); }
    fs::path Werkmap() const { return db.WerkMap().toStdString(); }

    const QString kSom = "ROOTLOCATIES\\Plas-01\\berekeningen\\som_Gras 1op3";
    const QString kRing = "ROOTDIJKRINGEN\\Ring Oost";
};

TEST_F(TreeChangesFoutTest, AfterEachChangeTheTreeShowsTheTruth)
{
    // In this order each still finds its nodes.
    for (const char* name : {"assign a profile", "unlink a profile", "delete a profile",
                             "paste a ring", "rename a calculation of a location", "rename a ring",
                             "delete a calculation everywhere", "delete locations"}) {
        SCOPED_TRACE(name);
        if (name == std::string("rename a ring"))
            changes.RenameDijkring(Node("ROOTDIJKRINGEN\\Ring Oost_1"), "Kade");
        else
            All().at(name)();
        ExpectTreeIsTheTruth();
        EXPECT_TRUE(Resten().isEmpty());
    }
    db.CloseDB();
    ExpectSound(db.fileName());
}

TEST_F(TreeChangesFoutTest, AFolderThatCannotMoveKeepsEverything)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can give up his rights";
    for (const auto& [name, change] : WithFolders()) {
        SCOPED_TRACE(name);
        const QStringList before = Toestand();
        {
            const Unprivileged nobody;
            const int number = FoutVan(change);
            EXPECT_NE(number, 0);
            EXPECT_TRUE(number == 13 || name.starts_with("rename"));
        }
        EXPECT_EQ(Toestand(), before);
    }
}

#ifdef __linux__
TEST_F(TreeChangesFoutTest, TheSecondFolderFailingBringsTheFirstBack)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can give up his rights";
    // In a folder with the sticky bit everybody moves what is his own, and nothing else.
    const auto everybody = [](const QString& path) {
        ASSERT_EQ(chmod(QFile::encodeName(path).constData(), 01777), 0);
    };
    everybody(QFileInfo(db.fileName()).path());
    everybody(db.WerkMap());
    const QByteArray own = QFile::encodeName(InWerkmap("Plas-01"));
    ASSERT_EQ(chown(own.constData(), 65534, 65534), 0);

    const QStringList before = Toestand();
    {
        const Unprivileged nobody;
        QString description;
        EXPECT_EQ(FoutVan(
                      [&] {
                          changes.DeleteLocaties({"Plas-01", "Plas-02"});
                      },
                      &description),
                  13);
        EXPECT_TRUE(description.contains("Plas-02")) << description.toStdString();
    }
    EXPECT_EQ(Toestand(), before);
    changes.DeleteLocaties({"Plas-01", "Plas-02"});
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-02"));
}

TEST_F(TreeChangesFoutTest, WhatCannotBeDeletedAfterAllIsOutOfTheWayAndTold)
{
    if (!Unprivileged::Works())
        GTEST_SKIP() << "needs an administrator who can give up his rights";
    for (const char* path : {"", "Plas-01", "Plas-01/berekeningen"})
        chmod(QFile::encodeName(InWerkmap(path)).constData(), 0777);
    chmod(QFile::encodeName(QFileInfo(db.fileName()).path()).constData(), 0777);
    QString description;
    {
        const Unprivileged nobody; // can move the folder's parent, not delete what is inside
        EXPECT_EQ(FoutVan([&] { changes.DeleteLocaties({"Plas-01"}); }, &description), 13);
    }
    EXPECT_TRUE(description.contains(".verwijderd-1")) << description.toStdString();
    EXPECT_FALSE(MapBestaat(InWerkmap("Plas-01")));
    EXPECT_EQ(db.GetLocatie_ID("Plas-01"), kNietBekend);
    EXPECT_FALSE(Heeft("ROOTLOCATIES\\Plas-01"));
    EXPECT_EQ(Resten(), QStringList{".verwijderd-1"});
}
#endif

TEST_F(TreeChangesFoutTest, ADatabaseThatIsGoneKeepsEverything)
{
    for (const auto& [name, change] : All()) {
        if (name == "rename a calculation of a location")
            continue; // reads the database only; its check fails first
        SCOPED_TRACE(name);
        const QStringList before = Toestand();
        db.CloseDB();
        const QString file = db.fileName();
        ASSERT_TRUE(QFile::rename(file, file + ".bewaard"));
        Schrijf(file, "dit is geen database");
        EXPECT_THROW(change(), std::exception);
        QFile::remove(file);
        ASSERT_TRUE(QFile::rename(file + ".bewaard", file));
        EXPECT_EQ(Toestand(), before);
    }
}

TEST_F(TreeChangesFoutTest, ADiskThatRunsFullAtAnyMomentKeepsEverything)
{
    if (!FullDisk::Works())
        GTEST_SKIP() << "needs a limit on the size of files";
    KeepCopy();
    for (const auto& [name, change] : All()) {
        if (name == "rename a calculation of a location")
            continue; // writes nothing
        SCOPED_TRACE(name);
        const QStringList before = Toestand();
        int failures = 0;
        bool done = false;
        for (long bytes = 0; !done && bytes < 2'000'000; bytes += bytes < 32'768 ? 4'096 : 32'768) {
            try {
                const FullDisk full(bytes);
                change();
                done = true;
            } catch (const std::exception&) {
                ++failures;
                // A disk so full that pages cannot be written back: opening does it.
                db.CloseDB();
                ASSERT_EQ(Toestand(), before) << bytes;
            }
        }
        EXPECT_TRUE(done);
        EXPECT_GT(failures, 2);
        ExpectTreeIsTheTruth();
        db.CloseDB();
        ExpectSound(db.fileName());
        RestoreCopy();
    }
}

} // namespace
