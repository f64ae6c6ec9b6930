#pragma once

#include <cstdint>

/// The GIS library's face: plain C, so that the program and the library may be
/// built by different compilers. It is loaded at run time by name.
///
/// One object stands for one grid. Functions that give 0 have failed;
/// QLMGisLastError then describes why, in UTF-8, until the object's next call.
/// A grid stays in memory for later objects: it is read once per run of the
/// program, unless its size or time changes.
///
/// Not for several threads at once.
extern "C" {

struct QLMGisObject;

/// Null when there is no memory.
using QLMGisCreateFunction = QLMGisObject* (*)();
using QLMGisReleaseFunction = void (*)(QLMGisObject* object);

/// Reads a grid: ARC/INFO ASCII, or anything else that GDAL reads; the first
/// band counts. `file` is UTF-8.
using QLMGisLoadRasterFunction = int (*)(QLMGisObject* object, const char* file);

/// The plain mean of the grid's values at `count` points from (x1, y1) to
/// (x2, y2), both ends included, each with the value of the cell that holds it.
/// Cells without data take no part; a line that meets no other cell fails.
/// A point outside the grid fails with the description "Index was outside the
/// bounds of the array."; one exactly on the right or upper border is outside.
using QLMGisCalculateMeanFunction = int (*)(QLMGisObject* object, const double* x1,
                                            const double* y1, const double* x2, const double* y2,
                                            std::int16_t count, double* mean);

using QLMGisLastErrorFunction = const char* (*)(const QLMGisObject* object);
}
