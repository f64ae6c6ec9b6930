#include "frame/ui/FileBox.h"

#include "frame/Paths.h"
#include "frame/ui/FileDialogs.h"
#include "frame/ui/FocusHold.h"
#include "frame/ui/FormUnits.h"
#include "frame/ui/MessageBoxes.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {
constexpr int kGap = 6; // pixels between the parts
} // namespace

FileBox::FileBox(QWidget* parent)
    : QWidget(parent),
      m_caption(new QLabel(this)),
      m_edit(new QLineEdit(this)),
      m_button(new QPushButton("...", this))
{
    m_caption->setBuddy(m_button);
    m_button->setAutoDefault(false);
    setFocusProxy(m_edit);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_edit->installEventFilter(this);
    m_button->installEventFilter(this);
    connect(m_edit, &QLineEdit::textChanged, this, &FileBox::Change);
    connect(m_button, &QPushButton::clicked, this, [this] { RunHandler([this] { Browse(); }); });
}

QString FileBox::Caption() const
{
    return m_caption->text();
}

void FileBox::setCaption(const QString& text)
{
    m_caption->setText(text);
    m_button->setAccessibleName(text);
    Arrange();
}

QString FileBox::text() const
{
    return m_edit->text();
}

void FileBox::setText(const QString& text)
{
    m_edit->setText(text);
}

bool FileBox::TextboxLocked() const
{
    return m_edit->isReadOnly();
}

void FileBox::setTextboxLocked(bool on)
{
    m_edit->setReadOnly(on);
}

bool FileBox::BorderStyle() const
{
    return m_edit->hasFrame();
}

void FileBox::setBorderStyle(bool on)
{
    m_edit->setFrame(on);
}

QColor FileBox::BackColor() const
{
    return m_edit->palette().color(QPalette::Base);
}

void FileBox::setBackColor(const QColor& colour)
{
    QPalette own = m_edit->palette();
    own.setColor(QPalette::Base, colour);
    m_edit->setPalette(own);
}

QColor FileBox::ForeColor() const
{
    return m_edit->palette().color(QPalette::Text);
}

void FileBox::setForeColor(const QColor& colour)
{
    QPalette own = m_edit->palette();
    own.setColor(QPalette::Text, colour);
    m_edit->setPalette(own);
}

void FileBox::setLeftTextBox(int twips)
{
    m_leftTextBox = twips;
    Arrange();
}

QString FileBox::TooltipTextbox() const
{
    return m_edit->toolTip();
}

void FileBox::setTooltipTextbox(const QString& text)
{
    m_edit->setToolTip(text);
}

QString FileBox::TooltipCommandButton() const
{
    return m_button->toolTip();
}

void FileBox::setTooltipCommandButton(const QString& text)
{
    m_button->setToolTip(text);
}

void FileBox::Browse()
{
    FileRequest request;
    request.title = m_dialogTitle;
    request.filters = m_filters;
    request.initialFolder = m_initialDir;
    request.open = m_openDialog;
    request.fileMustExist = m_fileMustExist;
    request.centreOnScreen = m_dialogPosition != 0;
    const QString name = ChooseFile(window(), request).trimmed();
    if (!name.isEmpty())
        m_edit->setText(m_relative ? RelativeToFolder(name, m_basePath) : UncToDrive(name));
    m_edit->selectAll();
}

int FileBox::BoxLeft() const
{
    const int caption = m_caption->text().isEmpty() ? 0 : m_caption->sizeHint().width() + kGap;
    return qMax(TwipsToPixels(m_leftTextBox), caption);
}

QSize FileBox::sizeHint() const
{
    const QSize edit = m_edit->sizeHint();
    return {BoxLeft() + 2 * edit.width() + kGap + 2 * edit.height(), edit.height()};
}

QSize FileBox::minimumSizeHint() const
{
    const QSize edit = m_edit->sizeHint();
    return {BoxLeft() + edit.width() + kGap + 2 * edit.height(), edit.height()};
}

void FileBox::Arrange()
{
    const int left = BoxLeft();
    const int boxHeight = qMin(height(), m_edit->sizeHint().height());
    const int top = (height() - boxHeight) / 2;
    const int buttonWidth = boxHeight * 3 / 2;
    m_caption->setGeometry(0, 0, left, height());
    m_edit->setGeometry(left, top, qMax(0, width() - left - kGap - buttonWidth), boxHeight);
    m_button->setGeometry(width() - buttonWidth, top, buttonWidth, boxHeight);
    updateGeometry();
}

void FileBox::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    Arrange();
}

void FileBox::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        Arrange();
}

bool FileBox::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut &&
        LeavesControl(static_cast<QFocusEvent*>(event)->reason())) {
        const QWidget* next = QApplication::focusWidget();
        if (!next || !isAncestorOf(next))
            emit Left();
    }
    return QWidget::eventFilter(watched, event);
}
