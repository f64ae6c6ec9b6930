#include "frame/ui/Chart.h"

#include "frame/ui/Colours.h"
#include "frame/ui/NumberPattern.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QClipboard>
#include <QPrintDialog>
#include <QPrinter>
#include <QVBoxLayout>

#include <cmath>

namespace {

/// Labels through a NumberPattern; the places as the base ticker chooses them.
template <typename Base>
class PatternTicker : public Base {
public:
    explicit PatternTicker(const QString& pattern) : m_pattern(pattern) {}

private:
    QString getTickLabel(double tick, const QLocale&, QChar, int) override
    {
        return m_pattern.Text(tick);
    }

    NumberPattern m_pattern;
};

/// Multiplying from label to label must not push the last one, which often is
/// the end of the axis, over that end.
class LogTicker : public PatternTicker<QCPAxisTickerLog> {
public:
    using PatternTicker::PatternTicker;

private:
    QVector<double> createTickVector(double step, const QCPRange& range) override
    {
        constexpr double kHair = 1e-9;
        QVector<double> ticks = PatternTicker::createTickVector(
            step, QCPRange(range.lower * (1 - kHair), range.upper * (1 + kHair)));
        for (double& tick : ticks) {
            if (std::abs(tick - range.upper) <= kHair * range.upper)
                tick = range.upper;
            else if (std::abs(tick - range.lower) <= kHair * range.lower)
                tick = range.lower;
        }
        return ticks;
    }
};

} // namespace

class Chart::Theme {
public:
    static Theme Paper() { return {Qt::white, Qt::black, QColor(0xC8, 0xC8, 0xC8)}; }
    static Theme Screen(const QPalette& palette)
    {
        const QColor background = palette.color(QPalette::Base);
        const QColor ink = palette.color(QPalette::Text);
        const auto mix = [](int a, int b) { return (3 * a + b) / 4; };
        return {background, ink,
                QColor(mix(background.red(), ink.red()), mix(background.green(), ink.green()),
                       mix(background.blue(), ink.blue()))};
    }

    QColor background;
    QColor ink;
    QColor gridLines;
};

Chart::Chart(QWidget* parent) : QWidget(parent), m_plot(new QCustomPlot(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_plot);
    m_plot->setMinimumSize(60, 40);
    m_plot->axisRect()->setupFullAxesBox();
    m_plot->xAxis2->setTickLabels(false);
    m_plot->yAxis2->setTickLabels(false);
    setFocusPolicy(Qt::NoFocus);
    connect(m_plot, &QCustomPlot::mouseDoubleClick, this, [this] { Changed(); });
    connect(m_plot, &QCustomPlot::beforeReplot, this, [this] { UpdateRanges(); });
    ApplyTicker(Axis::Bottom);
    ApplyTicker(Axis::Left);
    ApplyTheme(Theme::Screen(palette()));
}

Chart::~Chart() = default;

void Chart::AddSeries(const QString& title, const QList<QPointF>& points, const Style& style)
{
    auto* curve = new QCPCurve(m_plot->xAxis, m_plot->yAxis);
    curve->setName(title);
    if (style.showPoints)
        curve->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 5));
    m_series.append({title, {}, style, curve});
    Series& series = m_series.last();
    series.points = points;
    QVector<double> t(points.size()), x(points.size()), y(points.size());
    for (qsizetype i = 0; i < points.size(); ++i) {
        t[i] = static_cast<double>(i);
        x[i] = points[i].x();
        y[i] = points[i].y();
    }
    curve->setData(t, x, y, true);
    ApplyTheme(Theme::Screen(palette()));
    Changed();
}

void Chart::AddPoint(const QString& title, QPointF point)
{
    for (Series& series : m_series) {
        if (series.title != title)
            continue;
        series.curve->addData(static_cast<double>(series.points.size()), point.x(), point.y());
        series.points.append(point);
        Changed();
        return;
    }
}

void Chart::RemoveAllSeries()
{
    RemoveAllSeriesWithName(QString());
}

void Chart::RemoveAllSeriesWithName(const QString& prefix)
{
    for (qsizetype i = m_series.size() - 1; i >= 0; --i) {
        if (m_series[i].title.startsWith(prefix, Qt::CaseInsensitive)) {
            m_plot->removePlottable(m_series[i].curve);
            m_series.removeAt(i);
        }
    }
    Changed();
}

QStringList Chart::SeriesTitles() const
{
    QStringList titles;
    for (const Series& series : m_series)
        titles.append(series.title);
    return titles;
}

QList<QPointF> Chart::Points(const QString& title) const
{
    for (const Series& series : m_series) {
        if (series.title == title)
            return series.points;
    }
    return {};
}

void Chart::setHeading(const QStringList& lines)
{
    m_heading = lines;
    if (lines.isEmpty()) {
        if (m_headingElement) {
            m_plot->plotLayout()->remove(m_headingElement);
            m_plot->plotLayout()->simplify();
            m_headingElement = nullptr;
        }
    } else {
        if (!m_headingElement) {
            m_headingElement = new QCPTextElement(m_plot);
            m_plot->plotLayout()->insertRow(0);
            m_plot->plotLayout()->addElement(0, 0, m_headingElement);
        }
        m_headingElement->setText(lines.join('\n'));
        QFont heading = font();
        heading.setBold(true);
        m_headingElement->setFont(heading);
    }
    ApplyTheme(Theme::Screen(palette()));
    Changed();
}

void Chart::setAxisTitle(Axis axis, const QString& text)
{
    Of(axis)->setLabel(text);
    Changed();
}

QString Chart::AxisTitle(Axis axis) const
{
    return Of(axis)->label();
}

bool Chart::setAxisRange(Axis axis, double lower, double upper)
{
    if (!(lower < upper) || !std::isfinite(lower) || !std::isfinite(upper))
        return false;
    if (IsLogarithmic(axis) && lower <= 0)
        return false;
    State(axis).fixed = Range{lower, upper};
    Changed();
    return true;
}

void Chart::setAxisAutomatic(Axis axis)
{
    State(axis).fixed.reset();
    Changed();
}

Chart::Range Chart::AxisRange(Axis axis) const
{
    UpdateRanges();
    const QCPRange range = Of(axis)->range();
    return {range.lower, range.upper};
}

void Chart::setLogarithmic(Axis axis, bool on)
{
    Of(axis)->setScaleType(on ? QCPAxis::stLogarithmic : QCPAxis::stLinear);
    if (on && State(axis).fixed && State(axis).fixed->lower <= 0)
        State(axis).fixed.reset();
    ApplyTicker(axis);
    Changed();
}

bool Chart::IsLogarithmic(Axis axis) const
{
    return Of(axis)->scaleType() == QCPAxis::stLogarithmic;
}

void Chart::setLabelFormat(Axis axis, const QString& pattern)
{
    State(axis).pattern = pattern;
    ApplyTicker(axis);
    Changed();
}

void Chart::setStep(Axis axis, std::optional<double> step)
{
    State(axis).step = step;
    ApplyTicker(axis);
    Changed();
}

QString Chart::LabelText(Axis axis, double value) const
{
    return NumberPattern(State(axis).pattern).Text(value);
}

void Chart::KeepAspectRatio()
{
    UpdateRanges();
    const QCPRange x = m_plot->xAxis->range();
    const QCPRange y = m_plot->yAxis->range();
    const double xPixels = m_plot->axisRect()->width();
    const double yPixels = m_plot->axisRect()->height();
    if (isVisible() && xPixels >= 1 && yPixels >= 1) {
        const double xUnit = x.size() / xPixels;
        const double yUnit = y.size() / yPixels;
        if (xUnit < yUnit) {
            const double surplus = xPixels * yUnit - x.size();
            setAxisRange(Axis::Bottom, x.lower - surplus / 2, x.upper + surplus / 2);
        } else {
            const double surplus = yPixels * xUnit - y.size();
            setAxisRange(Axis::Left, y.lower - surplus / 2, y.upper + surplus / 2);
        }
    }
    Repaint();
}

void Chart::setZoomAndPan(bool zoom, bool pan)
{
    QCP::Interactions interactions;
    interactions.setFlag(QCP::iRangeZoom, zoom);
    interactions.setFlag(QCP::iRangeDrag, pan);
    m_plot->setInteractions(interactions);
}

void Chart::Repaint()
{
    m_plot->replot();
}

QImage Chart::Picture(QSize size, double scale) const
{
    ApplyTheme(Theme::Paper());
    QImage picture = m_plot->toPixmap(size.width(), size.height(), scale).toImage();
    ApplyTheme(Theme::Screen(palette()));
    m_plot->replot(QCustomPlot::rpQueuedReplot);
    return picture;
}

void Chart::CopyToClipboard() const
{
    QApplication::clipboard()->setImage(Picture(size()));
}

bool Chart::Print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    PrintOn(printer);
    return true;
}

void Chart::PrintOn(QPrinter& printer) const
{
    QCPPainter painter;
    if (!painter.begin(&printer))
        return;
    // The chart is laid out in screen pixels and scaled to the page as lines
    // and text, not as a picture.
    const QRect page = painter.viewport();
    const QSize shown = size().expandedTo(QSize(200, 120));
    const double factor =
        qMin(page.width() / double(shown.width()), page.height() / double(shown.height()));
    painter.scale(factor, factor);
    painter.setMode(QCPPainter::pmVectorized);
    painter.setMode(QCPPainter::pmNoCaching);
    ApplyTheme(Theme::Paper());
    m_plot->toPainter(&painter, shown.width(), shown.height());
    ApplyTheme(Theme::Screen(palette()));
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}

bool Chart::ExportPdf(const QString& path) const
{
    ApplyTheme(Theme::Paper());
    const bool written = m_plot->savePdf(path, width(), height());
    ApplyTheme(Theme::Screen(palette()));
    m_plot->replot(QCustomPlot::rpQueuedReplot);
    return written;
}

void Chart::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        ApplyTheme(Theme::Screen(palette()));
        Changed();
    }
    QWidget::changeEvent(event);
}

QCPAxis* Chart::Of(Axis axis) const
{
    return axis == Axis::Bottom ? m_plot->xAxis : m_plot->yAxis;
}

void Chart::ApplyTheme(const Theme& theme) const
{
    m_plot->setBackground(QBrush(theme.background));
    for (QCPAxis* axis : m_plot->axisRect()->axes()) {
        axis->setBasePen(QPen(theme.ink));
        axis->setTickPen(QPen(theme.ink));
        axis->setSubTickPen(QPen(theme.ink));
        axis->setTickLabelColor(theme.ink);
        axis->setLabelColor(theme.ink);
        axis->setTickLabelFont(font());
        axis->setLabelFont(font());
        axis->grid()->setPen(QPen(theme.gridLines, 0, Qt::DotLine));
        axis->grid()->setZeroLinePen(QPen(theme.gridLines));
    }
    if (m_headingElement)
        m_headingElement->setTextColor(theme.ink);
    for (const Series& series : m_series) {
        QPen pen(VisibleOn(theme.background, series.style.colour), series.style.width);
        pen.setCapStyle(Qt::RoundCap);
        pen.setJoinStyle(Qt::RoundJoin);
        series.curve->setPen(pen);
    }
}

void Chart::ApplyRange(Axis axis) const
{
    QCPAxis* target = Of(axis);
    if (const auto& fixed = State(axis).fixed) {
        target->setRange(fixed->lower, fixed->upper);
        return;
    }
    const bool logarithmic = target->scaleType() == QCPAxis::stLogarithmic;
    bool any = false;
    double lower = 0;
    double upper = 0;
    for (const Series& series : m_series) {
        for (const QPointF& point : series.points) {
            const double value = axis == Axis::Bottom ? point.x() : point.y();
            if (!std::isfinite(value) || (logarithmic && value <= 0))
                continue;
            lower = any ? qMin(lower, value) : value;
            upper = any ? qMax(upper, value) : value;
            any = true;
        }
    }
    if (!any) {
        target->setRange(logarithmic ? 1 : 0, logarithmic ? 10 : 1);
    } else if (logarithmic) {
        target->setRange(lower / 1.1, upper * 1.1);
    } else {
        const double margin = upper > lower ? (upper - lower) * 0.05 : 0.5;
        target->setRange(lower - margin, upper + margin);
    }
}

void Chart::ApplyTicker(Axis axis)
{
    const AxisState& state = State(axis);
    QSharedPointer<QCPAxisTicker> ticker;
    if (IsLogarithmic(axis)) {
        ticker.reset(new LogTicker(state.pattern));
    } else if (state.step && *state.step > 0) {
        auto fixed = QSharedPointer<PatternTicker<QCPAxisTickerFixed>>::create(state.pattern);
        fixed->setTickStep(*state.step);
        ticker = fixed;
    } else {
        ticker.reset(new PatternTicker<QCPAxisTicker>(state.pattern));
    }
    Of(axis)->setTicker(ticker);
    (axis == Axis::Bottom ? m_plot->xAxis2 : m_plot->yAxis2)->setTicker(ticker);
}

void Chart::UpdateRanges() const
{
    if (m_rangesStale) {
        m_rangesStale = false;
        ApplyRange(Axis::Bottom);
        ApplyRange(Axis::Left);
    }
    m_plot->xAxis2->setScaleType(m_plot->xAxis->scaleType());
    m_plot->yAxis2->setScaleType(m_plot->yAxis->scaleType());
    m_plot->xAxis2->setRange(m_plot->xAxis->range());
    m_plot->yAxis2->setRange(m_plot->yAxis->range());
}

void Chart::Changed()
{
    m_rangesStale = true;
    m_plot->replot(QCustomPlot::rpQueuedReplot);
}
