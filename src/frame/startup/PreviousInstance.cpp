#include "frame/startup/PreviousInstance.h"

#include "frame/Paths.h"
#include "frame/startup/ForegroundRight.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QThread>
#include <QWidget>

namespace {

constexpr int kPatience = 2000; // ms, for an instance that is still starting
constexpr int kPause = 50;      // ms, between two tries

QString NameForUser()
{
    QString user = GetUserName();
    for (QChar& c : user) {
        if (!c.isLetterOrNumber())
            c = '_';
    }
    return ApplicationTitle() + "-" + user;
}

} // namespace

PreviousInstance::PreviousInstance()
    : m_name(NameForUser()), m_lock(QDir(QDir::tempPath()).filePath(m_name + ".lock"))
{
    m_lock.setStaleLockTime(0); // by process only: a user may stay for days
    m_isFirst = m_lock.tryLock(0);
    // Without a place for lock files there is no telling, and the program starts.
    if (!m_isFirst && m_lock.error() != QLockFile::LockFailedError)
        m_isFirst = true;
    if (m_isFirst)
        Listen();
}

PreviousInstance::~PreviousInstance() = default;

void PreviousInstance::Listen()
{
    QLocalServer::removeServer(m_name); // left behind by a killed instance
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    m_server->listen(m_name);
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            socket->write("ok"); // the other may go
            socket->flush();
            emit Knocked();
        }
    });
}

bool PreviousInstance::Activate()
{
    GiveForegroundRight();
    const QDeadlineTimer deadline(kPatience);
    do {
        QLocalSocket socket;
        socket.connectToServer(m_name);
        // Without an answer, but there, it is in the middle of its work and
        // finds the knock later.
        if (socket.waitForConnected(kPatience) &&
            (socket.waitForReadyRead(kPatience) || socket.state() == QLocalSocket::ConnectedState))
            return true;
        if (m_lock.tryLock(0)) { // it was on its way out
            m_isFirst = true;
            Listen();
            return false;
        }
        QThread::msleep(kPause); // it may not listen yet: a double click too many
    } while (!deadline.hasExpired());
    return false;
}

void BringForward(QWidget& window)
{
    if (window.isMinimized())
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}
