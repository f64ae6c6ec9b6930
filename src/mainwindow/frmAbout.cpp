#include "mainwindow/frmAbout.h"

#include "frame/Globals.h"
#include "frame/ProcessRunner.h"
#include "frame/ui/LogBox.h"
#include "frame/ui/MessageBoxes.h"
#include "mainwindow/Commands.h"
#include "mainwindow/ProgrammaVersie.h"
#include "ui_frmAbout.h"

#include <QDesktopServices>
#include <QUrl>

frmAbout::frmAbout(QWidget* parent)
    : IniDialog("About.ini", parent, Place::Centred), m_ui(std::make_unique<Ui::frmAbout>())
{
    m_ui->setupUi(this);
    m_ui->rtfRekenProgrammaVersie->hide();
    m_ui->lblPicture->setPixmap(ProgramIcon().pixmap(QSize(64, 64)));
    LoadForm();
    m_ui->lblVersion->setText(VersieText(m_ui->lblVersion->text()));
    LogBox box(m_ui->rtfRekenProgrammaVersie);
    const QString core = getProgrammaVersie("Rekenprogramma.exe", box);
    m_ui->lblRekenhart->setText(MetVersie(m_ui->lblRekenhart->text(), core));

    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] { CloseOK(); });
    for (const char* key : {"URLqlm", "URLNoorlo", "URLWaterkeren"}) {
        auto* button = findChild<QPushButton*>(QString("cmd") + key);
        connect(button, &QPushButton::clicked, this,
                [this, key] { RunHandler([this, key] { OpenUrl(key); }); });
    }
    connect(m_ui->cmdMAILWaterkeren, &QPushButton::clicked, this,
            [this] { RunHandler([this] { cmdMAILWaterkeren_Click(); }); });
}

frmAbout::~frmAbout() = default;

void frmAbout::OpenUrl(const QString& key)
{
    const QString url = iniFile().GetString("URLS", key).trimmed();
    if (!url.isEmpty())
        QDesktopServices::openUrl(QUrl(url));
}

void frmAbout::cmdMAILWaterkeren_Click()
{
    const QString address = iniFile().GetString("Mails", "MAILWaterkeren").trimmed();
    if (!address.isEmpty())
        ShellMail(address, QString(), QString());
}
