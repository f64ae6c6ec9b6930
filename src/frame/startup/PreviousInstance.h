#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>

#include <memory>

class QWidget;

/// Sees to it that a user runs the program once. The first instance holds a lock
/// file and listens on a local socket, both named after the application title
/// and the user; a further one knocks on that socket and ends.
class PreviousInstance : public QObject {
    Q_OBJECT

public:
    PreviousInstance();
    ~PreviousInstance() override;

    /// Another instance is running.
    bool Exists() const { return !m_isFirst; }
    /// Asks the running instance to come forward; one that is busy does so as
    /// soon as it can. False when nobody hears it: either the other has just
    /// ended, and this instance is the first now, or it holds the lock only.
    bool Activate();

signals:
    /// A further instance knocked: come forward.
    void Knocked();

private:
    void Listen();

    QString m_name;
    QLockFile m_lock;
    std::unique_ptr<QLocalServer> m_server;
    bool m_isFirst = false;
};

/// Brings a window to the front, also out of the task bar.
void BringForward(QWidget& window);
