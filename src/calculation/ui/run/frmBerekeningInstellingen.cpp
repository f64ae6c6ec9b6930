#include "calculation/ui/run/frmBerekeningInstellingen.h"

#include "frame/Convert.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Windows1252.h"
#include "frame/ui/FocusHold.h"
#include "frame/ui/KeyFilters.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/frmMemo.h"
#include "ui_frmBerekeningInstellingen.h"

#include <QApplication>
#include <QFocusEvent>
#include <QScopedValueRollback>
#include <QWindow>

#include <initializer_list>

namespace {

namespace grens = instellinggrens;

constexpr int kMeldingNietToegestaan = 700;
constexpr int kFoutNietTeOpenen = 7;
constexpr int kNummerBreedte = 750; // twips
constexpr int kKolomFrequentie = 2;
constexpr int kKolomKruinhoogte = 1;

QStringList Column(const Grid& grid, int column)
{
    QStringList texts;
    for (int row = 0; row < grid.rowCount(); ++row)
        texts << grid.Text(row, column).trimmed();
    return texts;
}

/// What the ini file cannot hold is not let in.
void AttachTextFilter(QLineEdit* edit)
{
    QObject::connect(edit, &QLineEdit::textEdited, edit, [edit](const QString& text) {
        QString fitting = text;
        fitting.removeIf(
            [](QChar character) { return !FitsWindows1252(QStringView(&character, 1)); });
        if (fitting == text)
            return;
        QApplication::beep();
        edit->setText(fitting);
    });
}

} // namespace

frmBerekeningInstellingen::frmBerekeningInstellingen(QWidget* parent)
    : IniDialog("BerekeningInstellingen.ini", parent),
      m_ui(std::make_unique<Ui::frmBerekeningInstellingen>())
{
    m_ui->setupUi(this);
    LoadForm();
    PrepareGrids();
    PrepareNumbers();
    ConnectInputs();
    ConnectRules();
    connect(m_ui->cmdMemo, &QPushButton::clicked, this,
            [this] { RunHandler([this] { cmdMemo_Click(); }); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this,
            [this] { RunHandler([this] { cmdOK_Click(); }); });
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    SetDirty(false);
}

frmBerekeningInstellingen::~frmBerekeningInstellingen() = default;

void frmBerekeningInstellingen::PrepareGrids()
{
    const auto name = [this](QWidget* widget) {
        widget->setAccessibleName(
            iniFile().GetString("Teksten" + gLanguage(), widget->objectName()));
    };
    Grid* const freq = m_ui->vsfOntwerpFreq;
    freq->setHeaders(ReadTexts(iniFile(), "FrequentiesGridHeaderText", 3));
    freq->setColumnKind(0, Grid::ColumnKind::Fixed);
    freq->setColumnKind(1, Grid::ColumnKind::Fixed);
    freq->setColumnKind(kKolomFrequentie, Grid::ColumnKind::Decimal);
    freq->setColumnWidths({kNummerBreedte, kNummerBreedte});
    freq->setColumnTip(kKolomFrequentie, gConvert().NumSys("0.5") + " <= waarde <= 20000");
    freq->setEditCheck([this](int, int, QString& text) {
        return CheckRange(text, grens::FrequentieMin, grens::FrequentieMax)
                   ? Grid::EditVerdict::Accepted
                   : Grid::EditVerdict::StaysOpen;
    });
    Grid* const kruin = m_ui->vsfKruinhoogtes;
    kruin->setHeaders(ReadTexts(iniFile(), "KruinhoogtesGridHeaderText", 2));
    kruin->setColumnKind(0, Grid::ColumnKind::Fixed);
    kruin->setColumnKind(kKolomKruinhoogte, Grid::ColumnKind::Decimal);
    kruin->setColumnWidths({kNummerBreedte});
    kruin->setColumnTip(kKolomKruinhoogte, "-20 <= waarde <= 20");
    kruin->setEditCheck([this](int, int, QString& text) {
        return CheckRange(text, grens::KruinhoogteMin, grens::KruinhoogteMax)
                   ? Grid::EditVerdict::Accepted
                   : Grid::EditVerdict::StaysOpen;
    });
    for (Grid* grid : {freq, kruin}) {
        name(grid);
        grid->viewport()->installEventFilter(this); // for the editors that open in it
        connect(grid, &Grid::CellEdited, this, [this] { SetDirty(true); });
    }
    for (LbnBox* box : {m_ui->lbnToeslagWS, m_ui->lbnToeslagHBN, m_ui->lbnToenameWind})
        box->Box()->setAccessibleName(
            iniFile().GetString("Teksten" + gLanguage(), box->objectName()));
    for (QFrame* frame : {m_ui->fraExtraFrequenties, m_ui->fraExtraKruinhoogtes}) {
        QSizePolicy policy = frame->sizePolicy();
        policy.setRetainSizeWhenHidden(true); // the form does not jump
        frame->setSizePolicy(policy);
    }
}

void frmBerekeningInstellingen::PrepareNumbers()
{
    const QString waarde = iniFile().GetString("Teksten" + gLanguage(), "WAARDE");
    for (NumBox* box : findChildren<NumBox*>()) {
        if (!DataTypes::IsNumber(box->DataType()) ||
            (box->MinimumValue() == 0 && box->MaximumValue() == 0))
            continue;
        box->setToolTip(ScreenText(box->MinimumValue()) + "<= " + waarde +
                        " <=" + ScreenText(box->MaximumValue()));
        box->setMessageText(waarde);
    }
    // Its bounds are not allowed themselves, which no range can say.
    NumBox* const factor = m_ui->lbnGolfCorrFactor->Box();
    factor->setToolTip("0 < factor < 10");
    factor->setText("1");
    factor->setValidate(false);
    factor->installEventFilter(this);
}

void frmBerekeningInstellingen::ConnectInputs()
{
    const auto dirty = [this] { SetDirty(true); };
    for (LbnBox* box : findChildren<LbnBox*>())
        connect(box, &LbnBox::Change, this, dirty);
    for (QCheckBox* box : findChildren<QCheckBox*>())
        connect(box, &QCheckBox::toggled, this, dirty);
    for (QRadioButton* option : findChildren<QRadioButton*>())
        connect(option, &QRadioButton::toggled, this, dirty);
    for (QLineEdit* edit : {m_ui->txtToelichtingWS, m_ui->txtToelichtingHBN}) {
        AttachTextFilter(edit);
        connect(edit, &QLineEdit::textChanged, this, dirty);
    }
}

void frmBerekeningInstellingen::ConnectRules()
{
    for (QCheckBox* box : {m_ui->chkNormfrequentie, m_ui->chkExtrafrequenties,
                           m_ui->chkKruinhoogteprofiel, m_ui->chkExtraKruinhoogtes})
        connect(box, &QCheckBox::clicked, this, [this, box] { KeepOneOn(box); });
    for (QCheckBox* box :
         {m_ui->chkExtrafrequenties, m_ui->chkExtraKruinhoogtes, m_ui->chkGolfCorrFactor,
          m_ui->chkToeslagWS, m_ui->chkToeslagHBN, m_ui->chkToenameWind})
        connect(box, &QCheckBox::toggled, this, &frmBerekeningInstellingen::EnableInputs);
    for (QRadioButton* option :
         {m_ui->optFaalmechanisme_0, m_ui->optFaalmechanisme_1, m_ui->optFaalmechanisme_2})
        connect(option, &QRadioButton::toggled, this, &frmBerekeningInstellingen::EnableInputs);
    connect(m_ui->lbnAantalFrequenties, &LbnBox::Change, this,
            [this] { RunHandler([this] { lbnAantalFrequenties_Change(); }); });
    connect(m_ui->lbnAantalKruinhoogtes, &LbnBox::Change, this,
            [this] { RunHandler([this] { lbnAantalKruinhoogtes_Change(); }); });
}

void frmBerekeningInstellingen::Initialiseer(const QString& bestand)
{
    m_instellingen = std::make_unique<QLMIniFile>(bestand);
    const auto gelezen = BerekeningInstellingen::Lees(*m_instellingen);
    m_faalmechanismeBegin = gelezen.indexFaalmechanisme;
    m_bevestigd = false;
    Show(gelezen);
    SetDirty(false);
}

void frmBerekeningInstellingen::Toon(QWidget* owner)
{
    winId(); // makes the window, which the other one then stays below
    if (owner && owner->windowHandle())
        windowHandle()->setTransientParent(owner->windowHandle());
    m_ui->chkNormfrequentie->setFocus();
    exec();
}

void frmBerekeningInstellingen::Show(const BerekeningInstellingen& s)
{
    const QScopedValueRollback showing(m_showing, true);
    m_ui->chkNormfrequentie->setChecked(s.normFrequentie);
    m_ui->chkExtrafrequenties->setChecked(s.extraFrequenties);
    m_ui->lbnAantalFrequenties->setText(QString::number(s.frequenties.size()));
    m_ui->vsfOntwerpFreq->ClearRows();
    for (int i = 0; i < s.frequenties.size(); ++i)
        m_ui->vsfOntwerpFreq->AddRow({QString::number(i + 1), "1/", s.frequenties[i]});
    m_ui->chkKruinhoogteprofiel->setChecked(s.kruinhoogteProfiel);
    m_ui->chkExtraKruinhoogtes->setChecked(s.extraKruinhoogtes);
    m_ui->lbnAantalKruinhoogtes->setText(QString::number(s.kruinhoogtes.size()));
    m_ui->vsfKruinhoogtes->ClearRows();
    for (int i = 0; i < s.kruinhoogtes.size(); ++i)
        m_ui->vsfKruinhoogtes->AddRow({QString::number(i + 1), s.kruinhoogtes[i]});
    QRadioButton* const mechanismen[] = {m_ui->optFaalmechanisme_0, m_ui->optFaalmechanisme_1,
                                         m_ui->optFaalmechanisme_2};
    mechanismen[s.indexFaalmechanisme]->setChecked(true);
    m_ui->lbnOverslagdebiet->setText(s.overslagdebiet);
    QRadioButton* const modules[] = {m_ui->optGolfgroeimodule_0, m_ui->optGolfgroeimodule_1,
                                     m_ui->optGolfgroeimodule_2};
    modules[s.indexGolfgroeimodule]->setChecked(true);
    m_ui->chkGolfCorrFactor->setChecked(s.golfCorrFactorAan);
    m_ui->lbnGolfCorrFactor->setText(s.golfCorrFactor);
    m_ui->chkUitspIll->setChecked(s.uitEnIll);
    m_ui->chkWindreductie->setChecked(s.windreductie);
    m_ui->chkUitsplitsenNaarAandelen->setChecked(s.uitsplitsenNaarAandelen);
    m_ui->chkToeslagWS->setChecked(s.toeslagWS.aan);
    m_ui->lbnToeslagWS->setText(s.toeslagWS.waarde);
    m_ui->txtToelichtingWS->setText(s.toeslagWS.toelichting);
    m_ui->chkToeslagHBN->setChecked(s.toeslagHBN.aan);
    m_ui->lbnToeslagHBN->setText(s.toeslagHBN.waarde);
    m_ui->txtToelichtingHBN->setText(s.toeslagHBN.toelichting);
    m_ui->chkToenameWind->setChecked(s.toenameWind.aan);
    m_ui->lbnToenameWind->setText(s.toenameWind.waarde);
    EnableInputs();
}

BerekeningInstellingen frmBerekeningInstellingen::Read() const
{
    BerekeningInstellingen s;
    s.normFrequentie = m_ui->chkNormfrequentie->isChecked();
    s.extraFrequenties = m_ui->chkExtrafrequenties->isChecked();
    s.frequenties = Column(*m_ui->vsfOntwerpFreq, kKolomFrequentie);
    s.kruinhoogteProfiel = m_ui->chkKruinhoogteprofiel->isChecked();
    s.extraKruinhoogtes = m_ui->chkExtraKruinhoogtes->isChecked();
    s.kruinhoogtes = Column(*m_ui->vsfKruinhoogtes, kKolomKruinhoogte);
    s.indexFaalmechanisme = m_ui->optFaalmechanisme_1->isChecked()   ? 1
                            : m_ui->optFaalmechanisme_2->isChecked() ? 2
                                                                     : 0;
    s.overslagdebiet = m_ui->lbnOverslagdebiet->text().trimmed();
    s.indexGolfgroeimodule = m_ui->optGolfgroeimodule_1->isChecked()   ? 1
                             : m_ui->optGolfgroeimodule_2->isChecked() ? 2
                                                                       : 0;
    s.golfCorrFactorAan = m_ui->chkGolfCorrFactor->isChecked();
    s.golfCorrFactor = m_ui->lbnGolfCorrFactor->text().trimmed();
    s.uitEnIll = m_ui->chkUitspIll->isChecked();
    s.windreductie = m_ui->chkWindreductie->isChecked();
    s.uitsplitsenNaarAandelen = m_ui->chkUitsplitsenNaarAandelen->isChecked();
    s.toeslagWS = {m_ui->chkToeslagWS->isChecked(), m_ui->lbnToeslagWS->text().trimmed(),
                   m_ui->txtToelichtingWS->text().trimmed()};
    s.toeslagHBN = {m_ui->chkToeslagHBN->isChecked(), m_ui->lbnToeslagHBN->text().trimmed(),
                    m_ui->txtToelichtingHBN->text().trimmed()};
    s.toenameWind = {m_ui->chkToenameWind->isChecked(), m_ui->lbnToenameWind->text().trimmed(), {}};
    return s;
}

void frmBerekeningInstellingen::SetDirty(bool dirty)
{
    if (m_showing)
        return;
    m_ui->cmdOK->setEnabled(dirty);
    // Enter leaves a clean form and confirms a changed one.
    m_ui->cmdOK->setDefault(dirty);
    m_ui->cmdCancel->setDefault(!dirty);
}

void frmBerekeningInstellingen::KeepOneOn(QCheckBox* clicked)
{
    // With none of the four the core would have nothing to calculate.
    const std::pair<QCheckBox*, QCheckBox*> partners[] = {
        {m_ui->chkNormfrequentie, m_ui->chkExtrafrequenties},
        {m_ui->chkKruinhoogteprofiel, m_ui->chkExtraKruinhoogtes}};
    for (const auto& [een, ander] : partners)
        if (een->isChecked() || ander->isChecked())
            return;
    for (const auto& [een, ander] : partners) {
        if (clicked == een)
            ander->setChecked(true);
        else if (clicked == ander)
            een->setChecked(true);
    }
}

void frmBerekeningInstellingen::EnableInputs()
{
    m_ui->fraExtraFrequenties->setVisible(m_ui->chkExtrafrequenties->isChecked());
    m_ui->fraExtraKruinhoogtes->setVisible(m_ui->chkExtraKruinhoogtes->isChecked());
    m_ui->lbnOverslagdebiet->setEnabled(m_ui->optFaalmechanisme_1->isChecked());
    const bool golven = !m_ui->optFaalmechanisme_0->isChecked(); // overflow has none
    m_ui->fraGolfgroeimodule->setEnabled(golven);
    m_ui->lbnGolfCorrFactor->setEnabled(golven && m_ui->chkGolfCorrFactor->isChecked());
    for (QWidget* widget : std::initializer_list<QWidget*>{
             m_ui->lbnToeslagWS, m_ui->lblToelichtingWS, m_ui->txtToelichtingWS})
        widget->setEnabled(m_ui->chkToeslagWS->isChecked());
    for (QWidget* widget : std::initializer_list<QWidget*>{
             m_ui->lbnToeslagHBN, m_ui->lblToelichtingHBN, m_ui->txtToelichtingHBN})
        widget->setEnabled(m_ui->chkToeslagHBN->isChecked());
    m_ui->lbnToenameWind->setEnabled(m_ui->chkToenameWind->isChecked());
}

void frmBerekeningInstellingen::lbnAantalFrequenties_Change()
{
    if (m_showing || !m_ui->lbnAantalFrequenties->IsUsable())
        return; // also an empty box on the way to its next digit: the rows wait
    const int aantal = gConvert().ConvInt(m_ui->lbnAantalFrequenties->text());
    m_ui->vsfOntwerpFreq->ClearRows();
    for (int i = 1; i <= aantal; ++i)
        m_ui->vsfOntwerpFreq->AddRow(
            {QString::number(i), "1/", OpgeslagenFrequentie(*m_instellingen, i)});
}

void frmBerekeningInstellingen::lbnAantalKruinhoogtes_Change()
{
    if (m_showing || !m_ui->lbnAantalKruinhoogtes->IsUsable())
        return;
    const int aantal = gConvert().ConvInt(m_ui->lbnAantalKruinhoogtes->text());
    m_ui->vsfKruinhoogtes->ClearRows();
    for (int i = 1; i <= aantal; ++i)
        m_ui->vsfKruinhoogtes->AddRow(
            {QString::number(i), OpgeslagenKruinhoogte(*m_instellingen, i)});
}

bool frmBerekeningInstellingen::CheckRange(const QString& tekst, double minimum, double maximum)
{
    if (IsTussen(tekst, minimum, maximum))
        return true;
    ShowMessageForm(this, kMeldingNietToegestaan, {ScreenText(minimum), ScreenText(maximum)});
    return false;
}

void frmBerekeningInstellingen::CheckGolfCorrFactor(Qt::FocusReason reason)
{
    NumBox* const box = m_ui->lbnGolfCorrFactor->Box();
    if (m_checking || !LeavesControl(reason) || !box->isVisible() || !box->isEnabled() ||
        FocusGoesToCancel() || IsGolfCorrFactor(box->text()))
        return;
    const QScopedValueRollback checking(m_checking, true);
    ShowMessageForm(this, kMeldingNietToegestaan,
                    {ScreenText(grens::GolfCorrFactorMin), ScreenText(grens::GolfCorrFactorMax)});
    HoldFocus(box, reason);
    box->selectAll();
}

bool frmBerekeningInstellingen::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->lbnGolfCorrFactor->Box() && event->type() == QEvent::FocusOut) {
        // The box first forgets the focus, and may then get it back.
        watched->event(event);
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        RunHandler([this, reason] { CheckGolfCorrFactor(reason); });
        return true;
    }
    if (event->type() == QEvent::ChildPolished) {
        // A cell is being edited: its keys are filtered for the column's bounds.
        auto* editor = qobject_cast<QLineEdit*>(static_cast<QChildEvent*>(event)->child());
        if (editor && watched == m_ui->vsfOntwerpFreq->viewport())
            AttachNumberFilter(editor,
                               {DataTypes::Double, grens::FrequentieMin, grens::FrequentieMax});
        else if (editor && watched == m_ui->vsfKruinhoogtes->viewport())
            AttachNumberFilter(editor,
                               {DataTypes::Double, grens::KruinhoogteMin, grens::KruinhoogteMax});
    }
    return IniDialog::eventFilter(watched, event);
}

bool frmBerekeningInstellingen::FocusedInputIsUsable()
{
    auto* box = qobject_cast<NumBox*>(focusWidget());
    if (!box || !box->isVisible() || !box->isEnabled())
        return true;
    const bool isFactor = box == m_ui->lbnGolfCorrFactor->Box();
    if (isFactor ? IsGolfCorrFactor(box->text()) : box->IsUsable())
        return true;
    ShowMessageForm(this, kMeldingNietToegestaan,
                    {ScreenText(isFactor ? grens::GolfCorrFactorMin : box->MinimumValue()),
                     ScreenText(isFactor ? grens::GolfCorrFactorMax : box->MaximumValue())});
    HoldFocus(box, Qt::OtherFocusReason);
    box->selectAll();
    return false;
}

void frmBerekeningInstellingen::cmdMemo_Click()
{
    frmMemo form(this);
    form.SetMemo(m_memo);
    form.exec();
    if (form.OK())
        m_memo = form.GetMemo();
}

void frmBerekeningInstellingen::cmdOK_Click()
{
    if (!m_ui->vsfOntwerpFreq->EndEdit() || !m_ui->vsfKruinhoogtes->EndEdit() ||
        !FocusedInputIsUsable())
        return;
    const BerekeningInstellingen gekozen = Read();
    if (!gekozen.Bewaar(*m_instellingen))
        RaiseFout(kFoutNietTeOpenen, {m_instellingen->file()});
    m_somChange = gekozen.indexFaalmechanisme != m_faalmechanismeBegin;
    m_bevestigd = true;
    CloseOK();
}
