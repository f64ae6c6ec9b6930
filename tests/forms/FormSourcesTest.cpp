// Forms, their sources and their language files, found by walking the folders:
// nobody has to remember to join.
#include "FormsUnderTest.h"

#include "Installation.h"
#include "frame/ui/FileBox.h"
#include "frame/ui/LbnBox.h"
#include "frame/ui/TranslateForm.h"

#include <QAbstractButton>
#include <QDirIterator>
#include <QGroupBox>
#include <QLabel>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTabWidget>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace {

const QString kSource = QString(TEST_DATA_FOLDER) + "/../..";

QString ReadText(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

QStringList Files(const QString& folder, const QStringList& patterns)
{
    QStringList files;
    QDirIterator walk(kSource + "/" + folder, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.append(walk.next());
    files.sort();
    return files;
}

/// Sections and keys, in lower case; first come, first kept.
using IniKeys = QMap<QString, QStringList>;

IniKeys KeysOf(const QString& iniName)
{
    IniKeys keys;
    QString section;
    for (const QString& line : ReadText(kSource + "/data/" + iniName).split("\r\n")) {
        if (line.startsWith('['))
            section = line.section(']', 0, 0).mid(1).toLower();
        else if (!line.startsWith(';') && line.contains('='))
            keys[section].append(line.section('=', 0, 0).toLower());
    }
    return keys;
}

/// The sources that read a form's ini: those that name it, and the others of
/// the same class (frmX_Deel.cpp beside frmX.cpp).
QString SourcesOf(const QString& iniName)
{
    QStringList classes;
    const QStringList files = Files("src", {"*.cpp"});
    for (const QString& file : files) {
        if (ReadText(file).contains('"' + iniName + '"'))
            classes.append(file.chopped(4));
    }
    QString code;
    for (const QString& file : files) {
        for (const QString& form : classes) {
            if (file == form + ".cpp" || file.startsWith(form + "_"))
                code += ReadText(file);
        }
    }
    return code;
}

QChar Letter(QString caption)
{
    caption.remove("&&");
    const qsizetype at = caption.indexOf('&');
    return at < 0 || at + 1 == caption.size() ? QChar() : caption[at + 1].toLower();
}

/// The captions of a form whose letters work with Alt at the same time.
QMap<QString, QString> LetteredCaptions(QWidget& form)
{
    QMap<QString, QString> captions;
    for (const FormControl& control : FormControls(form)) {
        const QString name = control.object->objectName();
        if (const auto* label = qobject_cast<QLabel*>(control.object)) {
            if (label->buddy())
                captions[name] = label->text();
        } else if (const auto* button = qobject_cast<QAbstractButton*>(control.object)) {
            captions[name] = button->text();
        } else if (const auto* group = qobject_cast<QGroupBox*>(control.object)) {
            captions[name] = group->title();
        } else if (const auto* box = qobject_cast<LbnBox*>(control.object)) {
            captions[name] = box->CaptionLeft();
        } else if (const auto* file = qobject_cast<FileBox*>(control.object)) {
            captions[name] = file->Caption();
        } else if (const auto* tabs = qobject_cast<QTabWidget*>(control.object)) {
            for (int tab = 0; tab < tabs->count(); ++tab)
                captions[name + "." + QString::number(tab)] = tabs->tabText(tab);
        }
    }
    return captions;
}

class FormSourcesTest : public testing::Test {
protected:
    std::unique_ptr<QWidget> Translated(const FormUnderTest& test) const
    {
        std::unique_ptr<QWidget> form = test.make();
        QLMIniFile ini(m_installation.Path("data/" + test.iniName));
        TranslateForm(*form, ini, QString());
        return form;
    }

    Installation m_installation;
};

TEST_F(FormSourcesTest, EveryFormOfTheProgramIsUnderTest)
{
    QSet<QString> tested;
    for (const FormUnderTest& test : FormsUnderTest())
        tested.insert(test.make()->objectName());
    static const QRegularExpression name("<class>(\\w+)</class>");
    const QStringList forms = Files("src", {"*.ui"});
    EXPECT_GT(forms.size(), 5);
    for (const QString& form : forms) {
        if (form.contains("/windwave/"))
            continue; // a program of its own, with its texts in its form
        EXPECT_TRUE(tested.contains(name.match(ReadText(form)).captured(1)))
            << form.toStdString() << " is missing in FormsUnderTest.cpp";
    }
}

TEST_F(FormSourcesTest, EveryLanguageFileBelongsToAFormUnderTest)
{
    QSet<QString> tested{"Zandvoet.ini", "Instellingen.ini", "DbTables.ini"};
    for (const FormUnderTest& test : FormsUnderTest())
        tested.insert(test.iniName);
    for (const QString& file : Files("data", {"*.ini"}))
        EXPECT_TRUE(tested.contains(QFileInfo(file).fileName())) << file.toStdString();
}

TEST_F(FormSourcesTest, EveryTextThatAFormReadsIsThere)
{
    static const QRegularExpression section(
        "const QString (\\w+) = \"(\\w+)\" \\+ gLanguage\\(\\);");
    static const QRegularExpression read(
        "GetString\\(\\s*(?:\"(\\w+)\"(?:\\s*\\+\\s*gLanguage\\(\\))?|(\\w+)),\\s*\"([^\"]+)\"");
    static const QRegularExpression list(
        "ReadTexts\\(\\w+(?:\\(\\))?,\\s*\"(\\w+)\"[^,]*,\\s*(\\d+)\\)");
    int found = 0;
    for (const FormUnderTest& test : FormsUnderTest()) {
        const IniKeys keys = KeysOf(test.iniName);
        QString code = SourcesOf(test.iniName);
        EXPECT_FALSE(code.isEmpty()) << test.iniName.toStdString() << " is read by nobody";
        code.remove(QRegularExpression("gIniFile\\(\\)\\s*\\.GetString\\([^;]*;")); // the program's
        QMap<QString, QString> names;
        for (auto matches = section.globalMatch(code); matches.hasNext();) {
            const auto match = matches.next();
            names[match.captured(1)] = match.captured(2);
        }
        const auto expect = [&](const QString& in, const QString& key) {
            ++found;
            EXPECT_TRUE(keys[in.toLower()].contains(key.toLower()))
                << test.iniName.toStdString() << ": no " << key.toStdString() << " in ["
                << in.toStdString() << "]";
        };
        for (auto matches = read.globalMatch(code); matches.hasNext();) {
            const auto match = matches.next();
            const QString in =
                match.captured(1).isEmpty() ? names.value(match.captured(2)) : match.captured(1);
            if (!in.isEmpty())
                expect(in, match.captured(3));
        }
        for (auto matches = list.globalMatch(code); matches.hasNext();) {
            const auto match = matches.next();
            for (int i = 0; i < match.captured(2).toInt(); ++i)
                expect(match.captured(1), "text." + QString::number(i));
        }
    }
    EXPECT_GT(found, 20) << "the search meets too little";
}

TEST_F(FormSourcesTest, EveryTextOutsideTheCaptionsIsReadBySomebody)
{
    QString code;
    for (const QString& file : Files("src", {"*.cpp", "*.h"}))
        code += ReadText(file).toLower();
    static const QRegularExpression numbered("^(.*?)\\d+$");
    for (const FormUnderTest& test : FormsUnderTest()) {
        const std::unique_ptr<QWidget> form = test.make();
        QSet<QString> controls; // their texts for screen readers stand under their names
        for (const QWidget* widget : form->findChildren<QWidget*>())
            controls.insert(widget->objectName().toLower());
        const IniKeys keys = KeysOf(test.iniName);
        for (auto section = keys.cbegin(); section != keys.cend(); ++section) {
            if (section.key() == "captions")
                continue; // looked at with the form
            EXPECT_TRUE(code.contains('"' + section.key() + '"'))
                << test.iniName.toStdString() << ": nobody reads [" << section.key().toStdString();
            for (const QString& key : section.value()) {
                const auto match = numbered.match(key);
                EXPECT_TRUE(code.contains('"' + key + '"') || controls.contains(key) ||
                            (match.hasMatch() && code.contains('"' + match.captured(1) + '"')))
                    << test.iniName.toStdString() << ": nobody reads " << key.toStdString();
            }
        }
    }
}

TEST_F(FormSourcesTest, NoTwoControlsOfAFormShareTheirLetter)
{
    for (const FormUnderTest& test : FormsUnderTest()) {
        const auto form = Translated(test);
        QMap<QChar, QString> taken;
        const QMap<QString, QString> captions = LetteredCaptions(*form);
        for (auto caption = captions.cbegin(); caption != captions.cend(); ++caption) {
            const QChar letter = Letter(caption.value());
            if (letter.isNull())
                continue;
            EXPECT_FALSE(taken.contains(letter))
                << test.iniName.toStdString() << ": " << caption.value().toStdString() << " and "
                << taken[letter].toStdString();
            taken[letter] = caption.value();
        }
    }
}

TEST_F(FormSourcesTest, NoLabelShowsItsAmpersand)
{
    for (const FormUnderTest& test : FormsUnderTest()) {
        const auto form = Translated(test);
        for (const QLabel* label : form->findChildren<QLabel*>())
            EXPECT_TRUE(label->buddy() || !label->text().contains('&'))
                << test.iniName.toStdString() << ": " << label->objectName().toStdString()
                << " has a letter and nothing to lead to";
    }
}

/// Names of the controls of a .ui file that take the keyboard, and its tab order.
struct TabRoad {
    QStringList controls;
    QStringList tabStops;
};

TabRoad ReadTabRoad(const QString& uiFile)
{
    static const QSet<QString> keyboard{
        "QPushButton", "QLineEdit",   "QCheckBox",    "QRadioButton", "QComboBox",
        "NumBox",      "LbnBox",      "FileBox",      "Grid",         "QPlainTextEdit",
        "QTabWidget",  "QTreeWidget", "QTextBrowser", "QListWidget"};
    TabRoad road;
    QStringList open; // the names of the widgets around
    QFile file(uiFile);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() && xml.name() == u"widget") {
            open.append(xml.attributes().value("name").toString());
            if (keyboard.contains(xml.attributes().value("class").toString()))
                road.controls.append(open.last());
        } else if (xml.isEndElement() && xml.name() == u"widget") {
            open.removeLast();
        } else if (xml.isStartElement() && xml.name() == u"enum") {
            if (xml.readElementText() == "Qt::NoFocus" && !open.isEmpty())
                road.controls.removeAll(open.last());
        } else if (xml.isStartElement() && xml.name() == u"tabstop") {
            road.tabStops.append(xml.readElementText());
        }
    }
    return road;
}

TEST_F(FormSourcesTest, ATabOrderNamesEveryControlThatTakesTheKeyboard)
{
    for (const QString& form : Files("src", {"*.ui"})) {
        const TabRoad road = ReadTabRoad(form);
        if (road.tabStops.isEmpty())
            continue; // the order in the file
        for (const QString& control : road.controls)
            EXPECT_EQ(road.tabStops.count(control), 1)
                << form.toStdString() << ": " << control.toStdString();
    }
}

} // namespace
