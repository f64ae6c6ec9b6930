#include "frame/startup/PreviousInstance.h"

#include "frame/Paths.h"
#include "frame/startup/ForegroundRight.h"

#include <QDir>
#include <QLocalSocket>
#include <QWidget>

namespace {

constexpr int kPatience = 2000; // ms, for an instance that is still starting

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
    if (!m_isFirst)
        return;
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

PreviousInstance::~PreviousInstance() = default;

bool PreviousInstance::Activate()
{
    GiveForegroundRight();
    QLocalSocket socket;
    socket.connectToServer(m_name);
    return socket.waitForConnected(kPatience) && socket.waitForReadyRead(kPatience);
}

void BringForward(QWidget& window)
{
    if (window.isMinimized())
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}
