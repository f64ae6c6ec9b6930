#pragma once

#include "TemporaryFolder.h"

#include <QByteArray>
#include <QProcess>
#include <QString>

#include <memory>

/// A copy of the installed folder in which the example job is run as a process of its own.
class Taakrun {
public:
    Taakrun();

    /// In the installed copy, and in the folder that the job leaves.
    QString Programma(const QString& naam = {}) const;
    QString Uit(const QString& naam = {}) const;
    /// The database that the job works on.
    QString Database() const { return Uit("werk/Voorbeeldboezem.mdb"); }
    /// The folder of a calculation.
    QString Map(const QString& locatie, const QString& profiel) const;

    static QByteArray Lees(const QString& pad);
    void Schrijf(const QString& naam, const QByteArray& inhoud) const;
    /// A script in the place of the calculation core, which stays at hand as ./rekenhart.
    void Rekenhart(const QByteArray& script) const;

    std::unique_ptr<QProcess> Start() const;
    /// Runs the whole job; the exit code, or -1 when it does not end or crashes.
    int Voer();
    const QString& Tekst() const { return m_tekst; }

private:
    TemporaryFolder m_map;
    QString m_tekst;
};
