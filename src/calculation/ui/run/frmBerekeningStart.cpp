#include "calculation/ui/run/frmBerekeningStart.h"

#include "calculation/Rekeninstellingen.h"
#include "calculation/ui/run/frmBerekeningInstellingen.h"
#include "database/HRdb.h"
#include "frame/FileSystemObject.h"
#include "frame/Fouten.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "frame/Texts.h"
#include "frame/ui/KeyFilters.h"
#include "frame/ui/MessageBoxes.h"
#include "ui_frmBerekeningStart.h"

#include <QKeyEvent>
#include <QMenu>

namespace {

constexpr int kMeldingNaamBestaat = 300;
constexpr int kFoutOverzichtBlijft = 555;

enum Kolom { Locatie, Profiel, Berekenen };
const QList<int> kKolombreedten{2000, 4500}; // twips
const QColor kRood(255, 0, 0);

constexpr auto kSectie = "DIJKVAKBEREKENING";
const QString kExtensie = QStringLiteral(".xls");

} // namespace

frmBerekeningStart::frmBerekeningStart(const Omgeving& omgeving, QWidget* parent)
    : IniDialog("BerekeningStart.ini", parent),
      m_ui(std::make_unique<Ui::frmBerekeningStart>()),
      m_omgeving(omgeving),
      m_mnuSelect(new QMenu(this))
{
    m_ui->setupUi(this);
    PrepareMenu();
    LoadForm();
    AttachNameFilter(m_ui->nbrBerekeningNaam);
    PrepareGrid();
    LoadState();

    const auto on = [this](QPushButton* button, auto handler) {
        connect(button, &QPushButton::clicked, this, [handler] { RunHandler(handler); });
    };
    on(m_ui->cmdSelectAll, [this] { SelectAll(true); });
    on(m_ui->cmdSelectNone, [this] { SelectAll(false); });
    on(m_ui->cmdparameters, [this] { cmdparameters_Click(); });
    on(m_ui->cmdOK, [this] { cmdOK_Click(); });
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_ui->nbrBerekeningNaam, &NumBox::Change, this, &frmBerekeningStart::EnableInputs);
    connect(m_ui->chkOverzichtNm, &QCheckBox::toggled, this, &frmBerekeningStart::EnableInputs);
    connect(m_ui->fsbOverzichtNm, &FileBox::Change, this,
            &frmBerekeningStart::fsbOverzichtNm_Change);
    InitialiseerThisForm();
    m_ui->nbrBerekeningNaam->setFocus();
}

frmBerekeningStart::~frmBerekeningStart() = default;

void frmBerekeningStart::PrepareMenu()
{
    m_mnuSelect->setObjectName("mnuSelect");
    for (const auto& [name, select] : {std::pair("mnuSelectAll", true), {"mnuSelectNone", false}}) {
        QAction* action = m_mnuSelect->addAction(QString());
        action->setObjectName(name);
        connect(action, &QAction::triggered, this,
                [this, on = select] { RunHandler([this, on] { SelectAll(on); }); });
    }
    Grid* const grid = m_ui->vsfLocProf;
    grid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(grid, &QWidget::customContextMenuRequested, this,
            [this, grid](const QPoint& at) { ShowSelectMenu(grid->viewport()->mapToGlobal(at)); });
    grid->installEventFilter(this); // for the menu key
}

void frmBerekeningStart::PrepareGrid()
{
    Grid* const grid = m_ui->vsfLocProf;
    grid->setHeaders(ReadTexts(iniFile(), "GridHeaderText" + gLanguage(), 3));
    grid->setColumnKind(Berekenen, Grid::ColumnKind::Check);
    grid->setColumnWidths(kKolombreedten);
    grid->setEditGuard([this](int row, int) { return !IsRed(row); });
    connect(grid, &Grid::CellEdited, this, &frmBerekeningStart::EnableInputs);
    const QString teksten = "Teksten" + gLanguage();
    grid->setAccessibleName(iniFile().GetString(teksten, "vsfLocProf"));
    FileBox* const box = m_ui->fsbOverzichtNm;
    const QString captions = "Captions" + gLanguage();
    box->setDialogTitle(iniFile().GetString(captions, "frmBerekeningStart.fsbDialogTitle"));
    box->setFilters(iniFile()
                        .GetString(captions, "frmBerekeningStart.fsbOverzichtNm.filters")
                        .replace('|', QChar(u'\0')));
    box->setAccessibleName(iniFile().GetString(teksten, "fsbOverzichtNm"));
}

void frmBerekeningStart::LoadState()
{
    m_ui->fsbOverzichtNm->setText(AbsolutePath(gIniFile().GetString(kSectie, "OverzichtBestand")));
    const bool schrijf = gIniFile().GetString(kSectie, "SchrijfOverzichtBestand", "0") == "1";
    m_ui->chkOverzichtNm->setChecked(schrijf && !m_ui->fsbOverzichtNm->text().isEmpty());
}

void frmBerekeningStart::SaveState() const
{
    gIniFile().SaveString(kSectie, "OverzichtBestand", RelativePath(Overzicht()));
    gIniFile().SaveString(kSectie, "SchrijfOverzichtBestand",
                          m_ui->chkOverzichtNm->isChecked() ? "1" : "0");
}

void frmBerekeningStart::InitialiseerThisForm()
{
    const BusyScope busy;
    m_faalmechanisme = LeesIndexFaalmechanisme(InstellingenBestand());
    const QString teksten = "Teksten" + gLanguage();
    const KeuzeTeksten redenen{
        iniFile().GetString(teksten, "ONVOLDGEG", "ONVOLDGEG"),
        iniFile().GetString(teksten, "GEENGESCHIKTEPROFIELEN", "GEENGESCHIKTEPROFIELEN")};
    const auto rijen =
        MaakKeuzelijst(m_omgeving.locaties, m_omgeving.database, m_faalmechanisme, redenen);

    Grid* const grid = m_ui->vsfLocProf;
    grid->ClearRows();
    int eersteGekozen = -1;
    for (const KeuzeRij& rij : rijen) {
        const int row = grid->AddRow({rij.locatie, rij.profiel});
        if (!rij.bruikbaar)
            grid->setRowTextColour(row, kRood);
        grid->setChecked(row, Berekenen, rij.gekozen);
        if (rij.gekozen && eersteGekozen < 0)
            eersteGekozen = row;
    }
    if (eersteGekozen >= 0)
        grid->ShowRow(eersteGekozen);
    EnableInputs();
}

bool frmBerekeningStart::IsRed(int row) const
{
    return m_ui->vsfLocProf->RowTextColour(row) == kRood;
}

void frmBerekeningStart::EnableInputs()
{
    const int aantal = m_ui->vsfLocProf->CheckedCount(Berekenen);
    m_ui->cmdSelectNone->setEnabled(aantal > 0);
    m_ui->fsbOverzichtNm->setEnabled(m_ui->chkOverzichtNm->isChecked());
    const bool overzichtOntbreekt =
        OverzichtGevraagd() && m_ui->fsbOverzichtNm->text().trimmed().isEmpty();
    m_ui->cmdOK->setEnabled(!m_ui->nbrBerekeningNaam->text().trimmed().isEmpty() && aantal > 0 &&
                            !overzichtOntbreekt);

    const QStringList mechanismen = ReadTexts(iniFile(), "Faalmechanisme" + gLanguage(), 3);
    QString tekst = iniFile().GetString("Teksten" + gLanguage(), "aantal", "%1: %2");
    FillPlaceholders(tekst, {mechanismen.value(m_faalmechanisme), QString::number(aantal)});
    m_ui->lblAantal->setText(tekst);
}

bool frmBerekeningStart::OverzichtGevraagd() const
{
    return m_ui->chkOverzichtNm->isEnabled() && m_ui->chkOverzichtNm->isChecked();
}

QString frmBerekeningStart::Overzicht() const
{
    return AbsolutePath(m_ui->fsbOverzichtNm->text().trimmed());
}

void frmBerekeningStart::SelectAll(bool on)
{
    // With overflow the colour is not looked at, on purpose: red rows are set too.
    m_ui->vsfLocProf->setAllChecked(Berekenen, on, ProfielNodig(m_faalmechanisme));
    EnableInputs();
}

void frmBerekeningStart::ShowSelectMenu(const QPoint& globalPosition)
{
    for (QAction* action : m_mnuSelect->actions())
        if (action->objectName() == "mnuSelectNone")
            action->setEnabled(m_ui->cmdSelectNone->isEnabled());
    m_mnuSelect->popup(globalPosition);
}

bool frmBerekeningStart::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->vsfLocProf && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Menu) {
        Grid* const grid = m_ui->vsfLocProf;
        const QRect cell = grid->visualItemRect(grid->currentItem());
        ShowSelectMenu(grid->viewport()->mapToGlobal(cell.bottomLeft()));
        return true;
    }
    return IniDialog::eventFilter(watched, event);
}

void frmBerekeningStart::fsbOverzichtNm_Change()
{
    const QString pad = m_ui->fsbOverzichtNm->text().trimmed();
    if (!pad.isEmpty() && !pad.endsWith(kExtensie, Qt::CaseInsensitive)) {
        m_ui->fsbOverzichtNm->setText(pad + kExtensie); // comes back here
        return;
    }
    EnableInputs();
}

void frmBerekeningStart::cmdparameters_Click()
{
    frmBerekeningInstellingen& form = m_omgeving.instellingen();
    form.Initialiseer(InstellingenBestand());
    form.Toon(this);
    if (form.OK() && form.SomChange())
        InitialiseerThisForm();
}

void frmBerekeningStart::AskAboutOverzicht()
{
    const QString pad = Overzicht();
    if (!OverzichtGevraagd() || !gFso().FileExists(pad))
        return;
    const auto tekst = [this](const char* key) {
        return iniFile().GetString("Captions" + gLanguage(),
                                   QLatin1String("frmBerekeningStart.msgBox.") + key);
    };
    QString vraag = tekst("prompttext");
    FillPlaceholders(vraag, {pad});
    if (WrappedQuestionBox(this, tekst("windowtext"), Bars2Lines(vraag), tekst("btn1text"),
                           tekst("btn2text"), tekst("btn3text")) != Answer::First)
        return; // the core adds to it
    try {
        gFso().DeleteFile(pad);
    } catch (const Fout&) {
        RaiseFout(kFoutOverzichtBlijft, {pad});
    }
}

void frmBerekeningStart::cmdOK_Click()
{
    const QString naam = m_ui->nbrBerekeningNaam->text().trimmed();
    if (m_omgeving.database.BerekeningExists(naam)) {
        ShowMessageForm(this, kMeldingNaamBestaat, {naam});
        m_ui->nbrBerekeningNaam->setFocus();
        m_ui->nbrBerekeningNaam->selectAll();
        return;
    }
    AskAboutOverzicht();
    m_naam = naam;
    CloseOK();
}

int frmBerekeningStart::NSelected() const
{
    return m_ui->vsfLocProf->CheckedCount(Berekenen);
}

BerekeningSelectie frmBerekeningStart::GetSelection(const QString& instellingen) const
{
    BerekeningSelectie selectie;
    const bool profielNodig = ProfielNodig(m_faalmechanisme);
    const QString debiet = m_faalmechanisme == faalmechanisme::Golfoverslag
                               ? NumberText(LeesOverslagdebiet(instellingen))
                               : QString();
    const Grid& grid = *m_ui->vsfLocProf;
    for (int row = 0; row < grid.rowCount(); ++row) {
        if (!grid.IsChecked(row, Berekenen))
            continue;
        selectie.locaties << grid.Text(row, Locatie);
        selectie.profielen << (profielNodig ? grid.Text(row, Profiel) : QString());
        selectie.debieten << debiet;
    }
    if (OverzichtGevraagd())
        selectie.overzicht = Overzicht();
    selectie.overschrijven = m_ui->chkOverwrite->isChecked();
    if (m_omgeving.instellingen.Exists())
        selectie.memo = m_omgeving.instellingen().Memo();
    return selectie;
}

void frmBerekeningStart::done(int result)
{
    if (isVisible())
        SaveState();
    IniDialog::done(result);
}
