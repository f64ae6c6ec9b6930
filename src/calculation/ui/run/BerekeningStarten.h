#pragma once

#include "calculation/BerekenLocaties.h"
#include "calculation/Keuzelijst.h"
#include "frame/Globals.h"

#include <functional>

class QWidget;
class frmBerekeningInstellingen;
struct Resultaatregel;

/// What the command "calculate" does, from the start dialog to the result list.
class BerekeningStarten {
public:
    /// All must outlive the call.
    struct Omgeving {
        QWidget* venster = nullptr; ///< the forms come before it; may be null
        HRdb& database;
        StatusBar& hoofdscherm;
        LocatieBrowser& browser;
        Berekeningenboom& boom;
        const LocatieBron& locaties;
        Global<frmBerekeningInstellingen>& instellingen;
        /// Told when a batch is over; by default the desktop is asked to point
        /// at the program, when that is not in front.
        std::function<void(QWidget* venster)> meldKlaar = MeldAanBureaublad;
    };

    struct Uitkomst {
        bool gestart = false; ///< the start dialog was confirmed
        BatchVerloop verloop;
        bool mislukt = false; ///< an error ended the batch; it has been reported
        QString lijst;        ///< the text of the result list
    };

    explicit BerekeningStarten(const Omgeving& omgeving) : m_omgeving(omgeving) {}

    /// Shows the dialogs and runs the batch. An error before the first run goes
    /// up; a later one is reported, and the list then tells what was left.
    Uitkomst Start();

    static void MeldAanBureaublad(QWidget* venster);

private:
    void GaNaar(const Resultaatregel& regel);

    Omgeving m_omgeving;
};
