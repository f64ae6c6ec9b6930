#include "frame/ui/IniDialog.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/ui/FocusHold.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/NumBox.h"
#include "frame/ui/TranslateForm.h"
#include "frame/ui/WindowPosition.h"

#include <QKeyEvent>
#include <QPushButton>

namespace {

std::function<void(QWidget*)>& HelpHandler()
{
    static std::function<void(QWidget*)> handler;
    return handler;
}

} // namespace

IniDialog::IniDialog(const QString& iniName, QWidget* parent, Place place)
    : QDialog(parent), m_iniFile(AddBackslash(gIniPath()) + iniName), m_place(place)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

IniDialog::~IniDialog() = default;

void IniDialog::LoadForm()
{
    TranslateForm(*this, m_iniFile, gLanguage());
    SetUpButtons();
    m_loaded = true;
}

void IniDialog::SetUpButtons()
{
    for (QAbstractButton* button : findChildren<QAbstractButton*>())
        button->installEventFilter(this);
    auto* ok = findChild<QPushButton*>("cmdOK");
    bool hasDefault = false;
    for (QPushButton* button : findChildren<QPushButton*>()) {
        hasDefault = hasDefault || button->isDefault();
        button->setAutoDefault(false);
    }
    if (ok && !hasDefault)
        ok->setDefault(true);
}

void IniDialog::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        m_ok = false; // a form that is shown again has not been confirmed again
    // The first show is the earliest moment at which the layout has told the
    // form's size, which the place depends on.
    if (m_loaded && !event->spontaneous()) {
        if (m_place == Place::Kept)
            LoadWindowPosition(*this, gIniFile());
        else
            CenterForm(*this);
    }
    QDialog::showEvent(event);
}

void IniDialog::CloseOK()
{
    m_ok = true;
    accept();
}

void IniDialog::done(int result)
{
    if (m_loaded && m_place == Place::Kept && isVisible())
        SaveWindowPosition(*this, gIniFile());
    QDialog::done(result);
}

bool IniDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Shortcut) {
        const auto* button = qobject_cast<QAbstractButton*>(watched);
        auto* box = qobject_cast<NumBox*>(focusWidget());
        if (button && box && !GivesUpForm(*button) && !box->CheckNow())
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void IniDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F1) {
        ShowHelp(this);
        return;
    }
    if (event->matches(QKeySequence::Cancel)) {
        auto* cancel = findChild<QPushButton*>("cmdCancel");
        if (cancel) {
            if (cancel->isEnabled())
                cancel->click();
            return;
        }
    }
    QDialog::keyPressEvent(event);
}

QStringList ReadTexts(QLMIniFile& ini, const QString& section, int count, const QString& keyBase)
{
    QStringList texts;
    for (int i = 0; i < count; ++i)
        texts.append(ini.GetString(section, keyBase + QString::number(i)));
    return texts;
}

void SetHelpHandler(std::function<void(QWidget*)> handler)
{
    HelpHandler() = std::move(handler);
}

void ShowHelp(QWidget* form)
{
    if (HelpHandler())
        RunHandler([form] { HelpHandler()(form); });
}
