#include "frame/ui/FileDialogs.h"

#include "frame/Paths.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QScreen>

namespace {

FileChooser& Chooser()
{
    static FileChooser chooser;
    return chooser;
}

QStringList Fields(const QString& filters)
{
    QString text = filters;
    text.replace(QChar(u'\0'), '|');
    return text.split('|', Qt::SkipEmptyParts);
}

QString FirstExtension(const QString& filters)
{
    const QString pattern = Fields(filters).value(1).section(';', 0, 0).trimmed();
    const QString extension = pattern.section('.', -1);
    return pattern.contains('.') && !extension.contains('*') ? extension : QString();
}

} // namespace

QString DialogFilter(const QString& filters)
{
    const QStringList fields = Fields(filters);
    QStringList result;
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2) {
        QString label = fields[i];
        const qsizetype bracket = label.lastIndexOf('(');
        if (bracket >= 0)
            label = label.left(bracket);
        QString patterns = fields[i + 1];
        patterns.replace(';', ' ');
        if (patterns == "*.*")
            patterns = "*"; // a name without a dot is a file too
        result.append(label.trimmed() + " (" + patterns.simplified() + ")");
    }
    return result.join(";;");
}

void SetFileChooser(FileChooser chooser)
{
    Chooser() = std::move(chooser);
}

QString ChooseFile(QWidget* owner, const FileRequest& request)
{
    if (Chooser())
        return Chooser()(owner, request);
    QFileDialog dialog(owner, request.title, ResolvePath(request.initialFolder),
                       DialogFilter(request.filters));
    dialog.setAcceptMode(request.open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(request.open && request.fileMustExist ? QFileDialog::ExistingFile
                                                             : QFileDialog::AnyFile);
    if (!request.open) {
        dialog.setDefaultSuffix(FirstExtension(request.filters));
        if (!request.fileName.isEmpty())
            dialog.selectFile(request.fileName);
    }
    if (request.centreOnScreen) {
        const QRect screen = dialog.screen()->availableGeometry();
        dialog.move(screen.center() - QRect(QPoint(), dialog.sizeHint()).center());
    }
    if (dialog.exec() != QDialog::Accepted)
        return QString();
    return QDir::toNativeSeparators(dialog.selectedFiles().value(0));
}
