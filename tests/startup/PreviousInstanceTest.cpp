#include "frame/startup/PreviousInstance.h"

#include "TemporaryFolder.h"
#include "frame/Paths.h"
#include "frame/SingleObject.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QWidget>
#include <gtest/gtest.h>

#include <thread>

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

    /// Of the lock file and the socket; the tests' user has no odd characters.
    static QString Name() { return "Zandvoet-" + GetUserName(); }
    static std::unique_ptr<QLockFile> LockOfAnother()
    {
        auto lock = std::make_unique<QLockFile>(QDir::temp().filePath(Name() + ".lock"));
        lock->setStaleLockTime(0);
        EXPECT_TRUE(lock->tryLock(0));
        return lock;
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
    // In this test both live on one thread: the first is as busy as in the
    // middle of a calculation, and hears the knock behind it.
    EXPECT_TRUE(second.Activate());
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

TEST_F(PreviousInstanceTest, WhenTheFirstEndsMeanwhileTheSecondTakesItsPlace)
{
    auto first = std::make_unique<PreviousInstance>();
    PreviousInstance second;
    ASSERT_TRUE(second.Exists());
    first.reset();
    EXPECT_FALSE(second.Activate());
    EXPECT_FALSE(second.Exists());
    QSignalSpy knocked(&second, &PreviousInstance::Knocked);
    PreviousInstance third;
    ASSERT_TRUE(third.Exists());
    EXPECT_TRUE(third.Activate());
    EXPECT_TRUE(knocked.count() == 1 || knocked.wait(2000));
}

TEST_F(PreviousInstanceTest, ALockWithoutAListenerBehindItDoesNotAnswer)
{
    const auto lock = LockOfAnother();
    PreviousInstance second;
    ASSERT_TRUE(second.Exists());
    EXPECT_FALSE(second.Activate());
    EXPECT_TRUE(second.Exists());
}

TEST_F(PreviousInstanceTest, AFirstInstanceThatDoesNotListenYetIsWaitedFor)
{
    const auto lock = LockOfAnother();
    PreviousInstance second;
    ASSERT_TRUE(second.Exists());
    std::thread starting([this] {
        QThread::msleep(300);
        QLocalServer server;
        server.listen(Name());
        if (!server.waitForNewConnection(5000))
            return;
        QLocalSocket* knock = server.nextPendingConnection();
        knock->write("ok");
        knock->waitForBytesWritten(5000);
    });
    EXPECT_TRUE(second.Activate());
    starting.join();
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
