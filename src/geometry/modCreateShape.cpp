#include "geometry/modCreateShape.h"

#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "geometry/CShapeFile.h"
#include "geometry/DbaseTable.h"

#include <QDir>
#include <QFileInfo>

#include <cmath>
#include <limits>

using geometry::DbaseTable;

namespace {

// The database engine that used to write this table knew only names of eight
// characters, and file managers still look for it under this one.
const QString kTableName = QStringLiteral("12345678.dbf");

enum Field { X, Y, Omschr, Kwal };

void RemoveFile(const QString& path)
{
    if (FileExists(path))
        QFile::remove(ResolvePath(path));
}

// Takes its files away again, unless told that they are complete.
class FilesInTheMaking {
public:
    explicit FilesInTheMaking(const QStringList& paths) : m_paths(paths) {}
    ~FilesInTheMaking()
    {
        for (const QString& path : std::as_const(m_paths))
            RemoveFile(path);
    }
    FilesInTheMaking(const FilesInTheMaking&) = delete;
    FilesInTheMaking& operator=(const FilesInTheMaking&) = delete;
    void Complete() { m_paths.clear(); }

private:
    QStringList m_paths;
};

std::unique_ptr<DbaseTable> MakeTable(const QString& path, int omschrijvingSize)
{
    using Type = DbaseTable::Field::Type;
    try {
        return std::make_unique<DbaseTable>(
            path,
            std::vector<DbaseTable::Field>{{QStringLiteral("x"), Type::Double},
                                           {QStringLiteral("y"), Type::Integer},
                                           {QStringLiteral("OMSCHR"), Type::Text, omschrijvingSize},
                                           {QStringLiteral("KWAL"), Type::Integer}});
    } catch (const Fout&) {
        return nullptr;
    }
}

qint32 WholeY(const LocatiePunt& locatie)
{
    const double rounded = RoundToEven(locatie.y);
    if (!(rounded >= std::numeric_limits<qint32>::min() &&
          rounded <= std::numeric_limits<qint32>::max()))
        RaiseRuntimeFout(RuntimeFout::Overflow,
                         QStringLiteral("De y-coördinaat van %1 is te groot voor de kaart: %2.")
                             .arg(locatie.omschrijving, NumberText(locatie.y)));
    return static_cast<qint32>(rounded);
}

} // namespace

bool modCreateShape(const QString& shpPath, const LocatiePunten& punten)
{
    const QFileInfo info(ResolvePath(shpPath));
    const QString stem = info.dir().filePath(info.completeBaseName());
    const QString table = info.dir().filePath(kTableName);
    const QString dbf = stem + ".dbf";

    RemoveFile(dbf);
    RemoveFile(table);
    FilesInTheMaking files({stem + ".shp", stem + ".shx", table});
    const auto rows = MakeTable(table, punten.omschrijvingSize);
    if (!rows) {
        files.Complete(); // none of them is ours
        return false;
    }
    {
        CShapeFile shapes;
        shapes.SetFileSpec(CFileName(stem + ".shp"), CShapeFile::CREATEIT, CShapeFile::Point);
        for (const LocatiePunt& locatie : punten.locaties) {
            shapes.Add(CPoint(locatie.x, locatie.y));
            rows->AddRow();
            rows->Set(X, locatie.x);
            rows->Set(Y, WholeY(locatie));
            rows->Set(Omschr, locatie.omschrijving);
            rows->Set(Kwal, qint32(locatie.kwaliteitskenmerk));
        }
    }
    rows->Close();
    if (!QFile::rename(table, dbf))
        RaiseRuntimeFout(RuntimeFout::FileAccess, "Het bestand kan niet worden vervangen.|" + dbf);
    files.Complete();
    return true;
}

bool RebuildLocationShape(const QString& werkmap, const QString& base, const LocatiePunten& punten)
{
    return modCreateShape(QDir(ResolvePath(werkmap)).filePath(base + ".shp"), punten);
}
