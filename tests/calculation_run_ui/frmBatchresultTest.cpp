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
    EXPECT_EQ(Samenvatting({2, 2, false}),
              "2 van 2 berekeningen uitgevoerd, waarvan 1 met een fout.");
    EXPECT_EQ(Samenvatting({2, 5, true}), "Afgebroken: 2 van 5 berekeningen uitgevoerd; 3 niet.");
    EXPECT_EQ(Samenvatting({2, 5, false}, true),
              "Gestopt door een fout: 2 van 5 berekeningen uitgevoerd; 3 niet.");
    form.txtLog().SetText("Plas-01: ontwerp OK\r\n");
    EXPECT_EQ(Samenvatting({1, 1, false}), "1 van 1 berekeningen uitgevoerd.");
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
