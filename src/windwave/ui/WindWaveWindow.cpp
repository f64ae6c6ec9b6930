#include "windwave/ui/WindWaveWindow.h"

#include "ui_WindWaveWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>
#include <QPalette>

namespace {

// Told apart without full colour vision; named in the texts in this order.
const QColor kModelColours[] = {QColor(0x1f, 0x4e, 0x9c), QColor(0xd5, 0x5e, 0x00),
                                QColor(0x00, 0x8a, 0x5c)};
constexpr double kLineWidth = 2;

/// For a narrow column: a name of two people on two lines.
QString BrokenName(QString name)
{
    return name.replace(QStringLiteral(" en "), QStringLiteral(" en|"))
        .replace(QStringLiteral(" and "), QStringLiteral(" and|"));
}

} // namespace

WindWaveWindow::WindWaveWindow(const QString& language, const QString& models, QWidget* parent)
    : QWidget(parent),
      m_ui(std::make_unique<Ui::WindWaveWindow>()),
      m_dutch(IsDutch(language)),
      m_texts(WindWaveTexts::Of(language)),
      m_models(ModelsOfLetters(models.toStdString()))
{
    m_ui->setupUi(this);
    m_ui->splitter->setSizes({12500, 9000}); // only the proportion counts
    ShowTexts();
    for (QDoubleSpinBox* box : {m_ui->spinWind, m_ui->spinFetch, m_ui->spinDepth})
        connect(box, &QDoubleSpinBox::valueChanged, this, &WindWaveWindow::Recalculate);
    connect(m_ui->optHeight, &QRadioButton::toggled, this, &WindWaveWindow::FillChart);
    connect(m_ui->cmdCopyTable, &QPushButton::clicked, this, &WindWaveWindow::CopyTable);
    connect(m_ui->cmdCopyChart, &QPushButton::clicked, m_ui->chart, &Chart::CopyToClipboard);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &QWidget::close);
    Recalculate();
}

WindWaveWindow::~WindWaveWindow() = default;

void WindWaveWindow::ShowTexts()
{
    setWindowTitle(m_texts.title);
    m_ui->lblWind->setText(m_texts.wind);
    m_ui->lblFetch->setText(m_texts.fetch);
    m_ui->lblDepth->setText(m_texts.depth);
    m_ui->lblNote->setText(m_texts.note);
    m_ui->optHeight->setText(m_texts.height);
    m_ui->optPeriod->setText(m_texts.period);
    m_ui->cmdCopyTable->setText(m_texts.copyTable);
    m_ui->cmdCopyChart->setText(m_texts.copyChart);
    m_ui->cmdClose->setText(m_texts.close);

    QStringList headers{
        QString(m_texts.windAxis).replace(QStringLiteral(" ["), QStringLiteral("|["))};
    for (const auto model : m_models)
        for (const QString& quantity : {m_texts.heightAxis, m_texts.periodAxis})
            headers << BrokenName(ModelName(model, m_dutch)) + QLatin1Char('|') + quantity;
    m_ui->grid->setHeaders(headers);
    for (int column = 0; column < headers.size(); ++column)
        m_ui->grid->setColumnAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    m_ui->chart->setAxisTitle(Chart::Axis::Bottom, m_texts.windAxis);
}

WindWaveInput WindWaveWindow::Input() const
{
    return {m_ui->spinWind->value(), m_ui->spinFetch->value(), m_ui->spinDepth->value()};
}

QString WindWaveWindow::Number(double value, int decimals) const
{
    QLocale plain = m_ui->spinWind->locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    return plain.toString(value, 'f', decimals);
}

void WindWaveWindow::Recalculate()
{
    m_rows = MakeWindWaveTable(Input(), m_models);
    FillTable();
    FillChart();
}

void WindWaveWindow::FillTable()
{
    m_ui->grid->ClearRows();
    for (const WindWaveRow& row : m_rows) {
        QStringList cells{Number(row.wind, 1)};
        for (const rekenhart::Waves& waves : row.waves)
            cells << Number(waves.height, 2) << Number(waves.peakPeriod, 2);
        const int added = m_ui->grid->AddRow(cells);
        if (!row.isAsked)
            continue;
        for (int column = 0; column < cells.size(); ++column)
            m_ui->grid->setCellColour(added, column, palette().color(QPalette::Highlight));
        m_ui->grid->ShowRow(added);
    }
    m_ui->grid->resizeColumnsToContents();
}

void WindWaveWindow::FillChart()
{
    const bool height = m_ui->optHeight->isChecked();
    m_ui->chart->RemoveAllSeries();
    m_ui->chart->setAxisTitle(Chart::Axis::Left, height ? m_texts.heightAxis : m_texts.periodAxis);
    // The heading tells the colours, so that a copied chart explains itself too.
    QStringList legend;
    for (std::size_t i = 0; i < m_models.size(); ++i) {
        legend << m_texts.colours[static_cast<qsizetype>(i)] + QStringLiteral(": ") +
                      ModelName(m_models[i], m_dutch);
        QList<QPointF> points{{0, 0}};
        for (const WindWaveRow& row : m_rows)
            points << QPointF(row.wind, height ? row.waves[i].height : row.waves[i].peakPeriod);
        m_ui->chart->AddSeries(ModelName(m_models[i], m_dutch), points,
                               {kModelColours[i], kLineWidth, false});
    }
    m_ui->chart->setHeading(
        QStringList{m_texts.chartHeading.arg(Number(m_ui->spinFetch->value(), 0),
                                             Number(m_ui->spinDepth->value(), 2))} +
        legend);
}

void WindWaveWindow::CopyTable() const
{
    QStringList headers{m_texts.windAxis};
    for (const auto model : m_models)
        for (const QString& quantity : {m_texts.heightAxis, m_texts.periodAxis})
            headers << ModelName(model, m_dutch) + QLatin1Char(' ') + quantity;
    QGuiApplication::clipboard()->setText(headers.join(QLatin1Char('\t')) + QStringLiteral("\r\n") +
                                          m_ui->grid->AllText());
}
