#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

/// Can this machine and this installation carry the program? Each check gives
/// the text of the box that refuses the start, or nothing when all is well.
///
/// No text file can be trusted yet, so the texts stand here: Dutch when the
/// system's own language is "DUT" or "NLD", otherwise English.

/// The screen, so that tests can choose one.
class DisplayInfo {
public:
    virtual ~DisplayInfo() = default;
    /// In dots of the screen itself.
    virtual QSize GetScreenRect() const;
    /// 2 to the power of planes times bits per dot.
    virtual double GetColourCount() const;
};

std::optional<QString> CheckScreen(const DisplayInfo& display);

/// The path is made absolute first. A program that an ini names for Windows is
/// looked for under this platform's name.
std::optional<QString> RequireFile(const QString& path);

/// The files of the installation in the order in which they are checked: the
/// program's ini, then those that gIniFile lists.
QStringList RequiredFiles();

/// The first missing one refuses the start.
std::optional<QString> CheckRequiredFiles();
