#include "frame/startup/PreviousInstance.h"

#include "TemporaryFolder.h"
#include "frame/Paths.h"
#include "frame/SingleObject.h"

#include <QLockFile>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace {

class PreviousInstanceTest : public testing::Test {
protected:
    PreviousInstanceTest() : m_before(qgetenv("TMPDIR"))
    {
        qputenv("TMPDIR", QByteArray::fromStdString(m_folder.Path().string()));
    }
    ~PreviousInstanceTest() override
    {
        if (m_before.isEmpty())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_before);
        SetApplicationTitle("Zandvoet");
    }

    TemporaryFolder m_folder;
    QByteArray m_before;
};

TEST_F(PreviousInstanceTest, TheFirstInstanceFindsNoOther)
{
    const PreviousInstance first;
    EXPECT_FALSE(first.Exists());
}

TEST_F(PreviousInstanceTest, AFurtherInstanceKnocksAndIsHeard)
{
    PreviousInstance first;
    QSignalSpy knocked(&first, &PreviousInstance::Knocked);
    PreviousInstance second;
    ASSERT_TRUE(second.Exists());
    // In this test both live on one thread, so the answer comes too late for
    // the second; what counts is that the first has heard it.
    (void)second.Activate();
    EXPECT_TRUE(knocked.count() == 1 || knocked.wait(2000));
}

TEST_F(PreviousInstanceTest, AnotherTitleIsAnotherProgram)
{
    const PreviousInstance first;
    SetApplicationTitle("Iets anders");
    const PreviousInstance other;
    EXPECT_FALSE(other.Exists());
}

TEST_F(PreviousInstanceTest, WhenTheFirstHasEndedTheNextIsFirst)
{
    std::make_unique<PreviousInstance>().reset();
    const PreviousInstance next;
    EXPECT_FALSE(next.Exists());
}

TEST_F(PreviousInstanceTest, ALockWithoutAWindowBehindItDoesNotAnswer)
{
    auto first = std::make_unique<PreviousInstance>();
    PreviousInstance second;
    ASSERT_TRUE(second.Exists());
    first.reset();
    EXPECT_FALSE(second.Activate());
}

TEST_F(PreviousInstanceTest, AMinimisedWindowComesForward)
{
    QWidget window;
    window.showMinimized();
    BringForward(window);
    EXPECT_FALSE(window.isMinimized());
    EXPECT_TRUE(window.isVisible());
}

} // namespace

// Objects that may exist once are made at their first use and kept.

class NavTree {
public:
    static inline int made = 0;
    NavTree() { ++made; }
};

TEST(SingleObjectTest, EachObjectIsMadeOnceAtItsFirstUse)
{
    SingleObject objects;
    EXPECT_THROW(objects.NavTree(), std::logic_error); // nobody can make it yet
    objects.NavTree.SetFactory([] { return std::make_shared<NavTree>(); });
    EXPECT_EQ(NavTree::made, 0);
    EXPECT_EQ(&objects.NavTree(), &objects.NavTree());
    EXPECT_EQ(NavTree::made, 1);
}
