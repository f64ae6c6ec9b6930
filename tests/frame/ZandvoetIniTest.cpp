// The program's ini as it is shipped, against what the code asks of it.
#include "FrameTestTools.h"
#include "frame/QLMIniFile.h"
#include "frame/Texts.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>

namespace {

const QString kDataFolder = SOURCE_FOLDER "/data";

class ZandvoetIniTest : public FrameTest {
protected:
    ZandvoetIniTest() { SetProgramFolder(kDataFolder); }
    QLMIniFile m_ini{kDataFolder + "/Zandvoet.ini"};
};

struct Kind {
    QString section;
    QString key;
};

const QList<Kind> kKinds{
    {"Messages", "msg."}, {"Fouten", "fout."}, {"Questions", "qst."}, {"StatusBarTeksten", "sbt."}};

QString Key(const Kind& kind, int number)
{
    return kind.key + QString::number(number).rightJustified(4, '0');
}

/// The numbers that the system has, and how many arguments each is given.
const QMap<QString, QMap<int, int>> kArguments{
    {"Messages", {{3, 2},   {6, 1},    {200, 1},  {201, 1},  {203, 1},  {205, 1}, {206, 1},
                  {300, 1}, {404, 1},  {440, 1},  {666, 2},  {667, 2},  {668, 2}, {669, 2},
                  {700, 2}, {2003, 1}, {2004, 0}, {5000, 1}, {5001, 0}, {8010, 2}}},
    {"Fouten", {{4, 2},    {5, 2},    {6, 1},    {7, 1},    {10, 1},   {11, 2},   {12, 3},
                {13, 1},   {14, 1},   {21, 1},   {22, 0},   {23, 0},   {26, 1},   {27, 2},
                {28, 2},   {30, 1},   {101, 0},  {102, 0},  {555, 1},  {700, 0},  {701, 1},
                {1500, 2}, {1501, 3}, {1502, 1}, {1503, 1}, {1504, 1}, {1505, 1}, {1506, 1},
                {1507, 2}, {1509, 1}, {1510, 0}, {1520, 1}, {3004, 1}, {5001, 0}, {5002, 0},
                {5003, 0}, {5004, 0}, {5005, 2}, {5006, 0}, {5007, 0}, {7000, 1}, {9000, 1}}},
    {"Questions",
     {{2, 1},
      {3, 0},
      {4, 1},
      {5, 1},
      {20, 2},
      {22, 1},
      {100, 1},
      {101, 1},
      {200, 1},
      {201, 2},
      {5000, 1},
      {5001, 0}}},
    {"StatusBarTeksten",
     {{1, 0},
      {2, 0},
      {3, 0},
      {4, 0},
      {5, 0},
      {8, 0},
      {14, 0},
      {15, 0},
      {16, 0},
      {17, 0},
      {18, 0},
      {19, 0}}},
};

QStringList Lines(const QByteArray& bytes)
{
    return FromWindows1252(bytes).split("\r\n");
}

} // namespace

TEST_F(ZandvoetIniTest, EveryNumberHasATextThatItsArgumentsFill)
{
    for (const Kind& kind : kKinds) {
        const QMap<int, int>& numbers = kArguments[kind.section];
        for (auto number = numbers.cbegin(); number != numbers.cend(); ++number) {
            const QString key = Key(kind, number.key());
            QString text = m_ini.GetString(kind.section, key);
            EXPECT_FALSE(text.isEmpty()) << key.toStdString();
            FillPlaceholders(text, QStringList(number.value(), "x"));
            EXPECT_FALSE(text.contains('%')) << key.toStdString() << ": " << text.toStdString();
        }
    }
}

TEST_F(ZandvoetIniTest, EveryTextBelongsToANumberOfTheSystem)
{
    static const QRegularExpression keyLine("^(msg|fout|qst|sbt)\\.(\\d{4})=");
    for (const QString& line : Lines(ReadBytes(m_ini.file()))) {
        const auto match = keyLine.match(line);
        if (!match.hasMatch())
            continue;
        for (const Kind& kind : kKinds) {
            if (kind.key == match.captured(1) + ".") {
                EXPECT_TRUE(kArguments[kind.section].contains(match.captured(2).toInt()))
                    << line.toStdString();
            }
        }
    }
}

TEST_F(ZandvoetIniTest, StatusBarTextsHaveOneLine)
{
    for (const int number : kArguments["StatusBarTeksten"].keys())
        EXPECT_FALSE(StatusBarTekst(number).contains('|')) << number;
}

TEST_F(ZandvoetIniTest, MessagesAreDecodedIntoLines)
{
    EXPECT_EQ(MessageText(203, {"c:\\a.txt"}), "Het bestand bestaat niet.\r\nc:\\a.txt");
    EXPECT_EQ(FoutText(5003), QString::fromUtf16(u"Elke herhalingstijd mag maar \u00E9\u00E9n keer "
                                                 u"voorkomen."));
}

TEST_F(ZandvoetIniTest, EverySectionIsThere)
{
    const QStringList lines = Lines(ReadBytes(m_ini.file()));
    for (const QString section :
         {"Algemeen", "IniBestanden", "RekeninstellingenBestanden", "AlgemeneBestanden", "Mappen",
          "Randvoorwaarden", "SETTINGS", "LABELS", "Shapes", "Kwaliteteitscodes", "ODBC", "URLS",
          "Mails", "Messages", "Fouten", "Questions", "MESSAGEBUTTONS", "StatusBarTeksten",
          "DIJKVAKBEREKENING"})
        EXPECT_EQ(lines.count("[" + section + "]"), 1) << section.toStdString();
}

TEST_F(ZandvoetIniTest, LinesEndOnCrLfAndBytesAreOfTheCodePage)
{
    QByteArray bytes = ReadBytes(m_ini.file());
    EXPECT_EQ(bytes.count('\n'), bytes.count("\r\n"));
    EXPECT_EQ(bytes.count('\r'), bytes.count("\r\n"));
    for (const char undefined : {'\x81', '\x8D', '\x8F', '\x90', '\x9D'})
        EXPECT_FALSE(bytes.contains(undefined));
    EXPECT_FALSE(bytes.contains("\xC3")) << "looks like UTF-8";
}

// SaveString finds a key by its beginning: of two keys that begin alike the
// shorter one must stand first, or saving it overwrites the longer one.
TEST_F(ZandvoetIniTest, NoKeyIsOverwrittenByAShorterOneBehindIt)
{
    QStringList keys;
    for (const QString& line : Lines(ReadBytes(m_ini.file())) + QStringList("[")) {
        if (line.startsWith('[')) {
            for (qsizetype i = 0; i < keys.size(); ++i) {
                for (qsizetype k = i + 1; k < keys.size(); ++k)
                    EXPECT_FALSE(keys[i].startsWith(keys[k], Qt::CaseInsensitive))
                        << keys[k].toStdString() << " would overwrite " << keys[i].toStdString();
            }
            keys.clear();
        } else if (line.contains('=') && !line.startsWith(';')) {
            keys += line.section('=', 0, 0);
        }
    }
}

TEST_F(ZandvoetIniTest, EveryIniOfTheInstallationIsARequiredFile)
{
    QSet<QString> required;
    for (const QString section :
         {"IniBestanden", "RekeninstellingenBestanden", "AlgemeneBestanden"}) {
        for (int n = 1;; ++n) {
            const QString file =
                m_ini.GetString(section, "File" + QString::number(n), "NO MORE FILES");
            if (file == "NO MORE FILES")
                break;
            EXPECT_TRUE(file.startsWith(".\\data\\")) << file.toStdString();
            required += file.mid(7);
            EXPECT_TRUE(FileExists(kDataFolder + file.mid(6))) << file.toStdString();
        }
    }
    // The calculation settings may be absent: their defaults hold then.
    const QStringList optional{"Zandvoet.ini", "Instellingen.ini"};
    for (const QString& file : QDir(kDataFolder).entryList({"*.ini"}, QDir::Files)) {
        EXPECT_TRUE(optional.contains(file) || required.contains(file))
            << file.toStdString() << " is shipped, but a missing one would not be noticed";
    }
}

TEST_F(ZandvoetIniTest, TheShippedSettingsAreTheDefaults)
{
    EXPECT_EQ(m_ini.GetString("Algemeen", "Taal", "-"), "");
    EXPECT_EQ(m_ini.GetString("Algemeen", "ExtraOpties", "-"), "");
    EXPECT_EQ(m_ini.GetString("ALGEMEEN", "GISDLLINIT", "-"), "FALSE");
    EXPECT_EQ(m_ini.GetString("Shapes", "extent", "-"), "-7000|629000|300000|289000");
    EXPECT_EQ(ButtonText("YES"), "Ja");
    EXPECT_EQ(ButtonText("NO"), "Nee");
}
