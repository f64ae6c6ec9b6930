#pragma once

#include "TemporaryFolder.h"
#include "frame/Convert.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"
#include "frame/QLMIniFile.h"

#include <QFile>

/// A system with a chosen decimal sign and language.
class FixedInternational : public International {
public:
    explicit FixedInternational(const QString& sign = ",", const QString& language = "NLD")
        : m_sign(sign), m_language(language)
    {}
    QString Value(const QString& key) const override
    {
        return key == "sDecimal" ? m_sign : key == "sLanguage" ? m_language : QString();
    }

private:
    QString m_sign;
    QString m_language;
};

/// A fresh program folder with the ini files of the source tree, on a system
/// with a decimal comma. The global objects of the frame are new and go again.
class Installation {
public:
    explicit Installation(const QString& sign = ",", const QString& language = "NLD")
        : m_international(sign, language)
    {
        std::filesystem::create_directories(m_folder / "data/databases");
        const std::filesystem::path data = std::filesystem::path(TEST_DATA_FOLDER) / "../../data";
        for (const auto& entry : std::filesystem::directory_iterator(data)) {
            if (entry.path().extension() != ".ini")
                continue;
            const bool own = entry.path().filename() == "Zandvoet.ini";
            std::filesystem::copy_file(entry.path(), (own ? m_folder.Path() : m_folder / "data") /
                                                         entry.path().filename());
        }
        SetInternational(&m_international);
        gConvert.Release();
        SetProgramFolder(Path());
        SetIniPath(Path("data"));
        gIniFile.Set(std::make_shared<QLMIniFile>());
    }
    ~Installation()
    {
        gIniFile.Release();
        gConvert.Release();
        SetInternational(nullptr);
        SetProgramFolder(QString());
        SetApplicationTitle("Zandvoet");
    }

    QString Path(const QString& name = {}) const
    {
        const QString folder = QString::fromStdString(m_folder.Path().string());
        return name.isEmpty() ? folder : folder + "/" + name;
    }
    /// Replaces (or makes) a file.
    void Write(const QString& name, const QByteArray& content) const
    {
        QFile file(Path(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }
    /// Changes a key of the program's ini on the disc, behind the back of gIniFile.
    void Set(const QString& section, const QString& key, const QString& value) const
    {
        QLMIniFile ini(Path("Zandvoet.ini"));
        ini.SaveString(section, key, value);
    }

private:
    TemporaryFolder m_folder;
    FixedInternational m_international;
};
