#include "mainwindow/Commands.h"

#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// A library's resources are not linked into a program that does not ask for them.
static void InitIcons()
{
    Q_INIT_RESOURCE(mainwindow);
}

namespace {

QByteArray Drawing(const QString& name)
{
    InitIcons();
    QFile file(":/icons/" + name + ".svg");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap Painted(QSvgRenderer& renderer, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}

QByteArray CommandDrawing(int command)
{
    return Drawing(QString("tool%1").arg(command, 2, 10, QChar('0')));
}

/// A looking glass as the mouse pointer, with a rim that sets it off from any map.
QCursor PictureCursor(int command)
{
    constexpr int kSize = 24;
    constexpr int kMiddleOfGlass = 10;
    const QByteArray drawing = CommandDrawing(command);
    QByteArray rim = drawing;
    rim.replace("#303030", "#ffffff").replace("stroke-width=\"1.6\"", "stroke-width=\"4\"");
    const double ratio = qApp->devicePixelRatio();
    QPixmap picture(qRound(kSize * ratio), qRound(kSize * ratio));
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    for (const QByteArray& layer : {rim, drawing})
        QSvgRenderer(layer).render(&painter);
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return QCursor(picture, kMiddleOfGlass, kMiddleOfGlass);
}

} // namespace

const QList<ToolbarButton>& ToolbarButtons()
{
    static const QList<ToolbarButton> buttons{
        {1, true, 0, nullptr, "mnuBewerkenItem_0"},
        {2, true, 2, nullptr, "mnuBewerkenItem_1"},
        {4, true, 53, nullptr, "mnuBewerkenItem_2"},
        {5, true, 2, "Zoom in", "mnuBewerkenItem_3"},
        {6, true, 52, nullptr, "mnuBewerkenItem_4"},
        {3, false, 0, nullptr, "mnuBewerkenLayerAdd"},
        {7, false, 0, nullptr, "mnuBewerkenItem_5"},
        {8, false, 0, "Profiel bewerken", "mnuProfielEdit"},
        {9, false, 0, "Dijkring bewerken", "mnuDijkringEdit"},
        {11, false, 0, nullptr, "mnuBerekeningUitvoer"},
        {10, false, 0, nullptr, "mnuBerekeningGrafiekFaalfreq"},
        {13, false, 0, nullptr, "mnuBewerkenLabels"},
    };
    return buttons;
}

int ButtonIndexOfCommand(int command)
{
    const QList<ToolbarButton>& buttons = ToolbarButtons();
    for (int i = 0; i < buttons.size(); ++i) {
        if (buttons[i].command == command)
            return i;
    }
    return -1;
}

int ButtonIndexOfMenu(const QString& menu)
{
    const QList<ToolbarButton>& buttons = ToolbarButtons();
    for (int i = 0; i < buttons.size(); ++i) {
        if (menu == buttons[i].menu)
            return i;
    }
    return -1;
}

QCursor CursorOfMapPointer(int mapPointer)
{
    constexpr int kZoomOut = 6;
    switch (mapPointer) {
    case 2:
        return Qt::CrossCursor;
    case 52:
        return PictureCursor(kZoomOut);
    case 53:
        return Qt::OpenHandCursor;
    default:
        return Qt::ArrowCursor;
    }
}

QIcon CommandIcon(int command, const QPalette& palette)
{
    QByteArray drawing = CommandDrawing(command);
    const QColor ink = palette.color(QPalette::Active, QPalette::WindowText);
    QSvgRenderer renderer(drawing.replace("#303030", ink.name().toLatin1()));
    QIcon icon;
    for (const int size : {24, 36, 48, 72}) {
        const QPixmap enabled = Painted(renderer, size);
        icon.addPixmap(enabled, QIcon::Normal);

        QPixmap disabled(size, size);
        disabled.fill(Qt::transparent);
        QPainter painter(&disabled);
        painter.setOpacity(0.35);
        painter.drawPixmap(0, 0, enabled);
        painter.end();
        icon.addPixmap(disabled, QIcon::Disabled);
    }
    return icon;
}

QIcon ProgramIcon()
{
    QSvgRenderer renderer(Drawing("zandvoet"));
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 96, 128, 192})
        icon.addPixmap(Painted(renderer, size));
    return icon;
}

const QStringList& DatabaseMenus()
{
    static const QStringList menus{"mnuBerekening", "mnuLocatie", "mnuBewerken", "mnuDijkring",
                                   "mnuExtra",      "mnuProfiel", "mnuWeergave"};
    return menus;
}
