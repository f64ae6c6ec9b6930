// Opening and closing a database: by the menu, from the list of recent ones, or
// dropped on the window.
#include "frame/Busy.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "mainwindow/Panes.h"
#include "mainwindow/RecentDatabases.h"
#include "mainwindow/frmMain.h"
#include "ui_frmMain.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTimer>

namespace {

/// The database among what is dragged; empty when it is anything else.
QString DraggedDatabase(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    if (urls.size() != 1 || !urls[0].isLocalFile())
        return {};
    const QString path = urls[0].toLocalFile();
    return path.endsWith(".mdb", Qt::CaseInsensitive) ? path : QString();
}

} // namespace

void frmMain::OpenLastDatabase()
{
    const QString last = gIniFile().GetString("Randvoorwaarden", "lastRvwFile").trimmed();
    if (last.isEmpty() || !m_database)
        return;
    const QString path = AbsolutePath(last);
    if (!FileExists(path))
        return;
    const int result = m_database->OpenDB(path, false, true);
    if (result == 0) {
        OpenRandvoorwaarden(path);
        return;
    }
    const QString description = m_database->OpenErrDescription();
    m_database->CloseDB();
    switch (result) {
    case 2:
        ShowFoutForm(this, 6, {description});
        break;
    case 3:
        ShowFoutForm(this, 28, {path, description});
        break;
    case 4:
        ShowFoutForm(this, 27, {path, description});
        break;
    default:
        ShowFoutForm(this, 4, {path, description});
    }
}

void frmMain::mnuFileOpen_Click()
{
    const BusyScope busy;
    const QString folder =
        AbsolutePath(gIniFile().GetString("Mappen", "DatabasesMap", ".\\data\\databases"));
    const QString title = m_iniFile->GetString("Captions", "database.open.title");
    const QString path = m_database->ChooseChecked(folder, title);
    if (!path.isEmpty()) {
        Replace(path);
        gIniFile().SaveString("Mappen", "DatabasesMap",
                              RelativePath(QFileInfo(path).absolutePath()));
    }
    UpdateMenus();
}

void frmMain::OpenDatabase(const QString& path)
{
    RunHandler([&] {
        if (!m_database)
            return;
        const BusyScope busy;
        if (m_database->Check(path))
            Replace(path);
        else
            ForgetRecentDatabaseWhenGone(gIniFile(), path);
        UpdateMenus();
    });
}

void frmMain::Replace(const QString& path)
{
    CloseRandvoorwaarden();
    OpenRandvoorwaarden(path);
    UpdateMenus();
}

void frmMain::OpenRandvoorwaarden(const QString& path)
{
    m_database->OpenDB(path, false, false);
    if (!m_database->IsOpen())
        return;
    emit RandvoorwaardenOpened(path);
    if (m_map) {
        if (m_labels.shown)
            m_map->ShowLabels(true);
        m_map->RefreshMap();
    }
    gIniFile().SaveString("Randvoorwaarden", "lastRvwFile", RelativePath(path));
    AddRecentDatabase(gIniFile(), path);
    setWindowTitle(BoxTitle() + " - " + QFileInfo(path).completeBaseName());
}

bool frmMain::CloseRandvoorwaarden()
{
    if (m_map)
        m_map->ShowLabels(false);
    emit RandvoorwaardenClosing();
    if (m_map)
        m_map->RefreshMap();
    UpdateMenus();
    return true;
}

// Recent databases and databases dropped on the window

void frmMain::ConnectRecentDatabases()
{
    m_ui->mnuFile->setToolTipsVisible(true);
    connect(m_ui->mnuFile, &QMenu::aboutToShow, this, &frmMain::ShowRecentDatabases);
}

void frmMain::ShowRecentDatabases()
{
    qDeleteAll(std::exchange(m_recentActions, {}));
    if (!m_database)
        return;
    QAction* before = m_ui->mnuFileExit;
    int number = 0;
    for (const QString& path : LoadRecentDatabases(gIniFile())) {
        QString name = QFileInfo(path).completeBaseName();
        auto* action = new QAction(QString("&%1 %2").arg(++number).arg(name.replace('&', "&&")),
                                   m_ui->mnuFile);
        action->setToolTip(path);
        m_ui->mnuFile->insertAction(before, action);
        m_recentActions.append(action);
        // The action goes at the next ShowRecentDatabases, so not inside its own signal.
        connect(
            action, &QAction::triggered, this, [this, path] { OpenDatabase(path); },
            Qt::QueuedConnection);
    }
    if (number > 0)
        m_recentActions.append(m_ui->mnuFile->insertSeparator(before));
}

void frmMain::dragEnterEvent(QDragEnterEvent* event)
{
    if (m_database && !DraggedDatabase(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event)
{
    const QString path = DraggedDatabase(*event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    // The program it was dragged from waits until the drop has been handled.
    QTimer::singleShot(0, this, [this, path] { OpenDatabase(path); });
}
