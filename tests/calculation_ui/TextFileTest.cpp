#include "calculation/TextFile.h"

#include "TemporaryFolder.h"
#include "frame/Fouten.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

class TextFileTest : public testing::Test {
protected:
    void Write(const QByteArray& content)
    {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
    }
    TemporaryFolder folder;
    QString path = QString::fromStdString((folder / "uitvoer.log").string());
};

TEST_F(TextFileTest, EveryLineEndIsOneLineEnd)
{
    EXPECT_EQ(textfile::Clean("een\r\ntwee\ndrie\rvier\r\n"), "een\ntwee\ndrie\nvier\n");
    EXPECT_EQ(textfile::Clean("\r"), "\n");
    EXPECT_EQ(textfile::Clean(""), "");
}

TEST_F(TextFileTest, TextIsOfTheCodePage)
{
    EXPECT_EQ(textfile::Clean("1 m\xB3/s \x80 caf\xE9\tx"), QString::fromUtf8("1 m³/s € café\tx"));
}

TEST_F(TextFileTest, BinaryContentIsHarmless)
{
    EXPECT_EQ(textfile::Clean(QByteArray("a\0b\x1B[1m\x07\x81", 9)), "a·b·[1m··");
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    for (const QChar character : textfile::Clean(all))
        EXPECT_TRUE(character == '\n' || character == '\t' ||
                    character.category() != QChar::Other_Control)
            << int(character.unicode());
}

TEST_F(TextFileTest, EndlessLinesAreBroken)
{
    const QString clean = textfile::Clean(QByteArray(10000, 'x') + "\r\ny");
    const QStringList lines = clean.split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_EQ(lines[0].size(), textfile::kLongestLine);
    EXPECT_EQ(lines[2].size(), 2000);
    EXPECT_EQ(lines[3], "y");
}

TEST_F(TextFileTest, AFileIsReadWholeUpToItsLimit)
{
    Write("0123456789");
    bool cut = true;
    EXPECT_EQ(textfile::ReadAll(path, 10, cut), "0123456789");
    EXPECT_FALSE(cut);
    EXPECT_EQ(textfile::ReadAll(path, 4, cut), "0123");
    EXPECT_TRUE(cut);
    EXPECT_THROW((void)textfile::ReadAll(path + "x", 10, cut), Fout);
    EXPECT_THROW((void)textfile::ReadAll(QString::fromStdString(folder.Path().string()), 10, cut),
                 Fout)
        << "a folder is no file";
}

TEST_F(TextFileTest, TheTailBeginsAtAWholeLine)
{
    Write("eerste\r\ntweede\r\nderde\r\n");
    TailReader reader(path);
    EXPECT_EQ(reader.ReadLast(12), "derde\n");
    EXPECT_FALSE(reader.AtStart());
    EXPECT_EQ(reader.BytesRead(), 7);
    EXPECT_EQ(reader.Size(), 23);
    EXPECT_EQ(reader.ReadBefore(9), "tweede\n");
    EXPECT_EQ(reader.ReadBefore(100), "eerste\n");
    EXPECT_TRUE(reader.AtStart());
    EXPECT_EQ(reader.ReadBefore(100), "");
}

TEST_F(TextFileTest, PiecesOfAnySizeMakeTheWholeFile)
{
    QByteArray content;
    for (int i = 0; i < 500; ++i)
        content += QByteArray(i % 37, char('a' + i % 26)) + (i % 3 ? "\r\n" : "\n");
    Write(content);
    for (const int size : {1, 7, 40, 1000, 100000}) {
        TailReader reader(path);
        QString text = reader.ReadLast(size);
        while (!reader.AtStart())
            text.prepend(reader.ReadBefore(size));
        EXPECT_EQ(text.remove('\n'), textfile::Clean(content).remove('\n')) << size;
    }
}

TEST_F(TextFileTest, AnEmptyFileIsReadToItsStart)
{
    Write("");
    TailReader reader(path);
    EXPECT_EQ(reader.ReadLast(100), "");
    EXPECT_TRUE(reader.AtStart());
}

TEST_F(TextFileTest, AMissingFileIsRefused)
{
    TailReader reader(path);
    EXPECT_THROW((void)reader.ReadLast(10), Fout);
}

TEST_F(TextFileTest, TheFileIsFreeBetweenReads)
{
    Write(QByteArray(100, 'x'));
    TailReader reader(path);
    EXPECT_EQ(reader.ReadLast(10).size(), 10);
    EXPECT_TRUE(QFile::remove(path));
    EXPECT_THROW((void)reader.ReadBefore(10), Fout);
    Write("kort");
    EXPECT_NO_THROW((void)reader.ReadBefore(1000)) << "the file shrank";
}

} // namespace
