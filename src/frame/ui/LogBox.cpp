#include "frame/ui/LogBox.h"

#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextCursor>

LogBox::LogBox(QPlainTextEdit* box) : m_box(box)
{
    box->setReadOnly(true);
    box->setUndoRedoEnabled(false);
    box->setLineWrapMode(QPlainTextEdit::NoWrap);
}

QString LogBox::Text() const
{
    return m_box ? m_box->toPlainText().replace('\n', "\r\n") : QString();
}

void LogBox::SetText(const QString& text)
{
    if (!m_box)
        return;
    m_box->setPlainText(text);
    ShowEnd();
}

void LogBox::Append(const QString& text)
{
    if (!m_box)
        return;
    QTextCursor end(m_box->document());
    end.movePosition(QTextCursor::End);
    QString lines = text;
    end.insertText(lines.replace("\r\n", "\n"));
    ShowEnd();
}

void LogBox::Refresh()
{
    if (m_box)
        m_box->viewport()->repaint();
}

void LogBox::ShowEnd()
{
    m_box->moveCursor(QTextCursor::End);
    m_box->verticalScrollBar()->setValue(m_box->verticalScrollBar()->maximum());
    m_box->horizontalScrollBar()->setValue(0);
}
