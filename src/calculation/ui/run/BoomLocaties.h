#pragma once

#include "calculation/Keuzelijst.h"

class NavTree;

/// The locations of the navigation tree with their profiles and the mark of selection.
class BoomLocaties : public LocatieBron {
public:
    explicit BoomLocaties(const NavTree& boom) : m_boom(boom) {}
    QList<LocatieInBoom> Locaties() const override;

private:
    const NavTree& m_boom;
};
