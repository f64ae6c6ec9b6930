#include "frame/ui/DesktopTheme.h"

#include "frame/ui/Colours.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>

namespace {

QPalette DarkPalette()
{
    const QColor window(0x2B, 0x2D, 0x30);
    const QColor base(0x1F, 0x21, 0x23);
    const QColor text(0xE6, 0xE6, 0xE6);
    const QColor off(0x85, 0x88, 0x8C);
    const QColor accent(0x3D, 0x8F, 0xD1);

    QPalette palette(text, window, QColor(0x4A, 0x4D, 0x52), QColor(0x17, 0x18, 0x1A),
                     QColor(0x3A, 0x3D, 0x41), text, base);
    palette.setColor(QPalette::Button, QColor(0x38, 0x3B, 0x3F));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2C));
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x5C, 0xB0, 0xF0));
    palette.setColor(QPalette::LinkVisited, QColor(0xB0, 0x90, 0xE0));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3A, 0x3D, 0x41));
    palette.setColor(QPalette::ToolTipText, text);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, off);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x4A, 0x4D, 0x52));
    return palette;
}

} // namespace

bool IsDark(const QPalette& palette)
{
    return Luminance(palette.color(QPalette::Window)) <
           Luminance(palette.color(QPalette::WindowText));
}

QPalette WithReadableHints(QPalette palette)
{
    constexpr int kHalf = 0x80; // opacity of a hint, as the toolkit's own styles have it
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor hint = palette.color(group, QPalette::PlaceholderText);
        if (VisibleOn(palette.color(group, QPalette::Base), hint) == hint)
            continue;
        QColor text = palette.color(group, QPalette::Text);
        text.setAlpha(kHalf);
        palette.setColor(group, QPalette::PlaceholderText, text);
    }
    return palette;
}

void FollowDesktopTheme(bool desktopPrefersDark)
{
    if (desktopPrefersDark && !IsDark(QApplication::palette())) {
        // The platform's own style paints in its own, light colours.
        QApplication::setStyle(QStyleFactory::create("Fusion"));
        QApplication::setPalette(DarkPalette());
    }
    const QPalette present = QApplication::palette();
    const QPalette readable = WithReadableHints(present);
    if (readable != present)
        QApplication::setPalette(readable);
}
