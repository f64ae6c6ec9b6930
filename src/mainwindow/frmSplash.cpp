#include "mainwindow/frmSplash.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"
#include "frame/ui/LogBox.h"
#include "frame/ui/TranslateForm.h"
#include "frame/ui/WindowPosition.h"
#include "mainwindow/Commands.h"
#include "mainwindow/ProgrammaVersie.h"
#include "ui_frmSplash.h"

#include <QCoreApplication>

frmSplash::frmSplash()
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint),
      m_ui(std::make_unique<Ui::frmSplash>())
{
    m_ui->setupUi(this);
    m_ui->rtfRekenProgrammaVersie->hide();
    m_ui->lblPicture->setPixmap(ProgramIcon().pixmap(QSize(96, 96)));
    QLMIniFile ini(AddBackslash(gIniPath()) + "Splash.ini");
    TranslateForm(*this, ini, gLanguage());
    m_ui->lblVersion->setText(VersieText(m_ui->lblVersion->text()));
    LogBox box(m_ui->rtfRekenProgrammaVersie);
    m_ui->lblRekenhart->setText(
        MetVersie("Rekenhart", getProgrammaVersie("Rekenprogramma.exe", box)));
}

frmSplash::~frmSplash() = default;

void frmSplash::ShowNow()
{
    adjustSize();
    CenterForm(*this);
    show();
    // The load of the main window leaves no room for events.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    repaint();
}
