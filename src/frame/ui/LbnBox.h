#pragma once

#include "frame/ui/NumBox.h"

#include <QWidget>

class QLabel;

/// A NumBox with a caption to its left and a unit to its right. Usable in .ui
/// files by promotion of a QWidget; its properties are those of NumBox, and the
/// captions. The left caption's "&" leads to the box.
class LbnBox : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Qt::Alignment Alignment READ Alignment WRITE setAlignment)
    Q_PROPERTY(bool Appearance READ BorderStyle WRITE setBorderStyle)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(bool BorderStyle READ BorderStyle WRITE setBorderStyle)
    Q_PROPERTY(QString CaptionLeft READ CaptionLeft WRITE setCaptionLeft)
    Q_PROPERTY(QString CaptionRight READ CaptionRight WRITE setCaptionRight)
    Q_PROPERTY(int DataType READ DataType WRITE setDataType)
    Q_PROPERTY(bool Enabled READ isEnabled WRITE setEnabled)
    Q_PROPERTY(QFont Font READ font WRITE setFont)
    Q_PROPERTY(QColor ForeColor READ ForeColor WRITE setForeColor)
    Q_PROPERTY(int LeftTextBox READ LeftTextBox WRITE setLeftTextBox)
    Q_PROPERTY(bool Locked READ Locked WRITE setLocked)
    Q_PROPERTY(double MaximumValue READ MaximumValue WRITE setMaximumValue)
    Q_PROPERTY(int MaxLength READ MaxLength WRITE setMaxLength)
    Q_PROPERTY(bool MayBeEmpty READ MayBeEmpty WRITE setMayBeEmpty)
    Q_PROPERTY(QString MessageText READ MessageText WRITE setMessageText)
    Q_PROPERTY(double MinimumValue READ MinimumValue WRITE setMinimumValue)
    Q_PROPERTY(QString Name READ objectName)
    Q_PROPERTY(QString OldText READ OldText)
    Q_PROPERTY(bool RangeError READ RangeError)
    Q_PROPERTY(int SelLength READ SelLength WRITE setSelLength)
    Q_PROPERTY(int SelStart READ SelStart WRITE setSelStart)
    Q_PROPERTY(QString SelText READ SelText WRITE setSelText)
    Q_PROPERTY(bool Sound READ Sound WRITE setSound)
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(QString TTipText READ TTipText WRITE setTTipText)
    Q_PROPERTY(bool Validate READ Validate WRITE setValidate)
    Q_PROPERTY(int WidthTextBox READ WidthTextBox WRITE setWidthTextBox)

public:
    explicit LbnBox(QWidget* parent = nullptr);

    /// The text box inside.
    NumBox* Box() const { return m_box; }

    QString CaptionLeft() const;
    void setCaptionLeft(const QString& text);
    QString CaptionRight() const;
    void setCaptionRight(const QString& text);
    /// In twips. A caption that needs more room gets it; 0 leaves the place to the caption.
    int LeftTextBox() const { return m_leftTextBox; }
    void setLeftTextBox(int twips);
    int WidthTextBox() const { return m_widthTextBox; }
    void setWidthTextBox(int twips);

    Qt::Alignment Alignment() const { return m_box->alignment(); }
    void setAlignment(Qt::Alignment alignment) { m_box->setAlignment(alignment); }
    bool BorderStyle() const { return m_box->hasFrame(); }
    void setBorderStyle(bool on) { m_box->setFrame(on); }
    QColor BackColor() const { return m_box->BackColor(); }
    void setBackColor(const QColor& colour) { m_box->setBackColor(colour); }
    QColor ForeColor() const { return m_box->ForeColor(); }
    void setForeColor(const QColor& colour) { m_box->setForeColor(colour); }
    int DataType() const { return m_box->DataType(); }
    void setDataType(int dataType) { m_box->setDataType(dataType); }
    bool Locked() const { return m_box->isReadOnly(); }
    void setLocked(bool on) { m_box->setReadOnly(on); }
    double MaximumValue() const { return m_box->MaximumValue(); }
    void setMaximumValue(double value) { m_box->setMaximumValue(value); }
    int MaxLength() const { return m_box->maxLength(); }
    void setMaxLength(int length) { m_box->setMaxLength(length); }
    bool MayBeEmpty() const { return m_box->MayBeEmpty(); }
    void setMayBeEmpty(bool on) { m_box->setMayBeEmpty(on); }
    QString MessageText() const { return m_box->MessageText(); }
    void setMessageText(const QString& text) { m_box->setMessageText(text); }
    double MinimumValue() const { return m_box->MinimumValue(); }
    void setMinimumValue(double value) { m_box->setMinimumValue(value); }
    QString OldText() const { return m_box->OldText(); }
    bool RangeError() const { return m_box->RangeError(); }
    int SelLength() const { return m_box->SelLength(); }
    void setSelLength(int length) { m_box->setSelLength(length); }
    int SelStart() const { return m_box->SelStart(); }
    void setSelStart(int start) { m_box->setSelStart(start); }
    QString SelText() const { return m_box->selectedText(); }
    void setSelText(const QString& text) { m_box->setSelText(text); }
    bool Sound() const { return m_box->Sound(); }
    void setSound(bool on) { m_box->setSound(on); }
    QString text() const { return m_box->text(); }
    void setText(const QString& text) { m_box->setText(text); }
    QString TTipText() const { return m_box->toolTip(); }
    void setTTipText(const QString& text) { m_box->setToolTip(text); }
    bool Validate() const { return m_box->Validate(); }
    void setValidate(bool on) { m_box->setValidate(on); }

    void AddControl(QWidget* control) { m_box->AddControl(control); }
    void ClearControls() { m_box->ClearControls(); }
    bool IsUsable() const { return m_box->IsUsable(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    void Change();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int BoxLeft() const;
    int BoxWidth() const;
    void Arrange();

    QLabel* m_left;
    NumBox* m_box;
    QLabel* m_right;
    int m_leftTextBox = 0;
    int m_widthTextBox = 1050;
};
