#include "navigation/NodePaths.h"

#include "frame/FileSystemObject.h"
#include "frame/Globals.h"
#include "navigation/NavTree.h"

#include <QDir>

namespace {

const QString kDijkringen = QStringLiteral("Dijkringen");

/// What stands in `text` behind `beginning` and a separator; a null text when
/// it does not begin so.
QString Behind(const QString& text, const QString& beginning, const QString& separator)
{
    if (!text.startsWith(beginning, Qt::CaseInsensitive))
        return {};
    if (text.size() == beginning.size())
        return QStringLiteral("");
    if (text.mid(beginning.size(), separator.size()) != separator)
        return {};
    return text.mid(beginning.size() + separator.size());
}

QString Joined(const QString& folder, const QString& rest)
{
    return rest.isEmpty() ? folder : gFso().BuildPath(folder, rest);
}

} // namespace

QString PathOfNode(const QString& key, const QString& separator, const QString& werkmap)
{
    const auto native = [&](QString rest) { return rest.replace(separator, QDir::separator()); };
    for (const QString& root : {navkey::RootLocaties, navkey::RootBerekeningen}) {
        const QString rest = Behind(key, root, separator);
        if (!rest.isNull())
            return Joined(werkmap, native(rest));
    }
    const QString rest = Behind(key, navkey::RootDijkringen, separator);
    if (rest.isNull())
        return {};
    return Joined(gFso().BuildPath(werkmap, kDijkringen), native(rest));
}

QString NodeOfPath(const QString& path, const QString& separator, const QString& werkmap)
{
    const QString slash = QStringLiteral("/");
    const auto plain = [&](QString text) { return text.replace('\\', '/'); };
    QString rest = Behind(plain(path), plain(werkmap), slash);
    if (rest.isNull())
        return {};
    QString root = navkey::RootLocaties;
    const QString inRing = Behind(rest, kDijkringen, slash);
    if (!inRing.isNull()) {
        root = navkey::RootDijkringen;
        rest = inRing;
    }
    return rest.isEmpty() ? root : root + separator + rest.replace(slash, separator);
}
