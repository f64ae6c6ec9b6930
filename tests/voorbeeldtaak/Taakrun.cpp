#include "Taakrun.h"

#include <QFile>

namespace fs = std::filesystem;

Taakrun::Taakrun()
{
    fs::copy(INSTALLED_FOLDER, m_map / "Zandvoet", fs::copy_options::recursive);
    fs::rename(m_map / "Zandvoet/Rekenprogramma", m_map / "Zandvoet/rekenhart");
    fs::create_hard_link(m_map / "Zandvoet/rekenhart", m_map / "Zandvoet/Rekenprogramma");
    // As they are shipped, whatever was tried out in the build folder.
    const fs::path data = fs::path(TEST_DATA_FOLDER) / "../../data";
    fs::copy_file(data / "Zandvoet.ini", m_map / "Zandvoet/Zandvoet.ini",
                  fs::copy_options::overwrite_existing);
    fs::copy_file(data / "Instellingen.ini", m_map / "Zandvoet/data/Instellingen.ini",
                  fs::copy_options::overwrite_existing);
}

QString Taakrun::Programma(const QString& naam) const
{
    return QString::fromStdString((m_map / "Zandvoet").string()) + "/" + naam;
}

QString Taakrun::Uit(const QString& naam) const
{
    return QString::fromStdString((m_map / "uit").string()) + "/" + naam;
}

QString Taakrun::Map(const QString& locatie, const QString& profiel) const
{
    return Uit("werk/Voorbeeldboezem/" + locatie + "/Berekeningen/voorbeeld_" + profiel);
}

QByteArray Taakrun::Lees(const QString& pad)
{
    QFile bestand(pad);
    return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
}

void Taakrun::Schrijf(const QString& naam, const QByteArray& inhoud) const
{
    QFile::remove(Programma(naam));
    QFile bestand(Programma(naam));
    if (bestand.open(QIODevice::WriteOnly))
        bestand.write(inhoud);
}

void Taakrun::Rekenhart(const QByteArray& script) const
{
    Schrijf("Rekenprogramma",
            "#!/bin/sh\nrekenhart='" + Programma("rekenhart").toLocal8Bit() + "'\n" + script);
    QFile::setPermissions(Programma("Rekenprogramma"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

std::unique_ptr<QProcess> Taakrun::Start() const
{
    auto proces = std::make_unique<QProcess>();
    proces->setProcessChannelMode(QProcess::MergedChannels);
    proces->start(VOORBEELDTAAK, {Programma(), Uit()});
    proces->waitForStarted();
    return proces;
}

int Taakrun::Voer()
{
    const auto proces = Start();
    const bool klaar = proces->waitForFinished(120000);
    m_tekst = QString::fromUtf8(proces->readAll());
    return klaar && proces->exitStatus() == QProcess::NormalExit ? proces->exitCode() : -1;
}
