#pragma once

#include <QColor>
#include <QString>

#include <vector>

/// A palette: names a row of colours and gives them by number.
class Colormap {
public:
    /// "default" when none was chosen.
    QString Kleurenpalet() const;

    /// Makes `m` colours of the palette; an empty name keeps the present one,
    /// an unknown one gives black throughout. Nothing happens below 1. Raises
    /// the caller's `m` by one: pass a copy where that is unwelcome. The ramps
    /// leave their last step to that extra element, which is never given out, so
    /// five grays end at 0.8.
    void NumberOfValues(int& m, const QString& palet);

    /// Colour `i`, from 1, as R + 256 G + 65536 B; 0 outside the palette.
    int kleur(int i) const;

private:
    struct Tint {
        double r = 0, g = 0, b = 0; // 0 to 1
    };

    QString m_palet;
    std::vector<Tint> m_tinten; // element 0 is colour 1
};

/// The colour that such a number stands for.
QColor KleurVanGetal(int kleur);
