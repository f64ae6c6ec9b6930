#include "frame/Fouten.h"
#include "frame/Paths.h"
#include "frame/QLMFile.h"

QString CFileName::GetBaseName() const
{
    const qsizetype start = LastSeparator(m_fileSpec) + 1;
    const qsizetype dot = m_fileSpec.lastIndexOf('.');
    if (dot < start)
        RaiseRuntimeFout(RuntimeFout::InvalidArgument,
                         "De bestandsnaam " + m_fileSpec + " heeft geen extensie.");
    return m_fileSpec.mid(start, dot - start);
}

void CFileName::SetBaseName(const QString& baseName)
{
    Check(baseName, "C_FileName::SetBaseName");
    const qsizetype start = LastSeparator(m_fileSpec) + 1;
    const qsizetype dot = m_fileSpec.lastIndexOf('.');
    m_fileSpec =
        m_fileSpec.left(start) + baseName + (dot < start ? QString() : m_fileSpec.mid(dot));
}

QString CFileName::GetExtension() const
{
    return m_fileSpec.mid(m_fileSpec.lastIndexOf('.') + 1);
}

void CFileName::SetExtension(const QString& extension)
{
    Check(extension, "C_FileName::SetExtension");
    m_fileSpec = m_fileSpec.left(m_fileSpec.lastIndexOf('.') + 1) + extension;
}

void CFileName::Check(const QString& part, const QString& source) const
{
    static const QString description = "The FileSpec is invalid";
    // An empty specification names SetBaseName, whoever finds it; callers know it so.
    if (m_fileSpec.isEmpty())
        throw Fout(InvalidFileSpec, description, "C_FileName::SetBaseName");
    static const QString forbidden = "?\"|/\\:<>";
    for (const QChar character : part) {
        if (forbidden.contains(character))
            throw Fout(InvalidFileSpec, description, source);
    }
}
