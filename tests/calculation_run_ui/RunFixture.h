#pragma once

#include "BoxReader.h"
#include "FakePorts.h"
#include "FormDriver.h"
#include "Installation.h"
#include "calculation/BerekenLocaties.h"
#include "calculation/ui/run/BoomLocaties.h"
#include "database/HRdb.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "navigation/NavTree.h"

#include <QTest>
#include <QTreeWidget>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

/// An installation with the example database open, its tree, and a calculation
/// core that is a shell script.
class RunTest : public testing::Test {
protected:
    RunTest();
    ~RunTest() override;

    QString Pad(const QString& naam) const { return installatie.Path(naam); }
    QByteArray Lees(const QString& pad) const;
    QString Instelling(const char* sectie, const char* sleutel) const;
    void ZetInstelling(const char* sectie, const char* sleutel, const QString& waarde) const;
    /// What the core does; it stands in the calculation folder then.
    void Rekenhart(const QByteArray& script) const;
    /// Whether a core that wrote its process number into that file is gone.
    bool IsWeg(const QString& pidBestand) const
    {
        return !QFile::exists("/proc/" + QString::fromLatin1(Lees(pidBestand).trimmed()));
    }
    /// Changes the database beside the program.
    void Voeruit(const std::string& sql);
    int Tel(const QString& sql);
    /// The folder of a calculation.
    QString Map(const QString& locatie, const QString& naam) const;

    Installation installatie;
    HRdb db;
    FakeStatusBar status;
    WindowBoxes boxen;
    QTreeWidget boomvenster;
    NavTree boom{db};
    BoomLocaties locaties{boom};
};

/// The part of the location browser that a batch needs, on the real tree.
class TestBrowser : public LocatieBrowser, public Berekeningenboom {
public:
    explicit TestBrowser(NavTree& boom) : m_boom(boom) {}
    void BerekeningNodeDelete(const QString& key) override { verwijderd << key; }
    bool NodeExists(const QString& key) override { return m_boom.GetNodeByKey(key); }
    QTreeWidgetItem* GetNodeByKey(const QString& key) override { return m_boom.GetNodeByKey(key); }
    QString GetPathSeparator() override { return m_boom.pathSeparator(); }
    void ResetCurrentNode() override {}
    void ApplyNode(QTreeWidgetItem* node) override { toegepast << NavTree::Key(node); }
    QTreeWidgetItem* AddBerekening2Locatie(QTreeWidgetItem* locatie, const QString& naam) override
    {
        return m_boom.AddBerekening2Locatie(locatie, naam);
    }
    void AddBerekening2Root(const QString& naam) override { m_boom.AddBerekening2Root(naam); }

    QStringList verwijderd, toegepast;

private:
    NavTree& m_boom;
};

template <typename Control>
Control* Find(QWidget& form, const char* name)
{
    auto* control = form.findChild<Control*>(name);
    EXPECT_TRUE(control) << name;
    return control;
}

/// The box on the screen, if there is one.
inline QMessageBox* OpenBox()
{
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}
inline void PressInBox(const QString& knop)
{
    for (QAbstractButton* button : OpenBox()->buttons())
        if (button->text() == knop)
            return button->click();
    ADD_FAILURE() << knop.toStdString();
}

inline void Click(QWidget& form, const char* button)
{
    QTest::mouseClick(Find<QAbstractButton>(form, button), Qt::LeftButton);
}
