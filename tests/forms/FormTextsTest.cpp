#include "FormsUnderTest.h"

#include "Installation.h"
#include "frame/ui/TranslateForm.h"

#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QSet>
#include <QTabWidget>
#include <gtest/gtest.h>

namespace {

/// The keys of section `Captions` of a form's ini, in any case.
QSet<QString> CaptionKeys(const QByteArray& ini)
{
    QSet<QString> keys;
    bool inside = false;
    for (const QByteArray& line : QByteArray(ini).replace("\r\n", "\n").split('\n')) {
        if (line.startsWith('['))
            inside = line.toLower().startsWith("[captions]");
        else if (inside && line.contains('=') && !line.startsWith(';'))
            keys.insert(QString::fromLatin1(line.left(line.indexOf('='))).toLower());
    }
    return keys;
}

/// What can be said about a control: each list is a property, of which one of
/// the keys should be there.
QList<QStringList> KeysOf(const FormControl& control, const QString& form)
{
    switch (control.kind) {
    case ControlKind::Numbered:
        return {control.Keys(form), control.Keys(form, "Left"), control.Keys(form, "Right")};
    case ControlKind::List:
        return {{form + "." + control.name}};
    case ControlKind::Tabs: {
        QList<QStringList> keys;
        for (int tab = 0; tab < qobject_cast<QTabWidget*>(control.object)->count(); ++tab)
            keys.append({form + "." + control.name + "." + QString::number(tab)});
        return keys;
    }
    default:
        return {control.Keys(form)};
    }
}

/// Of each control the properties that must have a text: captions, and the
/// words in front of a number. First texts, units and items may be missing.
QList<QStringList> RequiredKeysOf(const FormControl& control, const QString& form)
{
    if (control.filledByCode)
        return {};
    switch (control.kind) {
    case ControlKind::Caption:
    case ControlKind::Tabs:
        return KeysOf(control, form);
    case ControlKind::Numbered:
        return {control.Keys(form, "Left")};
    default:
        return {};
    }
}

bool HasOneOf(const QSet<QString>& present, const QStringList& keys)
{
    for (const QString& key : keys) {
        if (present.contains(key.toLower()))
            return true;
    }
    return false;
}

class FormTextsTest : public testing::Test {
protected:
    QByteArray Ini(const QString& name) const
    {
        QFile file(m_installation.Path("data/" + name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Installation m_installation;
};

TEST_F(FormTextsTest, EveryControlHasACaption)
{
    for (const FormUnderTest& test : FormsUnderTest()) {
        const std::unique_ptr<QWidget> form = test.make();
        const QString name = form->objectName();
        const QSet<QString> present = CaptionKeys(Ini(test.iniName));
        EXPECT_TRUE(present.contains(name.toLower())) << test.iniName.toStdString() << ": no title";
        for (const FormControl& control : FormControls(*form)) {
            for (const QStringList& keys : RequiredKeysOf(control, name)) {
                EXPECT_TRUE(HasOneOf(present, keys))
                    << test.iniName.toStdString() << ": no " << keys.last().toStdString();
            }
        }
    }
}

TEST_F(FormTextsTest, EveryCaptionHasAControl)
{
    for (const FormUnderTest& test : FormsUnderTest()) {
        const std::unique_ptr<QWidget> form = test.make();
        const QString name = form->objectName();
        QSet<QString> known{name.toLower()};
        for (const QString& key : test.ownKeys)
            known.insert(key.toLower());
        for (const FormControl& control : FormControls(*form)) {
            for (const QStringList& keys : KeysOf(control, name)) {
                for (const QString& key : keys)
                    known.insert(key.toLower());
            }
        }
        for (const QString& key : CaptionKeys(Ini(test.iniName))) {
            EXPECT_TRUE(known.contains(key))
                << test.iniName.toStdString() << ": nothing shows " << key.toStdString();
        }
    }
}

TEST_F(FormTextsTest, EveryKeyStandsOnce)
{
    for (const FormUnderTest& test : FormsUnderTest()) {
        QSet<QString> seen;
        QString section;
        const QByteArray ini = Ini(test.iniName);
        ASSERT_FALSE(ini.isEmpty()) << test.iniName.toStdString();
        for (const QByteArray& line : QByteArray(ini).replace("\r\n", "\n").split('\n')) {
            if (line.startsWith('['))
                section = QString::fromLatin1(line).toLower();
            if (line.startsWith('[') || line.startsWith(';') || !line.contains('='))
                continue;
            const QString key =
                section + QString::fromLatin1(line.left(line.indexOf('='))).toLower();
            EXPECT_FALSE(seen.contains(key)) << test.iniName.toStdString() << key.toStdString();
            seen.insert(key);
        }
    }
}

TEST_F(FormTextsTest, FilesAreWindowsTextWithItsLineEnds)
{
    for (const FormUnderTest& test : FormsUnderTest()) {
        const QByteArray ini = Ini(test.iniName);
        EXPECT_EQ(ini.count('\n'), ini.count("\r\n")) << test.iniName.toStdString();
        EXPECT_FALSE(ini.contains("\xC3")) << test.iniName.toStdString() << " looks like UTF-8";
    }
}

TEST_F(FormTextsTest, NoTwoEntriesOfAMenuShareTheirLetter)
{
    const auto letter = [](const QString& caption) {
        const qsizetype at = QString(caption).replace("&&", "").indexOf('&');
        return at < 0 ? QString() : caption.mid(at + 1, 1).toLower();
    };
    for (const FormUnderTest& test : FormsUnderTest()) {
        const std::unique_ptr<QWidget> form = test.make();
        QLMIniFile ini(m_installation.Path("data/" + test.iniName));
        TranslateForm(*form, ini, QString());
        QSet<QString> top;
        for (const QMenu* menu : form->findChildren<QMenu*>()) {
            const QString own = letter(menu->title());
            EXPECT_FALSE(own.isEmpty()) << menu->title().toStdString();
            EXPECT_FALSE(top.contains(own)) << menu->title().toStdString();
            top.insert(own);
            QSet<QString> entries;
            for (const QAction* action : menu->actions()) {
                if (action->isSeparator())
                    continue;
                const QString key = letter(action->text());
                EXPECT_FALSE(key.isEmpty()) << action->text().toStdString();
                EXPECT_FALSE(entries.contains(key))
                    << menu->title().toStdString() << ": " << action->text().toStdString();
                entries.insert(key);
            }
        }
    }
}

} // namespace
