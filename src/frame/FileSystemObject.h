#pragma once

#include <QString>
#include <QStringList>

/// File-system operations by path; the shared instance is gFso. All paths go
/// through ResolvePath. Operations that change something raise
/// RuntimeFout::FileAccess with path and reason when they fail.
class FileSystemObject {
public:
    /// Joins with the platform's separator, unless one is there.
    [[nodiscard]] QString BuildPath(const QString& folder, const QString& name) const;
    [[nodiscard]] bool FileExists(const QString& path) const;
    [[nodiscard]] bool FolderExists(const QString& path) const;

    /// Makes the folder and the ones above it; one that exists is no error.
    void CreateFolder(const QString& path) const;
    /// Without `force` a read-only file is not deleted.
    void DeleteFile(const QString& path, bool force = false) const;
    /// With its content. Without `force` read-only files in it are an error.
    void DeleteFolder(const QString& path, bool force = false) const;
    /// Replaces an existing target.
    void CopyFile(const QString& source, const QString& target) const;
    /// Files and folders; an existing target is an error.
    void Move(const QString& source, const QString& target) const;

    /// Names of the files, of the folders, directly in a folder, sorted
    /// without regard to case; empty when there is no such folder.
    [[nodiscard]] QStringList Files(const QString& folder) const;
    [[nodiscard]] QStringList SubFolders(const QString& folder) const;
};
