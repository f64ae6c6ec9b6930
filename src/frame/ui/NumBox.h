#pragma once

#include "frame/InputFilters.h"

#include <QLineEdit>
#include <QPointer>

/// The text box through which every number of the user goes: keys that the
/// data type does not know are refused, and a value outside its range keeps the
/// focus. Usable in .ui files by promotion of a QLineEdit.
///
/// `text` is what stands on the screen, with the system's decimal sign; setText
/// takes either sign. Towards files the caller uses Convert::NumPoint.
/// A form can always be left through its cancel button, whatever stands here.
class NumBox : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(Qt::Alignment Alignment READ alignment WRITE setAlignment)
    Q_PROPERTY(bool Appearance READ hasFrame WRITE setFrame)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(bool BorderStyle READ hasFrame WRITE setFrame)
    Q_PROPERTY(int DataType READ DataType WRITE setDataType)
    Q_PROPERTY(bool Enabled READ isEnabled WRITE setEnabled)
    Q_PROPERTY(QFont Font READ font WRITE setFont)
    Q_PROPERTY(QColor ForeColor READ ForeColor WRITE setForeColor)
    Q_PROPERTY(bool Locked READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(double MaximumValue READ MaximumValue WRITE setMaximumValue)
    Q_PROPERTY(int MaxLength READ maxLength WRITE setMaxLength)
    Q_PROPERTY(bool MayBeEmpty READ MayBeEmpty WRITE setMayBeEmpty)
    Q_PROPERTY(QString MessageText READ MessageText WRITE setMessageText)
    Q_PROPERTY(double MinimumValue READ MinimumValue WRITE setMinimumValue)
    Q_PROPERTY(QString Name READ objectName)
    Q_PROPERTY(QString OldText READ OldText)
    Q_PROPERTY(bool RangeError READ RangeError)
    Q_PROPERTY(int SelLength READ SelLength WRITE setSelLength)
    Q_PROPERTY(int SelStart READ SelStart WRITE setSelStart)
    Q_PROPERTY(QString SelText READ selectedText WRITE setSelText)
    Q_PROPERTY(bool Sound READ Sound WRITE setSound)
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(QString TTipText READ toolTip WRITE setToolTip)
    Q_PROPERTY(bool Validate READ Validate WRITE setValidate)

public:
    explicit NumBox(QWidget* parent = nullptr);

    /// See DataTypes; any other number makes it a box for plain text.
    int DataType() const { return m_dataType; }
    void setDataType(int dataType);
    /// Both 0 means no range, and is the default.
    double MinimumValue() const { return m_minimum; }
    void setMinimumValue(double value);
    double MaximumValue() const { return m_maximum; }
    void setMaximumValue(double value);
    bool MayBeEmpty() const { return m_mayBeEmpty; }
    void setMayBeEmpty(bool on) { m_mayBeEmpty = on; }
    /// Stands between the bounds in the box that refuses a value; without it
    /// there is a beep only.
    const QString& MessageText() const { return m_messageText; }
    void setMessageText(const QString& text) { m_messageText = text; }
    /// Whether refused input beeps.
    bool Sound() const { return m_sound; }
    void setSound(bool on);
    /// Whether a bad value keeps the focus here.
    bool Validate() const { return m_validate; }
    void setValidate(bool on) { m_validate = on; }

    /// Hides QLineEdit's, to bring the system's decimal sign in.
    void setText(const QString& text);
    /// The text when the control was entered; Escape brings it back.
    const QString& OldText() const { return m_oldText; }
    /// What the last check said.
    bool RangeError() const { return m_rangeError; }

    int SelStart() const { return hasSelectedText() ? selectionStart() : cursorPosition(); }
    void setSelStart(int start) { setCursorPosition(start); }
    int SelLength() const { return static_cast<int>(selectedText().size()); }
    void setSelLength(int length) { setSelection(SelStart(), length); }
    void setSelText(const QString& text) { insert(text); }
    QColor BackColor() const { return palette().color(QPalette::Base); }
    void setBackColor(const QColor& colour);
    QColor ForeColor() const { return palette().color(QPalette::Text); }
    void setForeColor(const QColor& colour);

    /// Controls that depend on the value: a button, NumBox or LbnBox is enabled
    /// while the value is usable; of a QTabWidget those pages are shown and
    /// enabled whose dynamic property `tag` is a number up to the value.
    void AddControl(QWidget* control);
    void ClearControls() { m_controls.clear(); }
    /// Not empty and within the bounds.
    bool IsUsable() const;
    /// The check of leaving the box, for what is done without leaving it: Enter,
    /// and a button's letter. False when the value was refused (and shown).
    bool CheckNow();

signals:
    /// The text changed, by whomever; what the filters refuse never gets here.
    void Change();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void ApplyRule();
    void UpdateControls();
    /// False when the value was refused and the focus is held here.
    bool CheckLeaving(Qt::FocusReason reason);

    QList<QPointer<QWidget>> m_controls;
    QString m_messageText;
    QString m_oldText;
    double m_minimum = 0;
    double m_maximum = 0;
    int m_dataType = DataTypes::Double;
    bool m_mayBeEmpty = false;
    bool m_sound = true;
    bool m_validate = true;
    bool m_rangeError = false;
    bool m_checking = false;        // the box of a refused value is open
    bool m_selectOnRelease = false; // entered with the mouse
};
