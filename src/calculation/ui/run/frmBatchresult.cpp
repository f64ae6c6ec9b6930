#include "calculation/ui/run/frmBatchresult.h"

#include "frame/Globals.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "ui_frmBatchresult.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QTextBlock>

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
    const int fouten = AantalMislukt(m_log.Text());
    const char* key = mislukt              ? "gestopt"
                      : verloop.afgebroken ? "afgebroken"
                      : fouten > 0         ? "klaar.fout"
                                           : "klaar";
    const bool voortijdig = mislukt || verloop.afgebroken;
    QString tekst = iniFile().GetString("Teksten" + gLanguage(), key, "%1/%2 %3");
    FillPlaceholders(tekst,
                     {QString::number(verloop.gedaan), QString::number(verloop.gepland),
                      QString::number(voortijdig ? verloop.gepland - verloop.gedaan : fouten)});
    m_ui->lblSamenvatting->setText(tekst);
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
