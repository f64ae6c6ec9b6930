#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

/// Works the program's dialogs as a user would: whenever a dialog stands in
/// front, what is to be done with one of its kind is done once, with its own
/// buttons, and a picture of it is kept.
class Robot : public QObject {
public:
    /// Pictures go into `folder`.
    explicit Robot(const QString& folder);

    /// The name that is typed for the calculation.
    void setBerekening(const QString& naam) { m_naam = naam; }
    /// What went wrong: the texts of boxes that came unasked, pictures that could not be kept.
    const QStringList& Faults() const { return m_faults; }
    const QStringList& Pictures() const { return m_pictures; }
    /// Rows chosen in the start dialog.
    int Selected() const { return m_selected; }
    /// The lines of the result list, and what stands above them.
    const QString& ResultList() const { return m_resultList; }
    const QString& Summary() const { return m_summary; }

    void Keep(QWidget* widget, const QString& picture);

private:
    void Look();
    void Settings(QWidget* form);
    void Start(QWidget* form);
    void Run(QWidget* form);
    void Result(QWidget* form);
    void Box(QWidget* form);

    QString m_folder;
    QString m_naam;
    QStringList m_faults, m_pictures;
    QString m_resultList, m_summary;
    QMap<QString, int> m_seen; ///< how often a kind of form was met
    int m_selected = 0;
    bool m_settingsDone = false;
    bool m_runKept = false; ///< the picture of a run shows one half-way
};
