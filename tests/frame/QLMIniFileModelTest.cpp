// QLMIniFile against a plain model: the same rules written down once more with
// 1-based positions and character-by-character searches, over random sequences
// of operations on random files; every answer and every byte on disc compared.

#include "FrameTestTools.h"
#include "frame/QLMIniFile.h"

#include <map>
#include <random>
#include <string>

namespace {

using Text = std::string;

char Lower(char c)
{
    if (c >= 'A' && c <= 'Z')
        return char(c - 'A' + 'a');
    return c == '\xC9' ? '\xE9' : c; // the one accented letter of the test's names
}

Text Mid(const Text& text, std::size_t position, std::size_t length = Text::npos)
{
    return position > text.size() ? Text() : text.substr(position - 1, length);
}

/// 1-based; 0 when absent.
std::size_t InStr(std::size_t from, const Text& text, const Text& wanted, bool ignoreCase)
{
    for (std::size_t i = from; i + wanted.size() <= text.size() + 1; ++i) {
        std::size_t k = 0;
        while (k < wanted.size() && (ignoreCase ? Lower(text[i - 1 + k]) == Lower(wanted[k])
                                                : text[i - 1 + k] == wanted[k]))
            ++k;
        if (k == wanted.size())
            return i;
    }
    return 0;
}

Text TrimRight(Text text)
{
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

Text Trim(Text text)
{
    text = TrimRight(text);
    while (!text.empty() && text.front() == ' ')
        text.erase(0, 1);
    return text;
}

struct Model {
    std::map<Text, Text>& disc;
    Text file;
    Text text = {};
    bool loaded = false;
    bool dirty = false;
    bool ignoreCase = true;

    void Load()
    {
        if (loaded)
            return;
        if (disc.contains(file) && !disc[file].empty())
            text = "\r\n" + disc[file] + "\r\n";
        loaded = true;
    }

    bool Find(const Text& section, std::size_t& start, std::size_t& length) const
    {
        const std::size_t match = InStr(1, text, "\r\n[" + section + "]", ignoreCase);
        if (match == 0)
            return false;
        start = match + 2;
        const std::size_t next = InStr(start, text, "\r\n[", false);
        length = next > 0 ? next - start : text.size() - start + 1;
        return true;
    }

    /// Position of the key's line, or 0.
    std::size_t FindKey(std::size_t start, std::size_t length, const Text& key) const
    {
        const std::size_t match = InStr(1, Mid(text, start, length), "\r\n" + key, ignoreCase);
        return match == 0 ? 0 : start + 1 + match;
    }

    std::size_t LineEnd(std::size_t p) const
    {
        const std::size_t end = InStr(p, text, "\r\n", false);
        return end == 0 ? text.size() + 1 : end;
    }

    Text GetString(const Text& section, const Text& key, const Text& standard)
    {
        Load();
        std::size_t start = 0;
        std::size_t length = 0;
        if (!Find(section, start, length))
            return standard;
        const std::size_t p = FindKey(start, length, key + "=");
        if (p == 0)
            return standard;
        const Text line = Mid(text, p, LineEnd(p) - p);
        return TrimRight(Mid(line, InStr(1, line, "=", false) + 1));
    }

    void SaveString(const Text& section, const Text& key, const Text& value)
    {
        Load();
        std::size_t start = 0;
        std::size_t length = 0;
        if (!Find(section, start, length)) {
            text += "\r\n[" + section + "]\r\n" + Trim(key) + "=" + value + "\r\n";
        } else if (const std::size_t p = FindKey(start, length, key); p > 0) {
            text = Mid(text, 1, p - 1) + Trim(key) + "=" + value + Mid(text, LineEnd(p));
        } else {
            std::size_t last = start + length - 1;
            while (text[last - 1] == '\r' || text[last - 1] == '\n')
                --last;
            text = Mid(text, 1, last) + "\r\n" + Trim(key) + "=" + value + Mid(text, last + 1);
        }
        dirty = true;
    }

    void RemoveKey(const Text& section, const Text& key)
    {
        Load();
        std::size_t start = 0;
        std::size_t length = 0;
        if (Find(section, start, length)) {
            if (const std::size_t p = FindKey(start, length, key + "="); p > 0)
                text = Mid(text, 1, p - 1) + Mid(text, LineEnd(p) + 2);
        }
        dirty = true;
    }

    void RemoveSection(const Text& section)
    {
        Load();
        std::size_t start = 0;
        std::size_t length = 0;
        if (Find(section, start, length)) {
            const long count = long(text.size()) - long(start) - long(length) - 1;
            if (count < 1)
                text = Mid(text, 1, start - 3);
            else
                text = Mid(text, 1, start - 1) + Mid(text, text.size() - std::size_t(count) + 1);
        }
        dirty = true;
    }

    bool Write()
    {
        disc[file].clear();
        if (text.size() < 4)
            return false;
        disc[file] = Mid(text, 3, text.size() - 4);
        return true;
    }

    bool Save() { return loaded && dirty ? Write() : true; }

    bool Sluit()
    {
        bool result = true;
        if (loaded && dirty) {
            result = Write();
            dirty = false;
        }
        text.clear();
        loaded = false;
        return result;
    }
};

class Chance {
public:
    explicit Chance(unsigned seed) : m_engine(seed) {}
    int Below(int bound) { return int(m_engine() % unsigned(bound)); }
    Text OneOf(const std::vector<Text>& choices)
    {
        return choices[std::size_t(Below(int(choices.size())))];
    }

private:
    std::mt19937 m_engine;
};

const std::vector<Text> kSections{"a", "A", "b", "Algemeen", "ab", "", "\xE9", "\xC9", "a]x"};
const std::vector<Text> kKeys{"a", "A", "ab",   "Left",  "Left.0", " Left ",
                              "",  " ", "\xE9", "\xC9n", "a=",     "["};
const std::vector<Text> kValues{"", "1", " voor", "achter ", "a=b", "\xFC\x80", "x\r\ny", "[a]"};
const std::vector<Text> kPieces{"\r\n",   "\r\n",     "\r\n",   "\r\n",   "[a]",    "[A] uitleg",
                                "[b]",    "[ab",      "[]",     "[\xC9]", "a=1",    "A=2",
                                "ab = 3", "Left.0=4", "Left=5", " a=6",   ";a=7",   "=",
                                "  ",     "\n",       "\r",     "x",      "\xE9=8", Text("\0", 1)};

Text RandomContent(Chance& chance)
{
    Text content;
    for (int i = chance.Below(30); i > 0; --i)
        content += chance.OneOf(kPieces) + (chance.Below(3) == 0 ? "" : "\r\n");
    return content;
}

QString Q(const Text& text)
{
    return FromWindows1252(text);
}

class QLMIniFileModelTest : public FrameTest {
protected:
    void RunSequence(unsigned seed)
    {
        Chance chance(seed);
        std::map<Text, Text> disc;
        const std::vector<Text> files{Path("een.ini").toStdString(),
                                      Path("twee.ini").toStdString()};
        for (const Text& file : files) {
            QFile::remove(QString::fromStdString(file));
            if (chance.Below(4) > 0) {
                disc[file] = RandomContent(chance);
                WriteBytes(QString::fromStdString(file), QByteArray::fromStdString(disc[file]));
            }
        }
        {
            Model model{disc, files[0]};
            QLMIniFile ini(QString::fromStdString(files[0]));
            for (int step = 0; step < 25; ++step) {
                SCOPED_TRACE("step " + std::to_string(step));
                Step(chance, files, model, ini);
                if (HasFailure())
                    return;
            }
            model.Save(); // as the destructor does
        }
        ExpectSameDisc(files, disc);
    }

private:
    static void Step(Chance& chance, const std::vector<Text>& files, Model& model, QLMIniFile& ini)
    {
        const Text section = chance.OneOf(kSections);
        const Text key = chance.OneOf(kKeys);
        const Text value = chance.OneOf(kValues);
        switch (chance.Below(12)) {
        case 0:
        case 1:
        case 2:
        case 3:
            EXPECT_EQ(ini.GetString(Q(section), Q(key), "standaard"),
                      Q(model.GetString(section, key, "standaard")));
            break;
        case 4:
        case 5:
        case 6:
            model.SaveString(section, key, value);
            ini.SaveString(Q(section), Q(key), Q(value));
            break;
        case 7:
            model.RemoveKey(section, key);
            ini.RemoveKey(Q(section), Q(key));
            break;
        case 8:
            model.RemoveSection(section);
            ini.RemoveSection(Q(section));
            break;
        case 9:
            EXPECT_EQ(ini.Save(), model.Save());
            ExpectSameDisc(files, model.disc);
            break;
        case 10:
            EXPECT_EQ(ini.Sluit(), model.Sluit());
            ExpectSameDisc(files, model.disc);
            break;
        default:
            if (chance.Below(2) == 0) {
                model.file = chance.OneOf(files);
                ini.setFile(QString::fromStdString(model.file));
            } else {
                model.ignoreCase = chance.Below(3) > 0;
                ini.setCompareMethod(model.ignoreCase ? QLMIniFile::Comparison::IgnoreCase
                                                      : QLMIniFile::Comparison::Exact);
            }
        }
    }

    static void ExpectSameDisc(const std::vector<Text>& files, const std::map<Text, Text>& disc)
    {
        for (const Text& name : files) {
            const QString file = QString::fromStdString(name);
            const auto expected = disc.find(name);
            ASSERT_EQ(QFile::exists(file), expected != disc.end());
            if (expected != disc.end()) {
                EXPECT_EQ(ReadBytes(file), QByteArray::fromStdString(expected->second));
            }
        }
    }
};

} // namespace

TEST_F(QLMIniFileModelTest, AgreesWithThePlainModelOverRandomSequences)
{
    for (unsigned seed = 1; seed <= 400 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RunSequence(seed);
    }
}

TEST_F(QLMIniFileModelTest, SurvivesRandomBytes)
{
    Chance chance(7);
    const QString file = Path("bytes.ini");
    for (int round = 0; round < 150; ++round) {
        QByteArray content;
        for (int i = chance.Below(200); i > 0; --i) {
            // Often the characters that mean something.
            content += chance.Below(2) ? "\r\n[]=a b"[chance.Below(8)] : char(chance.Below(256));
        }
        WriteBytes(file, content);
        std::map<Text, Text> disc{{file.toStdString(), content.toStdString()}};
        Model model{disc, file.toStdString()};
        QLMIniFile ini(file);
        for (const Text section : {"a", "", " ", "b"}) {
            for (const Text key : {"a", "", "b", " "})
                EXPECT_EQ(ini.GetString(Q(section), Q(key), "-"),
                          Q(model.GetString(section, key, "-")));
        }
        ini.SaveString("a", "b", "c");
        model.SaveString("a", "b", "c");
        ini.RemoveSection("");
        model.RemoveSection("");
        EXPECT_EQ(ini.Save(), model.Save());
        EXPECT_EQ(ReadBytes(file), QByteArray::fromStdString(disc[file.toStdString()]));
        if (HasFailure())
            break;
    }
}
