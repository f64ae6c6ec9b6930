#pragma once

#include "TemporaryFolder.h"

#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>

/// A copy of the installed folder, complete (what other builds make is stood in
/// for), in which the real program is started on a virtual screen with the probe
/// along. Change the copy, then Run.
class ProgramRun {
public:
    ProgramRun()
    {
        namespace fs = std::filesystem;
        fs::copy(INSTALLED_FOLDER, m_folder / "Zandvoet", fs::copy_options::recursive);
        fs::create_directory(m_folder / "tmp");
        const QString script = "#!/bin/sh\necho '  1.2.3  '\n";
        for (const char* program : {"Rekenprogramma", "WindWaveCalculator"})
            Program(program, script);
        for (const char* file : {"data/Handleiding.html", "data/Bekledingsruwheden.html"}) {
            if (!QFile::exists(Path(file)))
                Write(file, "<html></html>");
        }
        // The ini as it is shipped, whatever was tried out in the build folder.
        fs::copy_file(fs::path(TEST_DATA_FOLDER) / "../../data/Zandvoet.ini",
                      m_folder / "Zandvoet" / "Zandvoet.ini", fs::copy_options::overwrite_existing);
        Screen(1280, 1024);
    }

    QString Path(const QString& name = {}) const
    {
        return QString::fromStdString((m_folder / "Zandvoet").string()) +
               (name.isEmpty() ? QString() : "/" + name);
    }
    void Write(const QString& name, const QByteArray& content) const
    {
        QFile file(Path(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
    }
    QByteArray Read(const QString& name) const
    {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void Replace(const QString& name, const QByteArray& from, const QByteArray& to) const
    {
        Write(name, Read(name).replace(from, to));
    }
    void Program(const QString& name, const QString& script) const
    {
        Write(name, script.toLatin1());
        QFile::setPermissions(Path(name), QFile::permissions(Path(name)) | QFile::ExeOwner);
    }
    void Screen(int width, int height) const
    {
        Write("scherm.json",
              QString(R"({"screens":[{"name":"s","x":0,"y":0,"width":%1,"height":%2,)"
                      R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})")
                  .arg(width)
                  .arg(height)
                  .toLatin1());
    }
    void Language(const QString& locale) { m_locale = locale; }
    /// Lets something go wrong in the running window that no handler catches.
    void Throw(const QString& text) { m_thrown = text; }

    /// Starts the program (or another one in its place, with "--empty-window");
    /// `name` tells runs apart.
    std::unique_ptr<QProcess> Start(const QString& name = "a", int closeAfter = 50,
                                    bool minimise = false, const QString& other = {})
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen:configfile=" + Path("scherm.json"));
        environment.insert("QT_PLUGIN_PATH", PROBE_FOLDER);
        environment.insert("QT_QPA_GENERIC_PLUGINS", "startprobe");
        environment.insert("STARTPROBE_LOG", LogPath(name));
        environment.insert("TMPDIR", QString::fromStdString((m_folder / "tmp").string()));
        environment.insert("LC_ALL", m_locale);
        environment.insert("LANG", m_locale);
        environment.remove("LANGUAGE");
        if (closeAfter >= 0)
            environment.insert("STARTPROBE_CLOSE", QString::number(closeAfter));
        if (!m_thrown.isEmpty())
            environment.insert("STARTPROBE_THROW", m_thrown);
        if (minimise)
            environment.insert("STARTPROBE_MINIMISE", "1");
        process->setProcessEnvironment(environment);
        process->setWorkingDirectory("/");
        if (other.isEmpty())
            process->start(Path("Zandvoet"), {});
        else
            process->start(other, {"--empty-window"});
        return process;
    }
    /// Starts it and waits for its end; the exit code, or -1 when it hangs.
    int Run(const QString& name = "a")
    {
        const auto process = Start(name);
        if (!process->waitForFinished(20000)) {
            process->kill();
            process->waitForFinished();
            return -1;
        }
        return process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -2;
    }
    QString LogPath(const QString& name) const
    {
        return QString::fromStdString((m_folder / (name.toStdString() + ".log")).string());
    }
    QStringList Log(const QString& name = "a") const
    {
        QFile file(LogPath(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }
    /// The texts of all boxes, lines parted by "|".
    QStringList Boxes(const QString& name = "a") const
    {
        QStringList texts;
        for (const QString& line : Log(name)) {
            if (line.startsWith("box\t"))
                texts.append(line.section('\t', 2));
        }
        return texts;
    }
    bool Shown(const QString& name = "a") const
    {
        for (const QString& line : Log(name)) {
            if (line.startsWith("shown\t"))
                return true;
        }
        return false;
    }

private:
    TemporaryFolder m_folder;
    QString m_locale = "nl_NL.UTF-8";
    QString m_thrown;
};
