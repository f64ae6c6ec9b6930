#pragma once

#include <QString>

#include <functional>

class QWidget;

/// What is asked for in a dialog for a file.
struct FileRequest {
    QString title;
    /// Pairs of a label and its patterns, parted by "|" or NUL characters:
    /// "Shapebestanden (*.shp)|*.shp". Empty: all files.
    QString filters;
    QString initialFolder;
    QString fileName; ///< proposed, when saving
    bool open = true; ///< otherwise a file to save to
    bool fileMustExist = true;
    bool centreOnScreen = false; ///< otherwise where the desktop puts it
};

/// Asks for one file; empty when the user gave up. A file to save to gets the
/// first pattern's extension when the user typed none, and is asked about by the
/// dialog when it exists.
[[nodiscard]] QString ChooseFile(QWidget* owner, const FileRequest& request);

/// "Shapebestanden (*.shp)|*.shp" as the dialogs of the toolkit want it.
[[nodiscard]] QString DialogFilter(const QString& filters);

/// Answers all requests in place of a dialog, for tests; null brings the dialog back.
using FileChooser = std::function<QString(QWidget* owner, const FileRequest& request)>;
void SetFileChooser(FileChooser chooser);
