#include "frame/ui/TranslateForm.h"

#include "frame/QLMIniFile.h"
#include "frame/Texts.h"
#include "frame/ui/FileBox.h"
#include "frame/ui/LbnBox.h"
#include "frame/ui/NumBox.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTabWidget>

namespace {

std::optional<ControlKind> KindOf(const QObject& object)
{
    if (const auto* action = qobject_cast<const QAction*>(&object))
        return action->isSeparator() ? std::nullopt : std::optional(ControlKind::Caption);
    if (qobject_cast<const QLabel*>(&object) || qobject_cast<const QAbstractButton*>(&object) ||
        qobject_cast<const QMenu*>(&object) || qobject_cast<const QGroupBox*>(&object) ||
        qobject_cast<const FileBox*>(&object))
        return ControlKind::Caption;
    if (qobject_cast<const LbnBox*>(&object))
        return ControlKind::Numbered;
    if (qobject_cast<const QLineEdit*>(&object) || qobject_cast<const QPlainTextEdit*>(&object))
        return ControlKind::Text;
    if (qobject_cast<const QComboBox*>(&object))
        return ControlKind::List;
    if (qobject_cast<const QTabWidget*>(&object))
        return ControlKind::Tabs;
    return std::nullopt;
}

bool IsPlainFrame(const QObject& object)
{
    // QLabel is a QFrame too; a frame that is nothing else has no caption.
    return object.metaObject() == &QFrame::staticMetaObject;
}

void Collect(const QObject& parent, QList<FormControl>& controls)
{
    static const QRegularExpression element("^(.+)_(\\d+)$");
    for (QObject* child : parent.children()) {
        const QString name = child->objectName();
        const auto* widget = qobject_cast<const QWidget*>(child);
        const bool isForm = widget && (name.startsWith("frm") ||
                                       (widget->isWindow() && !qobject_cast<const QMenu*>(child)));
        if (isForm)
            continue;
        if (!name.isEmpty() && !name.startsWith("qt_") && !name.startsWith("rtf") &&
            !IsPlainFrame(*child)) {
            if (const auto kind = KindOf(*child)) {
                FormControl control{child, name, std::nullopt, *kind,
                                    child->property("filledByCode").toBool()};
                const QRegularExpressionMatch match = element.match(name);
                if (match.hasMatch()) {
                    control.name = match.captured(1);
                    control.index = match.captured(2).toInt();
                }
                controls.append(control);
            }
        }
        // What a control consists of is its own business.
        const bool closed =
            qobject_cast<const QComboBox*>(child) || qobject_cast<const QLineEdit*>(child) ||
            qobject_cast<const LbnBox*>(child) || qobject_cast<const FileBox*>(child);
        if (!closed)
            Collect(*child, controls);
    }
}

/// Reads the three tries of a property; keeps `present` when no key is there.
class Captions {
public:
    Captions(QLMIniFile& ini, const QString& section, const QString& form)
        : m_ini(ini), m_section(section), m_form(form)
    {}

    QString Read(const FormControl& control, const QString& present, const QString& suffix = {})
    {
        QString text = present;
        for (const QString& key : control.Keys(m_form, suffix))
            text = Value(key, text);
        return text;
    }
    QString Value(const QString& key, const QString& present)
    {
        return m_ini.GetString(m_section, key, present);
    }

private:
    QLMIniFile& m_ini;
    QString m_section;
    QString m_form;
};

void TranslateCaption(const FormControl& control, Captions& captions)
{
    const auto translate = [&](auto* typed, auto get, auto set) {
        if (typed)
            (typed->*set)(captions.Read(control, (typed->*get)()));
    };
    QObject* object = control.object;
    translate(qobject_cast<QAction*>(object), &QAction::text, &QAction::setText);
    translate(qobject_cast<QMenu*>(object), &QMenu::title, &QMenu::setTitle);
    translate(qobject_cast<QLabel*>(object), &QLabel::text, &QLabel::setText);
    translate(qobject_cast<QAbstractButton*>(object), &QAbstractButton::text,
              &QAbstractButton::setText);
    translate(qobject_cast<QGroupBox*>(object), &QGroupBox::title, &QGroupBox::setTitle);
    translate(qobject_cast<FileBox*>(object), &FileBox::Caption, &FileBox::setCaption);
}

void TranslateText(const FormControl& control, Captions& captions)
{
    if (auto* number = qobject_cast<NumBox*>(control.object))
        number->setText(captions.Read(control, number->text()));
    else if (auto* line = qobject_cast<QLineEdit*>(control.object))
        line->setText(captions.Read(control, line->text()));
    else if (auto* box = qobject_cast<QPlainTextEdit*>(control.object))
        box->setPlainText(captions.Read(control, box->toPlainText()));
}

void TranslateNumbered(const FormControl& control, Captions& captions)
{
    auto* box = qobject_cast<LbnBox*>(control.object);
    box->setText(captions.Read(control, box->text()));
    box->setCaptionLeft(captions.Read(control, box->CaptionLeft(), "Left"));
    box->setCaptionRight(captions.Read(control, box->CaptionRight(), "Right"));
}

void TranslateList(const FormControl& control, const QString& base, Captions& captions)
{
    auto* box = qobject_cast<QComboBox*>(control.object);
    box->clear();
    const QString items = captions.Value(base, QString());
    for (const QString& item : items.split(';', Qt::SkipEmptyParts))
        box->addItem(item);
}

void TranslateTabs(const FormControl& control, const QString& base, Captions& captions)
{
    auto* tabs = qobject_cast<QTabWidget*>(control.object);
    for (int tab = 0; tab < tabs->count(); ++tab)
        tabs->setTabText(tab,
                         captions.Value(base + "." + QString::number(tab), tabs->tabText(tab)));
}

} // namespace

QStringList FormControl::Keys(const QString& form, const QString& suffix) const
{
    const QString base = form + "." + name + suffix;
    if (index)
        return {base + ".0", base + "." + QString::number(*index), base};
    return {base + ".0", base};
}

QList<FormControl> FormControls(const QWidget& form)
{
    QList<FormControl> controls;
    Collect(form, controls);
    return controls;
}

void TranslateForm(QWidget& form, QLMIniFile& ini, const QString& language)
{
    const QString section = "Captions" + language;
    const QString name = form.objectName();
    Captions captions(ini, section, name);
    form.setWindowTitle(BoxTitle() + " - " + captions.Value(name, name));
    for (const FormControl& control : FormControls(form)) {
        const QString base = name + "." + control.name;
        switch (control.kind) {
        case ControlKind::Caption:
            TranslateCaption(control, captions);
            break;
        case ControlKind::Numbered:
            TranslateNumbered(control, captions);
            break;
        case ControlKind::Text:
            TranslateText(control, captions);
            break;
        case ControlKind::List:
            TranslateList(control, base, captions);
            break;
        case ControlKind::Tabs:
            TranslateTabs(control, base, captions);
            break;
        }
    }
}
