#include "calculation/ui/frmUitvoer.h"

#include "calculation/TextFile.h"
#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/ProcessRunner.h"
#include "frame/QLMFile.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "ui_frmUitvoer.h"

#include <QFontDatabase>

namespace {

constexpr int kMeldingGeenProgramma = 3;
constexpr int kShellGelukt = 32; // results above it mean that it worked

} // namespace

frmUitvoer::frmUitvoer(QWidget* parent)
    : IniDialog("Uitvoer.ini", parent), m_ui(std::make_unique<Ui::frmUitvoer>())
{
    m_ui->setupUi(this);
    LoadForm();
    m_ui->rtfUitvoer->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->rtfUitvoer->setAccessibleName(
        iniFile().GetString("Teksten" + gLanguage(), "rtfUitvoer", "Uitvoer"));

    const auto on = [this](QPushButton* button, void (frmUitvoer::*handler)()) {
        connect(button, &QPushButton::clicked, this,
                [this, handler] { RunHandler([&] { (this->*handler)(); }); });
    };
    on(m_ui->cmdExtra, &frmUitvoer::cmdExtra_Click);
    on(m_ui->cmdUitvoer, &frmUitvoer::cmdUitvoer_Click);
    on(m_ui->cmdPrint, &frmUitvoer::cmdPrint_Click);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] { CloseOK(); });
}

frmUitvoer::~frmUitvoer() = default;

void frmUitvoer::ShowUitvoerFile(const QString& path, const std::optional<QString>& extra)
{
    const BusyScope busy;
    m_normal = path;
    m_extra = extra.value_or(QString());
    m_ui->cmdExtra->setVisible(extra.has_value());
    m_ui->cmdUitvoer->setVisible(extra.has_value());
    m_ui->cmdUitvoer->setEnabled(false);
    m_ui->cmdExtra->setEnabled(extra.has_value() && FileExists(m_extra));
    LoadFile(m_normal);
    m_ui->rtfUitvoer->setFocus();
}

void frmUitvoer::LoadFile(const QString& path)
{
    bool cut = false;
    QString text = textfile::ReadAll(path, kLimit, cut);
    if (cut)
        text += "\n" + iniFile().GetString("Teksten" + gLanguage(), "afgekapt", "(...)");
    m_ui->rtfUitvoer->setPlainText(text);
    m_loaded = path;
}

void frmUitvoer::cmdExtra_Click()
{
    const BusyScope busy;
    LoadFile(m_extra);
    m_ui->cmdUitvoer->setEnabled(true);
    m_ui->cmdExtra->setEnabled(false);
    ShowCaption("frmUitvoer.caption.extra");
}

void frmUitvoer::cmdUitvoer_Click()
{
    const BusyScope busy;
    LoadFile(m_normal);
    m_ui->cmdExtra->setEnabled(true);
    m_ui->cmdUitvoer->setEnabled(false);
    ShowCaption("frmUitvoer.caption.normaal");
}

void frmUitvoer::ShowCaption(const QString& key)
{
    setWindowTitle(iniFile().GetString("Captions" + gLanguage(), key, windowTitle()));
}

void frmUitvoer::cmdPrint_Click()
{
    OpenByAssociation(this, m_loaded);
}

void OpenByAssociation(QWidget* owner, const QString& path)
{
    if (ShellOpen(path) > kShellGelukt)
        return;
    const QStringList arguments{CFileName(path).GetExtension(), path};
    if (owner)
        ShowMessageForm(owner, kMeldingGeenProgramma, arguments);
    else
        ShowMessage(kMeldingGeenProgramma, arguments);
}
