#include "frame/ui/LbnBox.h"

#include "frame/ui/FormUnits.h"

#include <QEvent>
#include <QLabel>

namespace {
constexpr int kGap = 6; // pixels between the captions and the box
} // namespace

LbnBox::LbnBox(QWidget* parent)
    : QWidget(parent), m_left(new QLabel(this)), m_box(new NumBox(this)), m_right(new QLabel(this))
{
    m_left->setBuddy(m_box);
    setFocusProxy(m_box);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(m_box, &NumBox::Change, this, &LbnBox::Change);
}

QString LbnBox::CaptionLeft() const
{
    return m_left->text();
}

void LbnBox::setCaptionLeft(const QString& text)
{
    m_left->setText(text);
    Arrange();
}

QString LbnBox::CaptionRight() const
{
    return m_right->text();
}

void LbnBox::setCaptionRight(const QString& text)
{
    m_right->setText(text);
    Arrange();
}

void LbnBox::setLeftTextBox(int twips)
{
    m_leftTextBox = twips;
    Arrange();
}

void LbnBox::setWidthTextBox(int twips)
{
    m_widthTextBox = twips;
    Arrange();
}

int LbnBox::BoxLeft() const
{
    const int caption = m_left->text().isEmpty() ? 0 : m_left->sizeHint().width() + kGap;
    return qMax(TwipsToPixels(m_leftTextBox), caption);
}

int LbnBox::BoxWidth() const
{
    return qMax(TwipsToPixels(m_widthTextBox), fontMetrics().horizontalAdvance("00000") + 10);
}

QSize LbnBox::sizeHint() const
{
    const int unit = m_right->text().isEmpty() ? 0 : kGap + m_right->sizeHint().width();
    return {BoxLeft() + BoxWidth() + unit, m_box->sizeHint().height()};
}

void LbnBox::Arrange()
{
    const int left = BoxLeft();
    const int width = BoxWidth();
    m_left->setGeometry(0, 0, left, height());
    const int boxHeight = qMin(height(), m_box->sizeHint().height());
    m_box->setGeometry(left, (height() - boxHeight) / 2, width, boxHeight);
    m_right->setGeometry(left + width + kGap, 0, qMax(0, this->width() - left - width - kGap),
                         height());
    updateGeometry();
}

void LbnBox::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    Arrange();
}

void LbnBox::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        Arrange();
}
