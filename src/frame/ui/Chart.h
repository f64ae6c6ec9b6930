#pragma once

#include <QColor>
#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>

class QCPAxis;
class QCPCurve;
class QCPTextElement;
class QCustomPlot;
class QPrinter;

/// The chart of all forms: lines with a title each, two axes, a heading.
///
/// A series keeps its points in the order in which they were added, so a closed
/// shore line is as good as a function. Series are found by their titles;
/// several may carry the same one.
/// An axis is automatic (it shows all points, with a small margin) until a range
/// is set. Colours that would vanish in a dark window are lightened on the
/// screen; on paper and on the clipboard the chart is always drawn on white.
///
/// Usable in .ui files by promotion of a QWidget.
class Chart : public QWidget {
    Q_OBJECT

public:
    enum class Axis { Bottom, Left };

    struct Range {
        double lower = 0;
        double upper = 1;
    };

    struct Style {
        QColor colour = Qt::black;
        double width = 1; ///< pixels
        bool showPoints = false;
    };

    explicit Chart(QWidget* parent = nullptr);
    ~Chart() override;

    void AddSeries(const QString& title, const QList<QPointF>& points, const Style& style);
    void AddSeries(const QString& title, const QList<QPointF>& points)
    {
        AddSeries(title, points, Style());
    }
    /// Adds to the first series with this title; does nothing when there is none.
    void AddPoint(const QString& title, QPointF point);
    void RemoveAllSeries();
    /// Removes every series whose title begins with `prefix`, in any case.
    void RemoveAllSeriesWithName(const QString& prefix);
    int SeriesCount() const { return static_cast<int>(m_series.size()); }
    QStringList SeriesTitles() const;
    /// The points of the first series with this title.
    QList<QPointF> Points(const QString& title) const;

    /// Lines above the chart; none hides the heading.
    void setHeading(const QStringList& lines);
    QStringList Heading() const { return m_heading; }
    void setAxisTitle(Axis axis, const QString& text);
    QString AxisTitle(Axis axis) const;
    /// Fixes the axis. A range that is empty, turned round or (on a logarithmic
    /// axis) not positive is refused with false.
    bool setAxisRange(Axis axis, double lower, double upper);
    void setAxisAutomatic(Axis axis);
    Range AxisRange(Axis axis) const;
    void setLogarithmic(Axis axis, bool on);
    bool IsLogarithmic(Axis axis) const;
    /// See NumberPattern; "0.###" for example.
    void setLabelFormat(Axis axis, const QString& pattern);
    /// Distance between labels on a linear axis; nothing leaves it to the chart.
    void setStep(Axis axis, std::optional<double> step);
    /// The text that the axis writes at `value`.
    QString LabelText(Axis axis, double value) const;

    /// Widens one of the axes until a unit is as long on the bottom axis as on
    /// the left one. Without room to draw in, or while hidden, it only repaints.
    void KeepAspectRatio();

    /// Lets the user zoom with the wheel and, with `pan`, drag the picture. A
    /// double click shows the ranges that were set. Off at first.
    void setZoomAndPan(bool zoom, bool pan);

    /// Draws anew. Changes above are drawn by themselves when the program comes to rest.
    void Repaint();

    /// The chart on white, as it is put on the clipboard.
    QImage Picture(QSize size, double scale = 2) const;
    void CopyToClipboard() const;
    /// Asks for a printer and prints one page; false when the user declined.
    bool Print();
    /// Fills the width of the page, in the proportions of the window.
    void PrintOn(QPrinter& printer) const;
    /// False when the file cannot be written.
    bool ExportPdf(const QString& path) const;

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Series {
        QString title;
        QList<QPointF> points;
        Style style;
        QCPCurve* curve; // owned by the plot
    };
    struct AxisState {
        std::optional<Range> fixed;
        std::optional<double> step;
        QString pattern = "0.######";
    };
    class Theme;

    QCPAxis* Of(Axis axis) const;
    AxisState& State(Axis axis) { return axis == Axis::Bottom ? m_bottom : m_left; }
    const AxisState& State(Axis axis) const { return axis == Axis::Bottom ? m_bottom : m_left; }
    void ApplyTheme(const Theme& theme) const;
    void ApplyRange(Axis axis) const;
    void ApplyTicker(Axis axis);
    /// Ranges are worked out once per drawing (or question), not per added point.
    void UpdateRanges() const;
    void Changed();

    QCustomPlot* m_plot;
    QCPTextElement* m_headingElement = nullptr; // owned by the plot while shown
    QList<Series> m_series;
    QStringList m_heading;
    AxisState m_bottom;
    AxisState m_left;
    mutable bool m_rangesStale = true;
};
