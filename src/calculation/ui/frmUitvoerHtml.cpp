#include "calculation/ui/frmUitvoerHtml.h"

#include "calculation/ui/frmUitvoer.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/ui/MessageBoxes.h"
#include "ui_frmUitvoerHtml.h"

#include <QFileInfo>
#include <QUrl>

frmUitvoerHtml::frmUitvoerHtml(QWidget* parent)
    : IniDialog("UitvoerHtml.ini", parent), m_ui(std::make_unique<Ui::frmUitvoerHtml>())
{
    m_ui->setupUi(this);
    LoadForm();
    m_ui->wbrUitvoer->setAccessibleName(
        iniFile().GetString("Teksten" + gLanguage(), "wbrUitvoer", "Pagina"));
    m_ui->cmdBack->setEnabled(false);
    connect(m_ui->wbrUitvoer, &QTextBrowser::backwardAvailable, m_ui->cmdBack,
            &QPushButton::setEnabled);
    connect(m_ui->cmdBack, &QPushButton::clicked, this, &frmUitvoerHtml::cmdBack_Click);
    connect(m_ui->cmdOpenByAssoc, &QPushButton::clicked, this,
            [this] { RunHandler([this] { cmdOpenByAssoc_Click(); }); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] { CloseOK(); });
}

frmUitvoerHtml::~frmUitvoerHtml() = default;

void frmUitvoerHtml::ShowUitvoerFile(const QString& path)
{
    const QFileInfo file(ResolvePath(path));
    if (!file.exists())
        RaiseRuntimeFout(RuntimeFout::FileAccess, "Het bestand bestaat niet.|" + path);
    m_path = file.absoluteFilePath();
    m_ui->wbrUitvoer->setSource(QUrl::fromLocalFile(m_path));
}

void frmUitvoerHtml::done(int result)
{
    if (m_saveSize)
        IniDialog::done(result);
    else
        QDialog::done(result);
}

void frmUitvoerHtml::cmdBack_Click()
{
    m_ui->wbrUitvoer->backward(); // does nothing on the first page
}

void frmUitvoerHtml::cmdOpenByAssoc_Click()
{
    const QUrl page = QUrl::fromLocalFile(m_path).resolved(m_ui->wbrUitvoer->source());
    OpenByAssociation(nullptr, page.isLocalFile() ? page.toLocalFile() : page.toString());
}
