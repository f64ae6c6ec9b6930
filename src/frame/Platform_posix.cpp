#include "frame/Platform.h"

#ifdef FRAME_WITH_DBUS
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#endif

#include <pwd.h>
#include <unistd.h>

#include <optional>

namespace platform {

QString UncToDrive(const QString& path)
{
    return path;
}

QString ShortPath(const QString& path)
{
    return path;
}

bool IsSystemFile(const QString&)
{
    return false;
}

bool HasCaseSensitiveFiles()
{
    return true;
}

void EndProcess(int exitCode)
{
    _exit(exitCode);
}

bool CanMakePipe()
{
    int ends[2];
    if (pipe(ends) != 0)
        return false;
    close(ends[0]);
    close(ends[1]);
    return true;
}

#ifdef FRAME_WITH_DBUS
void SetScreenSaverActive(bool active)
{
    // The desktop's inhibit service, where there is one; nobody waits for it.
    static std::optional<QDBusPendingReply<uint>> inhibited;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || active == !inhibited.has_value())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        "org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
        "org.freedesktop.ScreenSaver", active ? "UnInhibit" : "Inhibit");
    if (active) {
        if (inhibited->isFinished() && inhibited->isValid()) {
            call << inhibited->value();
            bus.asyncCall(call);
        }
        inhibited.reset();
    } else {
        call << QString("Zandvoet") << QString("berekening");
        inhibited = bus.asyncCall(call);
    }
}

bool DesktopPrefersDark()
{
    constexpr int kPatience = 300; // ms: the window waits for the answer
    constexpr uint kPreferDark = 1;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    QDBusMessage question = QDBusMessage::createMethodCall(
        "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
        "org.freedesktop.portal.Settings", "Read");
    question << QString("org.freedesktop.appearance") << QString("color-scheme");
    const QDBusMessage answer = bus.call(question, QDBus::Block, kPatience);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return false;
    // A variant in a variant.
    QVariant value = answer.arguments().constFirst();
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt() == kPreferDark;
}
#else
void SetScreenSaverActive(bool) {}

bool DesktopPrefersDark()
{
    return false;
}
#endif

QString UserName()
{
    for (const char* variable : {"USER", "LOGNAME"}) {
        if (const QString name = qEnvironmentVariable(variable); !name.isEmpty())
            return name;
    }
    const passwd* const entry = getpwuid(geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString();
}

} // namespace platform
