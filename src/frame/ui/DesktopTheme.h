#pragma once

#include <QPalette>

/// Dark windows on a dark desktop, where the toolkit does not see to it by
/// itself: it reads the desktop's colours only on some desktops.
///
/// Called once, behind the making of the application object. A palette that is
/// dark already stays; in a light one nothing changes unless the desktop asks
/// for dark (`desktopPrefersDark`, see platform::DesktopPrefersDark).
void FollowDesktopTheme(bool desktopPrefersDark);

bool IsDark(const QPalette& palette);

/// The palette with hints in empty boxes that can be read on their background:
/// some themes tell the colour of text and leave that of hints black.
QPalette WithReadableHints(QPalette palette);
