#pragma once

#include "geometry/CShapeFile.h"

#include "ShapeBytes.h"
#include "TemporaryFolder.h"

/// A folder with one shape-file pair in it, and names for more.
class ShapeFileFixture : public testing::Test {
protected:
    QString Stem(const QString& name = "proef") const
    {
        return ToQString(m_folder.Path()) + '/' + name;
    }
    CFileName Name(const QString& name = "proef") const { return CFileName(Stem(name) + ".shp"); }
    QByteArray Shp() const { return ReadBytes(Stem() + ".shp"); }
    QByteArray Shx() const { return ReadBytes(Stem() + ".shx"); }

    TemporaryFolder m_folder;
};
