#pragma once

#include <QString>

/// The folder of a tree node. A key is the relative path of its node's folder, with
/// the root word in the place of the work folder (rings: of its sub-folder
/// "Dijkringen"). Keys and paths compare without regard to case.

/// Empty for the profiles root and all below it, and for anything that is no key.
[[nodiscard]] QString PathOfNode(const QString& key, const QString& separator,
                                 const QString& werkmap);

/// The inverse: the key of the node whose folder this is. Empty for a path outside
/// the work folder. Folders of locations and of the calculations root are
/// the same; the key is that of the location.
[[nodiscard]] QString NodeOfPath(const QString& path, const QString& separator,
                                 const QString& werkmap);
