#include "calculation/BerekenLocaties.h"
#include "calculation/Rekenrun.h"

#include "DatabaseFixture.h"
#include "LockedFolder.h"
#include "SmallDisk.h"

#include "frame/Globals.h"
#include "frame/Paths.h"

#include <QDir>
#include <QFile>

namespace {

/// Nodes are handles: any distinct pointers will do.
QTreeWidgetItem* Node(int nummer)
{
    return reinterpret_cast<QTreeWidgetItem*>(std::intptr_t(nummer) * 16);
}

class FakeBrowser : public LocatieBrowser {
public:
    void BerekeningNodeDelete(const QString& key) override { verwijderd << key; }
    bool NodeExists(const QString& key) override { return bekend.contains(key); }
    QTreeWidgetItem* GetNodeByKey(const QString& key) override
    {
        return Node(static_cast<int>(bekend.indexOf(key)) + 1);
    }
    QString GetPathSeparator() override { return "\\"; }
    void ResetCurrentNode() override { ++gereset; }
    void ApplyNode(QTreeWidgetItem* node) override { toegepast << node; }

    QStringList bekend, verwijderd;
    QList<QTreeWidgetItem*> toegepast;
    int gereset = 0;
};

class FakeBoom : public Berekeningenboom {
public:
    QTreeWidgetItem* AddBerekening2Locatie(QTreeWidgetItem* locatie, const QString& naam) override
    {
        bijLocatie << std::pair(locatie, naam);
        return Node(100 + static_cast<int>(bijLocatie.size()));
    }
    void AddBerekening2Root(const QString& naam) override { bijRoot << naam; }

    QList<std::pair<QTreeWidgetItem*, QString>> bijLocatie;
    QStringList bijRoot;
};

/// What a run did with its folder, and how it ended.
struct Verloop {
    int exitCode = 0;
    bool afgebroken = false;
    bool gestopt = false; ///< too late to abort this one
};

} // namespace

class BerekenLocatiesTest : public DatabaseTest {
protected:
    BerekenLocatiesTest()
    {
        OpenVoorbeeld();
        for (const char* naam : {"Plas-01", "Plas-02", "Plas-03"})
            browser.bekend << QStringLiteral("ROOTLOCATIES\\") + naam;
        batch.naam = "Ontwerp";
        batch.paren = {
            {"Plas-01", "Gras 1op3"}, {"Plas-02", "Voorland 1op4"}, {"Plas-03", "Berm 1op3"}};
        batch.instellingen = Pad("Instellingen.ini");
    }

    /// A job that notes how it was called and ends as scripted.
    class FakeJob : public JobForm {
    public:
        explicit FakeJob(BerekenLocatiesTest& test) : m_test(test) {}
        void InitialiseerLocatie(const QString& berekening, const QString& map,
                                 const QString& locatie) override
        {
            m_map = map;
            m_test.gestart << QStringList{berekening, map, locatie};
        }
        void ToonVoortgang(int nummer, int aantal) override
        {
            m_test.voortgang << std::pair(nummer, aantal);
        }
        void Toon() override
        {
            m_verloop = m_test.script.isEmpty() ? Verloop{} : m_test.script.takeFirst();
            EXPECT_FALSE(m_map.isEmpty());
            m_test.invoerAanwezig << QFile::exists(m_map + "/invoer.txt");
            if (m_test.bijToon)
                m_test.bijToon();
        }
        bool IsAbortedByUser() const override { return m_verloop.afgebroken; }
        bool IsBatchStopped() const override { return m_verloop.afgebroken || m_verloop.gestopt; }
        int ExitCode() const override { return m_verloop.exitCode; }

    private:
        BerekenLocatiesTest& m_test;
        QString m_map;
        Verloop m_verloop;
    };

    void Bereken(BatchVerloop& verloop)
    {
        BerekenLocaties({db, status, browser, boom, log,
                         [this] {
                             databaseOpen << db.IsOpen();
                             return std::make_unique<FakeJob>(*this);
                         }},
                        batch, verloop);
    }
    BatchVerloop Bereken()
    {
        BatchVerloop verloop;
        Bereken(verloop);
        return verloop;
    }

    QString Map(const char* locatie, const char* naam) const
    {
        return Pad("boezem") + "/" + locatie + "/Berekeningen/" + naam;
    }

    FakeBrowser browser;
    FakeBoom boom;
    Batch batch;
    QList<Verloop> script;
    QList<QStringList> gestart;
    QList<std::pair<int, int>> voortgang;
    QList<bool> invoerAanwezig;
    QList<bool> databaseOpen; ///< at the begin of each pair
    std::function<void()> bijToon;
};

TEST_F(BerekenLocatiesTest, RunsEveryPairAndPutsItInTheTree)
{
    const auto verloop = Bereken();
    EXPECT_EQ(verloop.gedaan, 3);
    EXPECT_EQ(verloop.Gepland(), 3);
    EXPECT_FALSE(verloop.afgebroken);
    EXPECT_EQ(gestart,
              (QList<QStringList>{{"ontwerp", Map("Plas-01", "ontwerp_Gras 1op3"), "Plas-01"},
                                  {"ontwerp", Map("Plas-02", "ontwerp_Voorland 1op4"), "Plas-02"},
                                  {"ontwerp", Map("Plas-03", "ontwerp_Berm 1op3"), "Plas-03"}}));
    EXPECT_EQ(invoerAanwezig, (QList<bool>{true, true, true}));
    EXPECT_EQ(voortgang, (QList<std::pair<int, int>>{{1, 3}, {2, 3}, {3, 3}}));
    EXPECT_EQ(boom.bijLocatie,
              (QList<std::pair<QTreeWidgetItem*, QString>>{{Node(1), "ontwerp_gras 1op3"},
                                                           {Node(2), "ontwerp_voorland 1op4"},
                                                           {Node(3), "ontwerp_berm 1op3"}}));
    EXPECT_EQ(boom.bijRoot.size(), 3);
    EXPECT_EQ(browser.toegepast, (QList<QTreeWidgetItem*>{Node(101), Node(102), Node(103)}))
        << "the fresh node is shown at once";
    EXPECT_EQ(browser.gereset, 3);
    EXPECT_EQ(log.text, "Plas-01: ontwerp_gras 1op3 OK\r\nPlas-02: ontwerp_voorland 1op4 OK\r\n"
                        "Plas-03: ontwerp_berm 1op3 OK\r\n");
}

TEST_F(BerekenLocatiesTest, TheDatabaseHoldsTheBareNameInLowerCase)
{
    Bereken();
    EXPECT_EQ(Lees("SELECT DISTINCT Naam FROM Berekening"), (Rijen{{"ontwerp"}}));
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Berekening"), (Rijen{{"3"}})) << "one per profile";
}

TEST_F(BerekenLocatiesTest, WithoutProfileTheFolderHasNoSuffix)
{
    batch.paren = {{"Plas-01", "  "}};
    Bereken();
    EXPECT_TRUE(QDir(Map("Plas-01", "ontwerp")).exists());
}

TEST_F(BerekenLocatiesTest, AFailedRunStaysInTheTreeWithItsExitCode)
{
    script = {{0, false}, {3, false}, {0, false}};
    EXPECT_EQ(Bereken().gedaan, 3);
    EXPECT_TRUE(log.text.contains("Plas-02: ontwerp_voorland 1op4 FOUT: EXITCODE=3\r\n"));
    EXPECT_EQ(boom.bijLocatie.size(), 3);
    EXPECT_TRUE(QDir(Map("Plas-02", "ontwerp_Voorland 1op4")).exists());
}

TEST_F(BerekenLocatiesTest, AnAbortRemovesThatFolderAndEndsTheBatch)
{
    script = {{0, false}, {999, true}};
    const auto verloop = Bereken();
    EXPECT_TRUE(verloop.afgebroken);
    EXPECT_EQ(verloop.gedaan, 1);
    EXPECT_EQ(gestart.size(), 2) << "a third is not started";
    EXPECT_TRUE(QDir(Map("Plas-01", "ontwerp_Gras 1op3")).exists());
    EXPECT_FALSE(QDir(Map("Plas-02", "ontwerp_Voorland 1op4")).exists());
    EXPECT_EQ(boom.bijLocatie.size(), 1);
    EXPECT_EQ(log.text, "Plas-01: ontwerp_gras 1op3 OK\r\n") << "no line for the aborted one";
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat WHERE Locatie_ID=2"), (Rijen{{"1"}}))
        << "its rows stay behind";
    EXPECT_FALSE(status.text.isEmpty());
}

TEST_F(BerekenLocatiesTest, AStopThatComesTooLateForARunKeepsItAndEndsTheBatch)
{
    script = {{0, false}, {3, false, true}};
    const auto verloop = Bereken();
    EXPECT_TRUE(verloop.afgebroken);
    EXPECT_EQ(verloop.gedaan, 2);
    EXPECT_EQ(verloop.niet, QStringList{"Plas-03: ontwerp_berm 1op3"});
    EXPECT_EQ(gestart.size(), 2);
    EXPECT_TRUE(QDir(Map("Plas-02", "ontwerp_Voorland 1op4")).exists());
    EXPECT_EQ(boom.bijLocatie.size(), 2);
    EXPECT_EQ(log.text, "Plas-01: ontwerp_gras 1op3 OK\r\n"
                        "Plas-02: ontwerp_voorland 1op4 FOUT: EXITCODE=3\r\n");
    EXPECT_FALSE(status.text.isEmpty());
}

TEST_F(BerekenLocatiesTest, AStopThatComesTooLateForTheLastRunStopsNothing)
{
    batch.paren.prepend({"bestaat niet", "Gras 1op3"}); // passed over
    script = {{0, false}, {0, false}, {0, false, true}};
    const auto verloop = Bereken();
    EXPECT_EQ(verloop.gedaan, 3);
    EXPECT_FALSE(verloop.afgebroken);
    EXPECT_TRUE(status.text.isEmpty());
}

TEST_F(BerekenLocatiesTest, AllQuestionsComeBeforeTheFirstRun)
{
    MaakMap(Map("Plas-01", "ontwerp_Gras 1op3"));
    MaakMap(Map("Plas-03", "ontwerp_Berm 1op3"));
    boxes.answers = {Answer::Yes};
    bijToon = [this] { EXPECT_EQ(boxes.questions.size(), 2); };
    Bereken();
    ASSERT_EQ(boxes.questions.size(), 2);
    EXPECT_EQ(boxes.questions[0].number, 20);
    EXPECT_EQ(boxes.questions[0].arguments,
              (QStringList{Map("Plas-01", "ontwerp_Gras 1op3"), "Plas-01"}));
}

TEST_F(BerekenLocatiesTest, AnExistingFolderIsEmptiedAndItsNodeTakenOut)
{
    const QString map = Map("Plas-01", "ontwerp_Gras 1op3");
    MaakMap(map);
    QFile oud(map + "/uitvoer.txt");
    ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
    oud.close();
    SetReadOnly(oud.fileName(), true);
    boxes.answers = {Answer::Yes};
    bijToon = [&map] {
        EXPECT_FALSE(QFile::exists(map + "/uitvoer.txt")) << "read-only files go too";
    };
    batch.paren = {{"Plas-01", "Gras 1op3"}};
    Bereken();
    EXPECT_EQ(browser.verwijderd,
              QStringList{"ROOTLOCATIES\\Plas-01\\Berekeningen\\ontwerp_Gras 1op3"});
}

TEST_F(BerekenLocatiesTest, ANoLeavesThatPairOut)
{
    MaakMap(Map("Plas-02", "ontwerp_Voorland 1op4"));
    boxes.answers = {Answer::No};
    const auto verloop = Bereken();
    EXPECT_EQ(verloop.Gepland(), 2);
    EXPECT_EQ(gestart.size(), 2);
    EXPECT_EQ(gestart[1][2], "Plas-03");
}

TEST_F(BerekenLocatiesTest, APathOfMoreThan240CharactersEndsTheBatchBeforeAnyRun)
{
    batch.naam = QString(241, 'x');
    EXPECT_EQ(FoutVan([this] { Bereken(); }), 26);
    EXPECT_TRUE(gestart.isEmpty());
}

TEST_F(BerekenLocatiesTest, APathThatIsTooLongCostsNoOtherCalculation)
{
    const QString bestaand = Map("Plas-01", "ontwerp_Gras 1op3");
    MaakMap(bestaand);
    QFile resultaat(bestaand + "/uitvoer.txt");
    ASSERT_TRUE(resultaat.open(QIODevice::WriteOnly));
    batch.paren[2].profiel = QString(241, 'p');
    boxes.answers = {Answer::Yes};
    EXPECT_EQ(FoutVan([this] { Bereken(); }), 26);
    EXPECT_TRUE(boxes.questions.isEmpty()) << "there was no need to ask";
    EXPECT_TRUE(resultaat.exists());
    EXPECT_FALSE(QDir(Map("Plas-02", "ontwerp_Voorland 1op4")).exists());
}

TEST_F(BerekenLocatiesTest, APathOf240CharactersIsRun)
{
    const qsizetype vast = Map("Plas-01", "").size();
    batch.paren = {{"Plas-01", ""}};
    batch.naam = QString(240 - vast, 'x');
    EXPECT_EQ(Bereken().gedaan, 1);
    batch.naam += 'x';
    EXPECT_EQ(FoutVan([this] { Bereken(); }), 26);
}

TEST_F(BerekenLocatiesTest, PairsThatNeverRanLeaveNoFolder)
{
    script = {{0, false}, {999, true}};
    bijToon = [this] {
        EXPECT_FALSE(QDir(Map("Plas-03", "ontwerp_Berm 1op3")).exists())
            << "also when the program is killed now";
    };
    Bereken();
    EXPECT_FALSE(QDir(Map("Plas-03", "ontwerp_Berm 1op3")).exists());
}

TEST_F(BerekenLocatiesTest, FoldersInAnotherCaseAreUsedAsTheyAre)
{
    MaakMap(Pad("boezem/plas-01/berekeningen"));
    batch.paren = {{"Plas-01", ""}};
    Bereken();
    const QString map = Pad("boezem/plas-01/berekeningen/ontwerp");
    ASSERT_EQ(gestart.size(), 1);
    EXPECT_EQ(gestart[0][1], map);
    QFile invoer(map + "/invoer.txt");
    ASSERT_TRUE(invoer.open(QIODevice::ReadOnly));
    EXPECT_TRUE(invoer.readAll().contains("'" + map.toLocal8Bit() + "'"))
        << "the core finds it under its exact name only";
}

TEST_F(BerekenLocatiesTest, AFileThatStaysLeavesItsPairOut)
{
    const QString map = Map("Plas-02", "ontwerp_Voorland 1op4");
    MaakMap(map);
    QFile oud(map + "/uitvoer.txt");
    ASSERT_TRUE(oud.open(QIODevice::WriteOnly));
    const LockedFolder vast(map.toStdString());
    if (!vast.Locked())
        GTEST_SKIP() << "no folder can be locked here";
    boxes.answers = {Answer::Yes};
    const auto verloop = Bereken();
    ASSERT_EQ(boxes.messages.size(), 1);
    EXPECT_EQ(boxes.messages[0].number, 205);
    EXPECT_EQ(boxes.messages[0].arguments, QStringList{map});
    EXPECT_EQ(verloop.Gepland(), 2);
    EXPECT_EQ(gestart.size(), 2);
    EXPECT_TRUE(browser.verwijderd.isEmpty());
}

TEST_F(BerekenLocatiesTest, AWorkFolderThatVanishedIsMadeAgain)
{
    bijToon = [this] {
        if (gestart.size() == 1)
            QDir(Pad("boezem")).removeRecursively();
    };
    EXPECT_EQ(Bereken().gedaan, 3);
    EXPECT_EQ(invoerAanwezig, (QList<bool>{true, true, true}));
}

TEST_F(BerekenLocatiesTest, APairWhoseInputCannotBeWrittenIsPassedOver)
{
    batch.paren.insert(1, {"bestaat niet", "Gras 1op3"});
    const auto verloop = Bereken();
    EXPECT_EQ(verloop.Gepland(), 4);
    EXPECT_EQ(verloop.gedaan, 3);
    EXPECT_EQ(verloop.niet, QStringList{"bestaat niet: ontwerp_gras 1op3"});
    EXPECT_EQ(voortgang, (QList<std::pair<int, int>>{{1, 4}, {2, 3}, {3, 3}}))
        << "it is not waited for";
    EXPECT_EQ(boxes.reported.size(), 1);
    EXPECT_FALSE(log.text.contains("bestaat niet")) << "no result line";
}

TEST_F(BerekenLocatiesTest, TheDatabaseIsClosedBeforeEachRunsInputAndReopensByItself)
{
    bijToon = [this] { EXPECT_TRUE(db.IsOpen()) << "the writer opened it; the run closes it"; };
    Bereken();
    EXPECT_EQ(databaseOpen, (QList<bool>{false, false, false}));
}

TEST_F(BerekenLocatiesTest, OverviewAndMemoReachEveryInput)
{
    batch.overzicht = "overzicht.xls";
    batch.memo = "eerste ontwerp";
    int keer = 0;
    bijToon = [&] {
        QFile invoer(gestart[keer++][1] + "/invoer.txt");
        EXPECT_TRUE(invoer.open(QIODevice::ReadOnly));
        const QByteArray tekst = invoer.readAll();
        EXPECT_TRUE(tekst.contains("OVERZICHTNM                  = 'overzicht.xls'\r\n"));
        EXPECT_TRUE(tekst.contains("MEMO                         = 'eerste ontwerp'\r\n"));
    };
    Bereken();
    EXPECT_EQ(keer, 3);
}

TEST_F(BerekenLocatiesTest, AnErrorOnTheWayTellsHowFarItCame)
{
    int keer = 0;
    bijToon = [&keer] {
        if (++keer == 2)
            RaiseFout(701, {"rekenprogramma"});
    };
    BatchVerloop verloop;
    EXPECT_EQ(FoutVan([&] { Bereken(verloop); }), 701);
    EXPECT_EQ(verloop.gedaan, 1);
    EXPECT_EQ(verloop.niet,
              (QStringList{"Plas-02: ontwerp_voorland 1op4", "Plas-03: ontwerp_berm 1op3"}));
}

TEST_F(BerekenLocatiesTest, AFullDiskEndsTheBatchAndTellsWhatIsLeft)
{
    // The database stands on the small disk, and its work folder beside it.
    const SmallDisk disk(folder / "schijf", 8 * 1024);
    if (!disk.Mounted())
        GTEST_SKIP() << "no disk can be mounted here";
    db.CloseDB();
    std::filesystem::copy_file(folder / "boezem.mdb", folder / "schijf/boezem.mdb");
    ASSERT_EQ(db.OpenDB(Pad("schijf/boezem.mdb"), false, false), OpenResult::Accepted);
    bijToon = [this, &disk] {
        if (gestart.size() == 2)
            disk.FillUpTo(0);
    };
    BatchVerloop verloop;
    QString omschrijving;
    try {
        Bereken(verloop);
        FAIL() << "no error";
    } catch (const Fout& fout) {
        omschrijving = fout.Description();
    }
    EXPECT_TRUE(omschrijving.startsWith("De schijf is vol.")) << omschrijving.toStdString();
    EXPECT_EQ(verloop.gedaan, 2);
    EXPECT_EQ(verloop.niet, QStringList{"Plas-03: ontwerp_berm 1op3"});
    EXPECT_TRUE(boxes.reported.isEmpty()) << "not an error for every pair to come";
    EXPECT_EQ(boom.bijLocatie.size(), 2);
    db.CloseDB();
    disk.Free();
    ExpectSound(db.fileName());

    // With space again the rest can be done.
    bijToon = nullptr;
    batch.paren = {batch.paren[2]};
    EXPECT_EQ(Bereken().gedaan, 1);
    EXPECT_EQ(Lees("SELECT COUNT(*) FROM Resultaat"), (Rijen{{"3"}}));
    db.CloseDB();
}
