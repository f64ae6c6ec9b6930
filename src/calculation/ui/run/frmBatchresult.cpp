#include "calculation/ui/run/frmBatchresult.h"

#include "frame/Globals.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "ui_frmBatchresult.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QTextBlock>

namespace {

/// Of what did not run, so many are named.
constexpr qsizetype kMaximumGenoemd = 10;

} // namespace

frmBatchresult::frmBatchresult(QWidget* parent)
    : IniDialog("Batchresult.ini", parent),
      m_ui(std::make_unique<Ui::frmBatchresult>()),
      m_log((m_ui->setupUi(this), m_ui->txtLog))
{
    LoadForm();
    const QString teksten = "Teksten" + gLanguage();
    m_ui->txtLog->setAccessibleName(iniFile().GetString(teksten, "txtLog"));
    m_ui->txtLog->viewport()->setToolTip(iniFile().GetString(teksten, "tip"));
    m_ui->txtLog->viewport()->installEventFilter(this);
    connect(m_ui->cmdCopy, &QPushButton::clicked, this,
            [this] { RunHandler([this] { cmdCopy_Click(); }); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] { CloseOK(); });
}

frmBatchresult::~frmBatchresult() = default;

void frmBatchresult::ToonVerloop(const BatchVerloop& verloop, bool mislukt)
{
    const auto tekst = [this](const char* key, const QStringList& waarden) {
        QString gelezen = iniFile().GetString("Teksten" + gLanguage(), key, "%1 %2 %3");
        FillPlaceholders(gelezen, waarden);
        return gelezen;
    };
    const int fouten = AantalMislukt(m_log.Text());
    QString zin = tekst(fouten > 0 ? "uitgevoerd.fout" : "uitgevoerd",
                        {QString::number(verloop.gedaan), QString::number(verloop.Gepland()),
                         QString::number(fouten)});
    if (mislukt || verloop.afgebroken)
        zin = tekst(mislukt ? "gestopt" : "afgebroken", {zin});
    zin += '.';
    if (!verloop.niet.isEmpty()) {
        const auto meer = verloop.niet.size() - kMaximumGenoemd;
        const QString namen =
            verloop.niet.first(qMin<qsizetype>(verloop.niet.size(), kMaximumGenoemd)).join(", ");
        zin += '\n' +
               (meer > 0 ? tekst("niet.meer", {namen, QString::number(meer)})
                         : tekst("niet", {namen})) +
               '.';
    }
    m_ui->lblSamenvatting->setText(zin);
}

void frmBatchresult::cmdCopy_Click() const
{
    const QTextCursor cursor = m_ui->txtLog->textCursor();
    // A selection's lines are parted by U+2029.
    QString tekst = cursor.hasSelection() ? cursor.selectedText().replace(QChar(0x2029), '\n')
                                          : m_ui->txtLog->toPlainText();
    QGuiApplication::clipboard()->setText(tekst.replace('\n', "\r\n"));
}

bool frmBatchresult::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->txtLog->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        const auto at = static_cast<QMouseEvent*>(event)->position().toPoint();
        const QTextCursor cursor = m_ui->txtLog->cursorForPosition(at);
        if (const auto regel = LeesResultaatregel(cursor.block().text())) {
            RunHandler([&] { emit NaarBerekening(*regel); });
            return true;
        }
    }
    return IniDialog::eventFilter(watched, event);
}
