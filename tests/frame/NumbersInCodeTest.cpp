// Every numbered text that the sources ask for, against the texts that are shipped.
#include "FrameTestTools.h"
#include "frame/QLMIniFile.h"
#include "frame/Texts.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

#include <optional>

namespace {

struct Kind {
    QString section;
    QString key;
    /// The operations whose first number is of this kind.
    QString callers;
    /// The beginnings or endings of constants that hold such a number.
    QString constants;
};

const QList<Kind> kKinds{
    {"Messages", "msg.", "ShowMessage|ShowMessageForm|MessageText|ShowMessageText",
     "kMelding\\w*|k\\w*Message"},
    {"Fouten", "fout.", "RaiseFout|ShowFoutForm|ShowFout|FoutText", "kFout\\w*|k\\w*Fout"},
    {"Questions", "qst.", "AskQuestion|AskQuestionButtons|QuestionText",
     "kVraag\\w*|k\\w*Question"},
    {"StatusBarTeksten", "sbt.", "SetStatusBarTextByNumber|StatusBarTekst", "kStatus\\w*"},
};

/// One use of a numbered text.
struct Use {
    QString place;
    int number = 0;
    std::optional<int> arguments; ///< unknown when they are not listed on the spot
};

/// The parts between commas outside all brackets, from `at` (behind an opening
/// bracket) up to the bracket that closes it.
QStringList Parts(const QString& code, qsizetype at)
{
    QStringList parts{QString()};
    int depth = 0;
    bool quoted = false;
    for (; at < code.size(); ++at) {
        const QChar c = code[at];
        if (c == '"' && code[at - 1] != '\\')
            quoted = !quoted;
        if (!quoted && (c == ')' || c == '}' || c == ']') && depth-- == 0)
            break;
        if (!quoted && (c == '(' || c == '{' || c == '['))
            ++depth;
        if (!quoted && c == ',' && depth == 0)
            parts.append(QString());
        else
            parts.last() += c;
    }
    for (QString& part : parts)
        part = part.simplified();
    return parts == QStringList{QString()} ? QStringList() : parts;
}

/// The whole numbers that the file gives a name.
QMap<QString, int> Constants(const QString& code)
{
    static const QRegularExpression definition("constexpr (?:int|auto) (\\w+)\\s*=\\s*(\\d+);");
    QMap<QString, int> constants;
    for (auto matches = definition.globalMatch(code); matches.hasNext();) {
        const auto match = matches.next();
        constants.insert(match.captured(1), match.captured(2).toInt());
    }
    return constants;
}

std::optional<int> Number(QString argument, const QMap<QString, int>& constants)
{
    if (constants.contains(argument))
        return constants[argument];
    bool isNumber = false;
    const int number = argument.remove('"').toInt(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

void CollectCalls(const Kind& kind, const QString& file, const QString& code, QList<Use>& uses)
{
    const QMap<QString, int> constants = Constants(code);
    const QRegularExpression call("\\b(?:" + kind.callers + ")\\(");
    for (auto matches = call.globalMatch(code); matches.hasNext();) {
        const QStringList arguments = Parts(code, matches.next().capturedEnd());
        // The number stands first, or behind the owner of the box.
        for (int i = 0; i < qMin<int>(2, int(arguments.size())); ++i) {
            const auto number = Number(arguments[i], constants);
            if (!number)
                continue;
            Use use{file + ": " + arguments.join(", "), *number, std::nullopt};
            const QString list = arguments.value(arguments.size() - 1);
            if (i + 1 == arguments.size())
                use.arguments = 0;
            else if (list.startsWith('{'))
                use.arguments = int(Parts(list, 1).size());
            uses.append(use);
            break;
        }
    }
}

void CollectConstants(const Kind& kind, const QString& file, const QString& code, QList<Use>& uses)
{
    const QRegularExpression wanted(QRegularExpression::anchoredPattern(kind.constants));
    const QMap<QString, int> constants = Constants(code);
    for (auto constant = constants.cbegin(); constant != constants.cend(); ++constant) {
        if (wanted.match(constant.key()).hasMatch())
            uses.append({file + ": " + constant.key(), constant.value(), std::nullopt});
    }
}

QList<Use> UsesIn(const Kind& kind)
{
    QList<Use> uses;
    QDirIterator files(SOURCE_FOLDER "/src", {"*.cpp", "*.h"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString file = files.next();
        if (file.contains("/src/jet/") || file.contains("/src/rekenhart/"))
            continue; // consoles and engine: no numbered texts
        const QString code = QString::fromUtf8(ReadBytes(file));
        CollectCalls(kind, file, code, uses);
        CollectConstants(kind, file, code, uses);
    }
    return uses;
}

class NumbersInCodeTest : public FrameTest {
protected:
    QString Text(const Kind& kind, int number)
    {
        return m_ini.GetString(kind.section,
                               kind.key + QString::number(number).rightJustified(4, '0'));
    }
    QLMIniFile m_ini{SOURCE_FOLDER "/data/Zandvoet.ini"};
};

TEST_F(NumbersInCodeTest, EveryNumberHasAText)
{
    for (const Kind& kind : kKinds) {
        const QList<Use> uses = UsesIn(kind);
        EXPECT_GT(uses.size(), 3) << "the search meets no " << kind.section.toStdString();
        for (const Use& use : uses)
            EXPECT_FALSE(Text(kind, use.number).isEmpty())
                << use.place.toStdString() << " has no text in " << kind.section.toStdString();
    }
}

TEST_F(NumbersInCodeTest, TheArgumentsOfACallFillItsText)
{
    int counted = 0;
    for (const Kind& kind : kKinds) {
        for (const Use& use : UsesIn(kind)) {
            if (!use.arguments)
                continue;
            ++counted;
            QString text = Text(kind, use.number);
            FillPlaceholders(text, QStringList(*use.arguments, "x"));
            EXPECT_FALSE(text.contains('%'))
                << use.place.toStdString() << " shows " << text.toStdString();
        }
    }
    EXPECT_GT(counted, 30);
}

TEST(NumbersInCode, TheSearchSeesLiteralsConstantsOwnersAndLists)
{
    const QString code = "constexpr int kVraagWeg = 7;\n"
                         "AskQuestion(this, kVraagWeg, {naam, Pad(a, \"b, c\")});\n"
                         "AskQuestion(8); AskQuestion(12, lijst); AskQuestion(this, vraag, {});";
    QList<Use> uses;
    CollectCalls(kKinds[2], "f", code, uses);
    CollectConstants(kKinds[2], "f", code, uses);
    ASSERT_EQ(uses.size(), 4);
    EXPECT_EQ(uses[0].number, 7);
    EXPECT_EQ(uses[0].arguments, 2);
    EXPECT_EQ(uses[1].number, 8);
    EXPECT_EQ(uses[1].arguments, 0);
    EXPECT_EQ(uses[2].number, 12);
    EXPECT_FALSE(uses[2].arguments);
    EXPECT_EQ(uses[3].number, 7);
}

} // namespace
