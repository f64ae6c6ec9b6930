#include "frame/Paths.h"
#include "frame/ProcessRunner.h"

#include <QFileInfo>
#include <QProcess>
#include <QUrl>

#include <utility>

namespace {

// The results of the shell that callers compare with: above 32 is success.
constexpr int kOpened = 33;
constexpr int kNotFound = 2;
constexpr int kNoProgram = 31;

std::function<bool(const QUrl&)>& UrlOpener()
{
    static std::function<bool(const QUrl&)> opener;
    return opener;
}

bool Open(const QUrl& url)
{
    return UrlOpener() && UrlOpener()(url);
}

bool IsUrl(const QString& text)
{
    for (const char* scheme : {"http:", "https:", "mailto:"}) {
        if (text.startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
            return true;
    }
    return text.startsWith("www.", Qt::CaseInsensitive);
}

} // namespace

void SetUrlOpener(std::function<bool(const QUrl&)> opener)
{
    UrlOpener() = std::move(opener);
}

int ShellOpen(const QString& file)
{
    if (IsUrl(file))
        return Open(QUrl::fromUserInput(file)) ? kOpened : kNoProgram;
    const QFileInfo info(ResolvePath(file));
    if (!info.exists())
        return kNotFound;
    return Open(QUrl::fromLocalFile(info.absoluteFilePath())) ? kOpened : kNoProgram;
}

int ShellOpenPrint(const QString& file)
{
    return ShellOpen(file);
}

QString MailTarget(const QString& address, const QString& subject, const QString& body)
{
    QString target = "mailto:" + address;
    if (!subject.isEmpty())
        target += "?Subject=" + subject;
    if (!body.isEmpty())
        target += (subject.isEmpty() ? "?" : "&") + ("strBody=" + body);
    return target;
}

bool ShellMail(const QString& address, const QString& subject, const QString& body)
{
    return Open(QUrl(MailTarget(address, subject, body), QUrl::TolerantMode));
}

bool StartProgram(const ProgramCall& call)
{
    return QProcess::startDetached(ResolvePath(call.program), call.arguments);
}
