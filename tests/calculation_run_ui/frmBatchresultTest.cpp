#include "calculation/ui/run/frmBatchresult.h"

#include "RunFixture.h"

#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTextBlock>

namespace {

class frmBatchresultTest : public RunTest {
protected:
    frmBatchresultTest()
    {
        form.txtLog().Append("Plas-01: ontwerp OK\r\n");
        form.txtLog().Append("Plas-02: ontwerp FOUT: EXITCODE=3\r\n");
        form.show();
        box = Find<QPlainTextEdit>(form, "txtLog");
    }
    void DoubleClickLine(int line)
    {
        QTextCursor cursor(box->document()->findBlockByNumber(line));
        cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::MoveAnchor, 3);
        QTest::mouseDClick(box->viewport(), Qt::LeftButton, {}, box->cursorRect(cursor).center());
    }
    QString Samenvatting(const BatchVerloop& verloop, bool mislukt = false)
    {
        form.ToonVerloop(verloop, mislukt);
        return Find<QLabel>(form, "lblSamenvatting")->text();
    }

    frmBatchresult form;
    QPlainTextEdit* box = nullptr;
};

TEST_F(frmBatchresultTest, TheListCannotBeTypedInto)
{
    const QString before = form.txtLog().Text();
    QTest::keyClicks(box, "abc");
    EXPECT_EQ(form.txtLog().Text(), before);
}

TEST_F(frmBatchresultTest, TheWholeListIsCopied)
{
    Click(form, "cmdCopy");
    EXPECT_EQ(QApplication::clipboard()->text(),
              "Plas-01: ontwerp OK\r\nPlas-02: ontwerp FOUT: EXITCODE=3\r\n");
}

TEST_F(frmBatchresultTest, ASelectionIsCopiedAlone)
{
    QTextCursor cursor(box->document());
    cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, 7);
    box->setTextCursor(cursor);
    Click(form, "cmdCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), "Plas-01");
}

TEST_F(frmBatchresultTest, ADoubleClickTellsTheCalculationAndKeepsTheListOpen)
{
    QList<Resultaatregel> gevraagd;
    QObject::connect(&form, &frmBatchresult::NaarBerekening, &form,
                     [&](const Resultaatregel& regel) { gevraagd << regel; });
    DoubleClickLine(1);
    DoubleClickLine(0);
    EXPECT_EQ(gevraagd,
              (QList<Resultaatregel>{{"Plas-02", "ontwerp", false}, {"Plas-01", "ontwerp", true}}));
    DoubleClickLine(2); // empty
    EXPECT_EQ(gevraagd.size(), 2);
    EXPECT_TRUE(form.isVisible());
}

TEST_F(frmBatchresultTest, OneSentenceTellsWhatBecameOfTheBatch)
{
    EXPECT_EQ(Samenvatting({2, {}, false}),
              "2 van 2 berekeningen uitgevoerd, waarvan 1 met een fout.");
    EXPECT_EQ(Samenvatting({2, {"Plas-03: ontwerp", "Plas-04: ontwerp"}, true}),
              "Afgebroken: 2 van 4 berekeningen uitgevoerd, waarvan 1 met een fout.\n"
              "Niet uitgevoerd: Plas-03: ontwerp, Plas-04: ontwerp.");
    form.txtLog().SetText("Plas-01: ontwerp OK\r\n");
    EXPECT_EQ(Samenvatting({1, {}, false}), "1 van 1 berekeningen uitgevoerd.");
    EXPECT_EQ(Samenvatting({1, {"Plas-02: ontwerp"}, false}, true),
              "Gestopt door een fout: 1 van 2 berekeningen uitgevoerd.\n"
              "Niet uitgevoerd: Plas-02: ontwerp.");
    EXPECT_EQ(Samenvatting({1, {"Plas-02: ontwerp"}, false}),
              "1 van 2 berekeningen uitgevoerd.\nNiet uitgevoerd: Plas-02: ontwerp.")
        << "a pair whose input could not be written";
}

TEST_F(frmBatchresultTest, OfManyThatDidNotRunTheFirstAreNamed)
{
    QStringList niet;
    for (int i = 1; i <= 999; ++i)
        niet << "L" + QString::number(i);
    form.txtLog().SetText("");
    EXPECT_EQ(Samenvatting({0, niet, true}),
              "Afgebroken: 0 van 999 berekeningen uitgevoerd.\nNiet uitgevoerd: "
              "L1, L2, L3, L4, L5, L6, L7, L8, L9, L10 en nog 989.");
}

TEST_F(frmBatchresultTest, OkAndEscapeClose)
{
    Click(form, "cmdOK");
    EXPECT_FALSE(form.isVisible());
    form.show();
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
}

} // namespace
