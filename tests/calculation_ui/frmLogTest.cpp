#include "calculation/ui/frmLog.h"

#include "BoxReader.h"
#include "Installation.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <gtest/gtest.h>

namespace {

class frmLogTest : public testing::Test {
protected:
    frmLogTest()
    {
        form.resize(500, 200);
        form.show();
        box = form.findChild<QPlainTextEdit*>("rtfLog");
        label = form.findChild<QLabel*>("lblBestand");
    }
    QString WriteLog(const QByteArray& content, const QString& name = "uitvoer.log")
    {
        installation.Write(name, content);
        return installation.Path(name);
    }
    static QByteArray Lines(int count)
    {
        QByteArray content;
        for (int i = 1; i <= count; ++i)
            content += "Regel " + QByteArray::number(i) + " van de uitvoer\r\n";
        return content;
    }
    bool ShowsItsEnd() const
    {
        const QScrollBar* bar = box->verticalScrollBar();
        return bar->value() == bar->maximum();
    }

    Installation installation;
    frmLog form;
    QPlainTextEdit* box = nullptr;
    QLabel* label = nullptr;
};

TEST_F(frmLogTest, ALongLogShowsItsLastLineAtTheBottom)
{
    const QString path = WriteLog(Lines(400) + "Klaar");
    form.ShowLogFile(path);
    EXPECT_TRUE(box->toPlainText().startsWith("Regel 1 van"));
    EXPECT_TRUE(box->toPlainText().endsWith("Klaar"));
    EXPECT_TRUE(ShowsItsEnd());
    EXPECT_TRUE(box->textCursor().atEnd());
    EXPECT_EQ(label->toolTip(), path);
    EXPECT_TRUE(box->isReadOnly());
    EXPECT_EQ(box->lineWrapMode(), QPlainTextEdit::NoWrap);
    EXPECT_FALSE(box->accessibleName().isEmpty());
}

TEST_F(frmLogTest, OfAVeryLongLogTheEndComesFirstAndTheRestOnDemand)
{
    const QByteArray content = Lines(60000); // 1.9 MB
    const QString path = WriteLog(content);
    form.ShowLogFile(path);
    EXPECT_LE(box->toPlainText().size(), frmLog::kChunk);
    EXPECT_TRUE(box->toPlainText().startsWith("Regel "));
    EXPECT_TRUE(box->toPlainText().endsWith("Regel 60000 van de uitvoer\n"));
    EXPECT_TRUE(ShowsItsEnd());
    EXPECT_TRUE(label->toolTip().endsWith(path) && label->toolTip() != path)
        << label->toolTip().toStdString();

    const QString firstLine = box->document()->firstBlock().text();
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Home, Qt::ControlModifier);
    QCoreApplication::processEvents();
    EXPECT_GT(box->toPlainText().size(), frmLog::kChunk);
    EXPECT_EQ(box->cursorForPosition(QPoint(5, 5)).block().text(), firstLine)
        << "what was in view stays in view";
    for (int i = 0; i < 20; ++i) {
        box->verticalScrollBar()->setValue(0);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(box->toPlainText(), QString(content).replace("\r\n", "\n"));
    EXPECT_EQ(label->toolTip(), path);
}

TEST_F(frmLogTest, AMissingLogIsReportedAndThePaneStaysAsItWas)
{
    const QString path = WriteLog("Eerste");
    form.ShowLogFile(path);
    const BoxReader boxes;
    form.ShowLogFile(installation.Path("weg.log"));
    EXPECT_EQ(boxes.Texts().size(), 1);
    EXPECT_EQ(box->toPlainText(), "Eerste");
    EXPECT_EQ(label->toolTip(), path);
}

TEST_F(frmLogTest, ALogWithBinaryContentIsShownHarmlessly)
{
    QByteArray content(100000, '\0');
    content += "\x1B[31mrood\r\nKlaar";
    form.ShowLogFile(WriteLog(content));
    EXPECT_TRUE(box->toPlainText().endsWith("·[31mrood\nKlaar"));
    EXPECT_TRUE(ShowsItsEnd());
}

TEST_F(frmLogTest, AnEmptyPaneTellsWhatComesHere)
{
    EXPECT_TRUE(box->placeholderText().startsWith("Kies een berekening"));
}

TEST_F(frmLogTest, ClearingEmptiesThePane)
{
    form.ShowLogFile(WriteLog(Lines(60000)));
    form.ClearLogWindow();
    EXPECT_EQ(box->toPlainText(), "");
    EXPECT_EQ(label->text(), "");
    box->verticalScrollBar()->setValue(0);
    QCoreApplication::processEvents();
    EXPECT_EQ(box->toPlainText(), "") << "nothing comes back of the file";
}

TEST_F(frmLogTest, TheNameOfTheFileFitsThePane)
{
    const QString path = WriteLog("x", QString(120, 'n') + ".log");
    form.ShowLogFile(path);
    for (const int width : {150, 3000}) {
        form.resize(width, 200);
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
    }
    EXPECT_EQ(label->text(), path);
}

TEST_F(frmLogTest, TheBoxTakesTheLinesOfOthers)
{
    form.ShowLogFile(WriteLog("uitvoer"));
    form.Box().SetText("");
    EXPECT_EQ(label->text(), "") << "what stands there is of no file";
    form.Box().Append("Locatie A\r\n");
    form.Box().Append("Locatie B\r\n");
    EXPECT_EQ(box->toPlainText(), "Locatie A\nLocatie B\n");
}

} // namespace
