#include "frame/ui/frmMemo.h"

#include "frame/Globals.h"
#include "frame/Windows1252.h"
#include "ui_frmMemo.h"

#include <QApplication>

namespace {

/// What the code page of all our files lacks does not get in.
void DropUnstorable(QPlainTextEdit& box)
{
    QString text = box.toPlainText();
    if (FitsWindows1252(text))
        return;
    for (QTextCursor at(box.document()); !at.atEnd();) {
        const QChar character = box.document()->characterAt(at.position());
        if (character == QChar::ParagraphSeparator || FitsWindows1252(QStringView(&character, 1)))
            at.movePosition(QTextCursor::NextCharacter);
        else
            at.deleteChar();
    }
    QApplication::beep();
}

} // namespace

frmMemo::frmMemo(QWidget* parent)
    : IniDialog("Memo.ini", parent), m_ui(std::make_unique<Ui::frmMemo>())
{
    m_ui->setupUi(this);
    LoadForm();
    m_ui->txtMemo->setAccessibleName(
        iniFile().GetString("Teksten" + gLanguage(), "txtMemo", "Memo"));
    connect(m_ui->txtMemo, &QPlainTextEdit::textChanged, this,
            [this] { DropUnstorable(*m_ui->txtMemo); });
    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] {
        m_memo = m_ui->txtMemo->toPlainText().replace('\n', "\r\n");
        CloseOK();
    });
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

frmMemo::~frmMemo() = default;

void frmMemo::SetMemo(const QString& text)
{
    m_memo = text;
    m_ui->txtMemo->setPlainText(text);
}

void frmMemo::done(int result)
{
    if (result != Accepted)
        m_ui->txtMemo->setPlainText(m_memo);
    IniDialog::done(result);
}
