#include "calculation/ui/frmLog.h"

#include "frame/Globals.h"
#include "frame/Paths.h"
#include "frame/Texts.h"
#include "frame/ui/MessageBoxes.h"
#include "frame/ui/TranslateForm.h"
#include "ui_frmLog.h"

#include <QFontDatabase>
#include <QLocale>
#include <QScrollBar>

namespace {

std::unique_ptr<Ui::frmLog> SetUp(QWidget* form)
{
    auto ui = std::make_unique<Ui::frmLog>();
    ui->setupUi(form);
    return ui;
}

} // namespace

frmLog::frmLog(QWidget* parent)
    : QWidget(parent),
      m_ui(SetUp(this)),
      m_iniFile(AddBackslash(gIniPath()) + "Log.ini"),
      m_box(*this, m_ui->rtfLog)
{
    TranslateForm(*this, m_iniFile, gLanguage());
    m_ui->rtfLog->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->rtfLog->setAccessibleName(
        m_iniFile.GetString("Teksten" + gLanguage(), "rtfLog", "Uitvoer van de berekening"));
    m_ui->rtfLog->setPlaceholderText(m_iniFile.GetString("Teksten" + gLanguage(), "leeg"));
    // A log box cannot be selected in by keyboard unless it is told.
    m_ui->rtfLog->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    // The scroll bar itself is silent when a key scrolls the box. Queued: the box is
    // still busy scrolling when it says so.
    connect(
        m_ui->rtfLog, &QPlainTextEdit::updateRequest, this, [this] { ReadEarlier(); },
        Qt::QueuedConnection);
}

frmLog::~frmLog() = default;

void frmLog::ShowLogFile(const QString& path)
{
    RunHandler([&] {
        auto reader = std::make_unique<TailReader>(path);
        const QString text = reader->ReadLast(kChunk); // raises before anything changes
        m_box.SetText(text);
        m_reader = std::move(reader);
        ShowCaption();
    });
}

void frmLog::ClearLogWindow()
{
    m_box.Clear();
}

void frmLog::Forget()
{
    m_reader.reset();
    ShowCaption();
}

void frmLog::Sink::SetText(const QString& text)
{
    m_form.Forget();
    LogBox::SetText(text);
}

void frmLog::ReadEarlier()
{
    QScrollBar* bar = m_ui->rtfLog->verticalScrollBar();
    if (bar->value() > 0 || !m_reader || m_reader->AtStart())
        return;
    RunHandler([&] {
        const QString earlier = m_reader->ReadBefore(kChunk);
        const int lines = static_cast<int>(earlier.count('\n'));
        QTextCursor start(m_ui->rtfLog->document());
        start.movePosition(QTextCursor::Start);
        start.insertText(earlier);
        // What was the first line in view stays it.
        bar->setValue(lines);
        ShowCaption();
    });
}

void frmLog::ShowCaption()
{
    QString caption = m_reader ? m_reader->Path() : QString();
    if (m_reader && !m_reader->AtStart()) {
        const QLocale locale(QLocale::Dutch);
        caption = m_iniFile.GetString("Teksten" + gLanguage(), "deel", "Laatste %2 van %3: %1");
        FillPlaceholders(
            caption,
            {m_reader->Path(),
             locale.formattedDataSize(m_reader->BytesRead(), 0, QLocale::DataSizeTraditionalFormat),
             locale.formattedDataSize(m_reader->Size(), 0, QLocale::DataSizeTraditionalFormat)});
    }
    m_ui->lblBestand->setVisible(!caption.isEmpty());
    m_ui->lblBestand->setToolTip(caption);
    QLabel& label = *m_ui->lblBestand;
    const int room = label.contentsRect().width() - 2 * label.margin();
    label.setText(label.fontMetrics().elidedText(caption, Qt::ElideMiddle, room));
}

void frmLog::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layout()->activate(); // the label must know its new width
    ShowCaption();
}
