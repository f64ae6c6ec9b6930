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
    /// Texts of boxes that came unasked: the job went wrong.
    const QStringList& Boxes() const { return m_boxes; }
    const QStringList& Pictures() const { return m_pictures; }

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
    QStringList m_boxes, m_pictures;
    QMap<QString, int> m_seen; ///< how often a kind of form was met
    bool m_settingsDone = false;
};
