#pragma once

#include <QColor>

/// How light a colour looks: 0 black to 1 white.
double Luminance(const QColor& colour);

/// The colour itself where it can be seen on `background`, otherwise the same
/// hue, lighter or darker: what a user chose for white paper is also seen on a
/// dark screen.
QColor VisibleOn(const QColor& background, const QColor& colour);
