#include "frame/ui/KeyFilters.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

namespace {

/// Cleans the text of its parent after each change by the user. What the program
/// puts there is shown as it is: dropping the sign of an exponent, say, would
/// change the value.
class TextFilter : public QObject {
public:
    TextFilter(QLineEdit* edit, bool sound)
        : QObject(edit), m_edit(edit), m_previous(edit->text()), m_sound(sound)
    {
        // Told before textChanged, so listeners find the cleaned text.
        connect(edit, &QLineEdit::textEdited, this, [this] { Clean(); });
        connect(edit, &QLineEdit::textChanged, this, [this] { m_previous = m_edit->text(); });
    }

protected:
    virtual FilteredText Filter(const QString& text, const QString& previous, int caret) const = 0;

    void Refuse() const
    {
        if (m_sound)
            QApplication::beep();
    }
    void SetSound(bool on) { m_sound = on; }
    QLineEdit* Edit() const { return m_edit; }

private:
    void Clean()
    {
        const FilteredText filtered = Filter(m_edit->text(), m_previous, m_edit->cursorPosition());
        m_previous = filtered.text;
        if (filtered.refused)
            Refuse();
        if (filtered.text == m_edit->text())
            return;
        m_edit->setText(filtered.text);
        m_edit->setCursorPosition(filtered.caret);
    }

    QLineEdit* m_edit;
    QString m_previous;
    bool m_sound;
};

class NumberFilter : public TextFilter {
public:
    NumberFilter(QLineEdit* edit, const NumberRule& rule)
        : TextFilter(edit, rule.sound), m_rule(rule)
    {
        edit->installEventFilter(this);
    }

    void SetRule(const NumberRule& rule)
    {
        m_rule = rule;
        SetSound(rule.sound);
    }

private:
    FilteredText Filter(const QString& text, const QString& previous, int caret) const override
    {
        if (!DataTypes::IsNumber(m_rule.dataType))
            return {text, caret, false};
        return FilterNumberChange(text, previous, caret, m_rule.dataType, m_rule.minimum,
                                  m_rule.maximum);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress || !DataTypes::IsNumber(m_rule.dataType) ||
            Edit()->isReadOnly())
            return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
            return false;
        const QString typed = key->text();
        if (typed.isEmpty() || !typed[0].isPrint())
            return false;
        // A selection is replaced: what is typed lands where it begins.
        const int caret =
            Edit()->hasSelectedText() ? Edit()->selectionStart() : Edit()->cursorPosition();
        if (FilterNumberKey(typed[0], caret, m_rule.dataType, m_rule.minimum, m_rule.maximum))
            return false;
        Refuse();
        return true;
    }

    NumberRule m_rule;
};

class NameFilter : public TextFilter {
public:
    NameFilter(QLineEdit* edit, NameRule rule, bool sound) : TextFilter(edit, sound), m_rule(rule)
    {}

private:
    FilteredText Filter(const QString& text, const QString& previous, int caret) const override
    {
        return FilterNameKey(text, previous, caret, m_rule);
    }

    NameRule m_rule;
};

class FileNameFilter : public TextFilter {
public:
    using TextFilter::TextFilter;

private:
    FilteredText Filter(const QString& text, const QString&, int caret) const override
    {
        return FilterFileNameInput(text, caret, 1);
    }
};

} // namespace

void AttachNumberFilter(QLineEdit* edit, const NumberRule& rule)
{
    for (QObject* child : edit->children()) {
        if (auto* filter = dynamic_cast<NumberFilter*>(child)) {
            filter->SetRule(rule);
            return;
        }
    }
    new NumberFilter(edit, rule);
}

void AttachNameFilter(QLineEdit* edit, NameRule rule, bool sound)
{
    new NameFilter(edit, rule, sound);
}

void AttachFileNameFilter(QLineEdit* edit, bool sound)
{
    new FileNameFilter(edit, sound);
}

int FindComboIndexByText(const QString& text, const QComboBox& box)
{
    QStringList items;
    for (int i = 0; i < box.count(); ++i)
        items.append(box.itemText(i));
    return FindIndexByText(text, items);
}

int FindComboIndexByItemData(const QVariant& value, const QComboBox& box)
{
    return value.isValid() ? box.findData(value) : -1;
}
