#include "mainwindow/parts/Oeverbestand.h"

QString Oeverbestand::Path() const
{
    const QString file = m_strijklengte.file();
    return file.isEmpty() ? m_told : file;
}

void Oeverbestand::SetPath(const QString& path)
{
    m_told = path;
    if (!path.isEmpty())
        m_strijklengte.setShapefile(path);
}
