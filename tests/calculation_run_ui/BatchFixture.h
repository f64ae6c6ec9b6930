#pragma once

#include "RunFixture.h"
#include "calculation/ui/run/BerekeningStarten.h"
#include "calculation/ui/run/frmBatchjob.h"
#include "calculation/ui/run/frmBerekeningInstellingen.h"
#include "frame/ui/Grid.h"
#include "frame/ui/NumBox.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

/// A batch, by default over the first three locations with overflow, driven through the
/// forms as a user would.
class BatchTest : public RunTest {
protected:
    BatchTest()
    {
        ZetInstelling("Faalmechanisme", "INDEXFAALMECHANISME", "0");
        instellingen.SetFactory([] { return std::make_shared<frmBerekeningInstellingen>(); });
        forms.On("frmBerekeningStart", [this](QDialog& form) { Kies(form); });
        forms.On("frmBatchresult", [this](QDialog& form) {
            samenvatting = Find<QLabel>(form, "lblSamenvatting")->text();
            if (bijLijst)
                bijLijst(form);
            Click(form, "cmdOK");
        });
        Rekenhart("echo klaar > uitvoer.txt");
    }

    void Kies(QDialog& form)
    {
        Find<NumBox>(form, "nbrBerekeningNaam")->setText(naam);
        auto* grid = Find<Grid>(form, "vsfLocProf");
        for (int row = 0; row < grid->rowCount(); ++row) {
            if (gekozen.isEmpty() ? row >= 3 : !gekozen.contains(grid->Text(row, 0)))
                continue;
            grid->setChecked(row, 2, true);
            emit grid->CellEdited(row, 2);
        }
        Click(form, "cmdOK");
    }
    BerekeningStarten::Uitkomst Start()
    {
        return BerekeningStarten({.database = db,
                                  .hoofdscherm = status,
                                  .browser = browser,
                                  .boom = browser,
                                  .locaties = locaties,
                                  .instellingen = instellingen,
                                  .meldKlaar = [this](QWidget*) { ++gemeld; }})
            .Start();
    }
    QString Node(const QString& locatie, const QString& berekening) const
    {
        return "ROOTLOCATIES\\" + locatie + "\\berekeningen\\" + berekening;
    }
    bool InBoom(const QString& locatie, const QString& berekening = "ontwerp")
    {
        return browser.NodeExists(Node(locatie, berekening));
    }
    int ResultaatRijen(const QString& locatie)
    {
        return Tel("SELECT COUNT(*) FROM Resultaat WHERE Locatie_ID=" +
                   QString::number(db.GetLocatie_ID(locatie)));
    }

    QString naam = "Ontwerp";
    QStringList gekozen; ///< locations; the first three rows when empty
    TestBrowser browser{boom};
    Global<frmBerekeningInstellingen> instellingen;
    FormDriver forms;
    std::function<void(QDialog&)> bijLijst;
    QString samenvatting;
    int gemeld = 0;
};
