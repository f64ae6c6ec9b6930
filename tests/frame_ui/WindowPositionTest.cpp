#include "frame/ui/WindowPosition.h"

#include "Installation.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

class WindowPositionTest : public testing::Test {
protected:
    WindowPositionTest()
    {
        m_form.setObjectName("frmProef");
        m_form.resize(300, 200);
    }
    QString Stored(const QString& key)
    {
        return gIniFile().GetString("SETTINGS", "frmProef" + key);
    }
    void Store(const QString& key, const QString& value)
    {
        gIniFile().SaveString("SETTINGS", "frmProef" + key, value);
    }

    Installation m_installation;
    QWidget m_form;
};

TEST_F(WindowPositionTest, AFormComesBackWhereItWasInItsSize)
{
    m_form.setGeometry(40, 60, 320, 240);
    SaveWindowPosition(m_form, gIniFile());
    m_form.setGeometry(0, 0, 100, 100);
    LoadWindowPosition(m_form, gIniFile());
    EXPECT_EQ(m_form.pos(), QPoint(40, 60));
    EXPECT_EQ(m_form.size(), QSize(320, 240));
}

TEST_F(WindowPositionTest, PlacesAreStoredInTwips)
{
    m_form.setGeometry(10, 20, 300, 200);
    SaveWindowPosition(m_form, gIniFile());
    EXPECT_EQ(Stored("Left"), "150");
    EXPECT_EQ(Stored("Top"), "300");
    EXPECT_EQ(Stored("Width"), "4500");
    EXPECT_EQ(Stored("Height"), "3000");
}

TEST_F(WindowPositionTest, AFormWithoutAStoredPlaceStandsInTheMiddle)
{
    LoadWindowPosition(m_form, gIniFile());
    const QRect screen = m_form.screen()->availableGeometry();
    EXPECT_EQ(m_form.x(), screen.left() + (screen.width() - 300) / 2);
    EXPECT_EQ(m_form.y(), screen.top() + (screen.height() - 200) / 2);
}

TEST_F(WindowPositionTest, ANegativePlaceBecomesNought)
{
    Store("Left", "-450");
    Store("Top", "-15");
    LoadWindowPosition(m_form, gIniFile());
    EXPECT_EQ(m_form.pos(), QPoint(0, 0));
}

TEST_F(WindowPositionTest, APlaceWithADecimalSignOfEitherKindIsRead)
{
    Store("Left", "150.0");
    Store("Top", "300,4");
    LoadWindowPosition(m_form, gIniFile());
    EXPECT_EQ(m_form.pos(), QPoint(10, 20));
}

TEST_F(WindowPositionTest, APlaceThatNoScreenShowsIsLeftAlone)
{
    Store("Left", "900000");
    Store("Top", "300");
    LoadWindowPosition(m_form, gIniFile());
    const QRect screen = m_form.screen()->availableGeometry();
    EXPECT_EQ(m_form.x(), screen.left() + (screen.width() - 300) / 2);
}

TEST_F(WindowPositionTest, ADamagedPlaceDoesNotKeepAFormFromOpening)
{
    for (const char* damage : {"99999999999", "-99999999999", "1e999", "abc", ""}) {
        m_form.setGeometry(5, 5, 300, 200);
        for (const char* key : {"Left", "Top", "Width", "Height"})
            Store(key, damage);
        LoadWindowPosition(m_form, gIniFile());
        EXPECT_EQ(m_form.size(), QSize(300, 200)) << damage;
        const QRect screen = m_form.screen()->availableGeometry();
        EXPECT_EQ(m_form.x(), screen.left() + (screen.width() - 300) / 2) << damage;
    }
}

TEST_F(WindowPositionTest, AFormOfALargerScreenIsMadeToFit)
{
    Store("Width", "150000");
    Store("Height", "150000");
    LoadWindowPosition(m_form, gIniFile());
    EXPECT_EQ(m_form.size(), m_form.screen()->availableVirtualSize());
}

TEST_F(WindowPositionTest, AFixedDialogKeepsItsSize)
{
    m_form.setProperty("fixedDialog", true);
    m_form.setGeometry(40, 60, 320, 240);
    SaveWindowPosition(m_form, gIniFile());
    EXPECT_EQ(Stored("Left"), "600");
    EXPECT_EQ(Stored("Width"), "");
    Store("Width", "9000");
    LoadWindowPosition(m_form, gIniFile());
    EXPECT_EQ(m_form.size(), QSize(320, 240));
}

TEST_F(WindowPositionTest, AFixedLayoutMakesAFixedDialog)
{
    EXPECT_FALSE(HasFixedSize(m_form));
    QWidget form;
    auto* layout = new QVBoxLayout(&form);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    EXPECT_TRUE(HasFixedSize(form));
}

TEST_F(WindowPositionTest, AMaximisedOrMinimisedFormLeavesItsLastNormalPlace)
{
    m_form.setGeometry(40, 60, 320, 240);
    SaveWindowPosition(m_form, gIniFile());
    m_form.setWindowState(Qt::WindowMaximized);
    SaveWindowPosition(m_form, gIniFile());
    m_form.setWindowState(Qt::WindowMinimized);
    m_form.setGeometry(0, 0, 10, 10);
    SaveWindowPosition(m_form, gIniFile());
    EXPECT_EQ(Stored("Left"), "600");
    EXPECT_EQ(Stored("Width"), "4800");
}

} // namespace
