#include "Robot.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace {

constexpr int kInterval = 20;     // ms between looks
constexpr int kRunForPicture = 5; // looks at a run before its picture is taken

void Press(const QWidget* form, const char* button)
{
    auto* found = form->findChild<QAbstractButton*>(button);
    if (found && found->isEnabled())
        found->click();
}

} // namespace

Robot::Robot(const QString& folder) : m_folder(folder)
{
    QTimer::singleShot(kInterval, this, [this] { Look(); });
}

void Robot::Keep(QWidget* widget, const QString& picture)
{
    const QString path = QDir(m_folder).filePath(picture);
    if (widget->grab().save(path))
        m_pictures << path;
}

void Robot::Look()
{
    // Anew each time: a timer does not fire again while its own dialog is open.
    QTimer::singleShot(kInterval, this, [this] { Look(); });
    QWidget* form = QApplication::activeModalWidget();
    if (!form || !form->isVisible())
        return;
    const QString kind = form->metaObject()->className();
    ++m_seen[kind];
    if (kind == "frmBerekeningInstellingen")
        Settings(form);
    else if (kind == "frmBerekeningStart")
        Start(form);
    else if (kind == "frmBatchjob")
        Run(form);
    else if (kind == "frmBatchresult")
        Result(form);
    else
        Box(form);
}

void Robot::Settings(QWidget* form)
{
    m_settingsDone = true;
    // Wave overtopping; away and back, so that the form notices a change.
    Press(form, "optFaalmechanisme_2");
    Press(form, "optFaalmechanisme_1");
    Keep(form, "instellingen.png");
    const auto* ok = form->findChild<QAbstractButton*>("cmdOK");
    Press(form, ok && ok->isEnabled() ? "cmdOK" : "cmdCancel");
}

void Robot::Start(QWidget* form)
{
    if (!m_settingsDone) {
        m_settingsDone = true; // a form that does not open is not asked for again
        Press(form, "cmdparameters");
        return;
    }
    if (auto* naam = form->findChild<QLineEdit*>("nbrBerekeningNaam");
        naam && naam->text().isEmpty())
        QTest::keyClicks(naam, m_naam);
    Press(form, "cmdSelectAll");
    Keep(form, "start.png");
    const auto* ok = form->findChild<QAbstractButton*>("cmdOK");
    if (!ok || !ok->isEnabled()) {
        m_boxes << "De berekening kan niet worden gestart.";
        Press(form, "cmdCancel");
        return;
    }
    Press(form, "cmdOK");
}

void Robot::Run(QWidget* form)
{
    if (m_seen["frmBatchjob"] == kRunForPicture)
        Keep(form, "rekenen.png");
}

void Robot::Result(QWidget* form)
{
    Keep(form, "resultaat.png");
    Press(form, "cmdOK");
}

void Robot::Box(QWidget* form)
{
    const auto* box = qobject_cast<QMessageBox*>(form);
    m_boxes << (box ? box->text() : form->windowTitle());
    Keep(form, "melding.png");
    form->close();
}
