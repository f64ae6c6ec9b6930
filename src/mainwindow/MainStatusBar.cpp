#include "mainwindow/MainStatusBar.h"

#include <QLabel>
#include <QProgressBar>

namespace {

constexpr int kMargin = 4; // in line with the texts of the panes above

} // namespace

MainStatusBar::MainStatusBar(QStatusBar& bar)
    : m_text(new QLabel(&bar)), m_coordinates(new QLabel(&bar)), m_progress(new QProgressBar(&bar))
{
    m_text->setTextFormat(Qt::PlainText);
    // A long text must not widen the window.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_coordinates->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    // Wide enough for any place, so that nothing moves with the mouse.
    m_coordinates->setMinimumWidth(
        m_coordinates->fontMetrics().horizontalAdvance("x = -0000000, y = -0000000"));
    m_progress->setMaximumWidth(180);
    m_progress->setTextVisible(false);
    bar.setContentsMargins(kMargin, 0, 0, 0);
    bar.addWidget(m_text, 1);
    bar.addPermanentWidget(m_progress);
    bar.addPermanentWidget(m_coordinates);
    m_progress->hide();
}

void MainStatusBar::ShowCoordinates(const QString& text)
{
    m_coordinates->setText(text);
}

void MainStatusBar::ShowProgress(int maximum)
{
    m_progress->setRange(0, maximum);
    m_progress->setValue(0);
    m_progress->show();
}

void MainStatusBar::SetProgress(int value)
{
    m_progress->setValue(value);
}

void MainStatusBar::HideProgress()
{
    m_progress->hide();
}

QString MainStatusBar::StatusText() const
{
    return m_text->text();
}

void MainStatusBar::ShowStatusText(const QString& text)
{
    m_text->setText(text);
    m_text->repaint(); // long work follows, without the message loop
}
