#include "frame/ui/WindowPosition.h"

#include "frame/IniNumbers.h"
#include "frame/Numbers.h"
#include "frame/QLMIniFile.h"
#include "frame/ui/FormUnits.h"

#include <QGuiApplication>
#include <QLayout>
#include <QScreen>
#include <QWidget>

namespace {

constexpr auto kSection = "SETTINGS";

/// In pixels.
int ReadPlace(QLMIniFile& ini, const QString& key, int present)
{
    const int farAway = PixelsToTwips(1'000'000);
    return TwipsToPixels(ReadWhole(ini, kSection, key, PixelsToTwips(present), -farAway, farAway));
}

QSize AllScreens()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary ? primary->availableVirtualSize() : QSize();
}

/// Whether enough of the title bar is on some screen to take hold of it.
bool IsReachable(QPoint topLeft, int width)
{
    const QRect title(topLeft + QPoint(width / 4, 4), QSize(qMax(1, width / 2), 16));
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen->availableGeometry().intersects(title))
            return true;
    }
    return false;
}

} // namespace

bool HasFixedSize(const QWidget& form)
{
    return form.property("fixedDialog").toBool() || form.minimumSize() == form.maximumSize() ||
           (form.layout() && form.layout()->sizeConstraint() == QLayout::SetFixedSize);
}

void CenterForm(QWidget& form)
{
    const QScreen* screen = form.screen();
    if (!screen)
        return;
    const QRect area = screen->availableGeometry();
    form.move(area.left() + (area.width() - form.width()) / 2,
              area.top() + (area.height() - form.height()) / 2);
}

void LoadWindowPosition(QWidget& form, QLMIniFile& ini)
{
    CenterForm(form);
    const QString name = form.objectName();
    const QPoint centred = form.pos();
    const QPoint place(qMax(0, ReadPlace(ini, name + "Left", form.x())),
                       qMax(0, ReadPlace(ini, name + "Top", form.y())));
    QSize size = form.size();
    if (!HasFixedSize(form)) {
        const QSize stored(ReadPlace(ini, name + "Width", size.width()),
                           ReadPlace(ini, name + "Height", size.height()));
        if (stored != size) // one that fitted on a larger screen keeps its edges in reach
            size = stored.boundedTo(AllScreens().expandedTo(size));
        form.resize(size.expandedTo(form.minimumSize()));
    }
    form.move(IsReachable(place, size.width()) ? place : centred);
}

void SaveWindowPosition(const QWidget& form, QLMIniFile& ini)
{
    if (form.isMinimized() || form.isMaximized() || form.isFullScreen())
        return;
    const QString name = form.objectName();
    const auto save = [&](const QString& key, int pixels) {
        ini.SaveString(kSection, name + key, NumberText(PixelsToTwips(pixels)));
    };
    save("Left", form.x());
    save("Top", form.y());
    if (!HasFixedSize(form)) {
        save("Width", form.width());
        save("Height", form.height());
    }
}
