#pragma once

#include "database/HRdb.h"
#include "geometry/modCreateShape.h"

/// The locations in the order of their names as the database sorts it: that of
/// the points in the shape file, and therefore of the tree. Fields x, y, OMSCHR, KWAL.
RecordsetPtr LocatiesOpNaam(HRdb& database);

/// The same as they go onto the map. Empty coordinates are 0.
LocatiePunten LeesLocatiePunten(HRdb& database);
