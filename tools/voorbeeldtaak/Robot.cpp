#include "Robot.h"

#include "calculation/ui/run/frmBerekeningStart.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

namespace {

constexpr int kInterval = 20; // ms between looks

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
    // What changed just now gets its place first, as it does before a user sees it.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QString path = QDir(m_folder).filePath(picture);
    if (widget->grab().save(path))
        m_pictures << path;
    else
        m_faults << "Het beeld kan niet worden bewaard: " + path;
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
    if (const auto* start = qobject_cast<frmBerekeningStart*>(form))
        m_selected = start->NSelected();
    Keep(form, "start.png");
    const auto* ok = form->findChild<QAbstractButton*>("cmdOK");
    if (!ok || !ok->isEnabled()) {
        m_faults << "De berekening kan niet worden gestart.";
        Press(form, "cmdCancel");
        return;
    }
    Press(form, "cmdOK");
}

void Robot::Run(QWidget* form)
{
    // Half-way there is most to see: something done, something left, a log.
    const auto* log = form->findChild<QPlainTextEdit*>("rtfLog");
    const auto* progress = form->findChild<QProgressBar*>("prgBatch");
    if (m_runKept || !log || !progress)
        return;
    const bool halfway = 2 * progress->value() >= progress->maximum();
    const bool first = m_seen["frmBatchjob"] == 1;
    if (!first && (!halfway || log->document()->isEmpty()))
        return;
    Keep(form, "rekenen.png");
    m_runKept = !first;
}

void Robot::Result(QWidget* form)
{
    if (const auto* list = form->findChild<QPlainTextEdit*>("txtLog"))
        m_resultList = list->toPlainText();
    if (const auto* summary = form->findChild<QLabel*>("lblSamenvatting"))
        m_summary = summary->text();
    Keep(form, "resultaat.png");
    Press(form, "cmdOK");
}

void Robot::Box(QWidget* form)
{
    const auto* box = qobject_cast<QMessageBox*>(form);
    m_faults << (box ? box->text() : form->windowTitle());
    Keep(form, "melding.png");
    form->close();
}
