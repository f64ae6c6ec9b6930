#include "frame/Fouten.h"

#include "frame/Texts.h"

#include <utility>

Fout::Fout(int number, QString description, QString source)
    : m_number(number),
      m_description(std::move(description)),
      m_source(std::move(source)),
      m_what(m_description.toUtf8())
{}

void RaiseFout(int number, const QStringList& arguments)
{
    throw Fout(FoutCode(number), NumberedText(TextKind::Fout, number, arguments, "fout"));
}

void RaiseRuntimeFout(int number, const QString& description)
{
    throw Fout(number, description);
}

QString Description(const std::exception& error)
{
    if (const auto* fout = dynamic_cast<const Fout*>(&error))
        return fout->Description();
    return QString::fromUtf8(error.what());
}
