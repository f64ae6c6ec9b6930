#pragma once

#include "frame/Globals.h"

class MapObjectsRvwLayer;
class NavTree;
class frmBerekeningInstellingen;

/// What may exist only once. Each is made at its first use, by the factory that
/// the roof has set, and is the same ever after: gSingleObject().NavTree().
class SingleObject {
public:
    Global<::frmBerekeningInstellingen> BerekeningInstellingenForm;
    Global<::MapObjectsRvwLayer> MapObjectsRvwLayer;
    Global<::NavTree> NavTree;
};
