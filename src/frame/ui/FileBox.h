#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

/// A caption, a text box and a browse button: the way to choose a file.
/// Usable in .ui files by promotion of a QWidget.
class FileBox : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool Appearance READ BorderStyle WRITE setBorderStyle)
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(QString BasePath READ BasePath WRITE setBasePath)
    Q_PROPERTY(bool BorderStyle READ BorderStyle WRITE setBorderStyle)
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)
    Q_PROPERTY(int DialogPosition READ DialogPosition WRITE setDialogPosition)
    Q_PROPERTY(QString DialogTitle READ DialogTitle WRITE setDialogTitle)
    Q_PROPERTY(bool Enabled READ isEnabled WRITE setEnabled)
    Q_PROPERTY(QString Filters READ Filters WRITE setFilters)
    Q_PROPERTY(QFont Font READ font WRITE setFont)
    Q_PROPERTY(QColor ForeColor READ ForeColor WRITE setForeColor)
    Q_PROPERTY(bool FileMustExist READ FileMustExist WRITE setFileMustExist)
    Q_PROPERTY(bool FileOpenDialog READ FileOpenDialog WRITE setFileOpenDialog)
    Q_PROPERTY(bool GetRelativeFileName READ GetRelativeFileName WRITE setGetRelativeFileName)
    Q_PROPERTY(QString InitialDir READ InitialDir WRITE setInitialDir)
    Q_PROPERTY(int LeftTextBox READ LeftTextBox WRITE setLeftTextBox)
    Q_PROPERTY(bool TextboxLocked READ TextboxLocked WRITE setTextboxLocked)
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(QString TooltipTextbox READ TooltipTextbox WRITE setTooltipTextbox)
    Q_PROPERTY(QString TooltipCommandButton READ TooltipCommandButton WRITE setTooltipCommandButton)

public:
    explicit FileBox(QWidget* parent = nullptr);

    QString Caption() const;
    void setCaption(const QString& text);
    QString text() const;
    void setText(const QString& text);

    /// Names below this folder are shown relative to it while GetRelativeFileName is on.
    const QString& BasePath() const { return m_basePath; }
    void setBasePath(const QString& folder) { m_basePath = folder; }
    bool GetRelativeFileName() const { return m_relative; }
    void setGetRelativeFileName(bool on) { m_relative = on; }

    /// 0: where the desktop puts it; otherwise the centre of the screen.
    int DialogPosition() const { return m_dialogPosition; }
    void setDialogPosition(int position) { m_dialogPosition = position; }
    const QString& DialogTitle() const { return m_dialogTitle; }
    void setDialogTitle(const QString& title) { m_dialogTitle = title; }
    /// See FileRequest::filters.
    const QString& Filters() const { return m_filters; }
    void setFilters(const QString& filters) { m_filters = filters; }
    bool FileMustExist() const { return m_fileMustExist; }
    void setFileMustExist(bool on) { m_fileMustExist = on; }
    bool FileOpenDialog() const { return m_openDialog; }
    void setFileOpenDialog(bool on) { m_openDialog = on; }
    const QString& InitialDir() const { return m_initialDir; }
    void setInitialDir(const QString& folder) { m_initialDir = folder; }
    /// The text changes through the dialog only.
    bool TextboxLocked() const;
    void setTextboxLocked(bool on);

    bool BorderStyle() const;
    void setBorderStyle(bool on);
    QColor BackColor() const;
    void setBackColor(const QColor& colour);
    QColor ForeColor() const;
    void setForeColor(const QColor& colour);
    /// In twips; a caption that needs more room gets it.
    int LeftTextBox() const { return m_leftTextBox; }
    void setLeftTextBox(int twips);
    QString TooltipTextbox() const;
    void setTooltipTextbox(const QString& text);
    QString TooltipCommandButton() const;
    void setTooltipCommandButton(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// What the button does.
    void Browse();

signals:
    /// Any change of the text, also a choice from the dialog.
    void Change();
    /// The focus went to a control outside.
    void Left();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int BoxLeft() const;
    void Arrange();

    QLabel* m_caption;
    QLineEdit* m_edit;
    QPushButton* m_button;
    QString m_basePath;
    QString m_dialogTitle = "Open";
    QString m_filters = "All Files (*.*)|*.*";
    QString m_initialDir = ".";
    int m_dialogPosition = 0;
    int m_leftTextBox = 0;
    bool m_fileMustExist = true;
    bool m_openDialog = true;
    bool m_relative = false;
};
