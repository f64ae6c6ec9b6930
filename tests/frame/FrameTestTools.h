#pragma once

#include "TemporaryFolder.h"

#include "frame/Convert.h"
#include "frame/Fouten.h"
#include "frame/Globals.h"
#include "frame/Numbers.h"
#include "frame/Paths.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

#ifndef Q_OS_WIN
#include <csignal>
#include <sys/resource.h>
#endif

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* out)
{
    *out << '"' << bytes.toPercentEncoding(" ;[]=.").toStdString() << '"';
}

inline void WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(bytes), bytes.size());
}

inline QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// A system with a comma (or a point) and a language of the test's choice.
class FakeInternational : public International {
public:
    explicit FakeInternational(QString decimal, QString language = "NLD")
        : m_decimal(std::move(decimal)), m_language(std::move(language))
    {}
    QString Value(const QString& key) const override
    {
        return key == "sDecimal" ? m_decimal : key == "sLanguage" ? m_language : QString();
    }

private:
    QString m_decimal;
    QString m_language;
};

/// A program folder of its own, and globals that are as new.
class FrameTest : public testing::Test {
protected:
    FrameTest() : m_programFolder(ProgramFolder())
    {
        SetProgramFolder(Folder());
        SetLanguage({});
        SetInternational(&m_comma);
        gConvert.Release();
        gIniFile.Release();
    }
    ~FrameTest() override
    {
        gIniFile.Release();
        gBoxes.Release();
        gConvert.Release();
        SetInternational(nullptr);
        SetLanguage({});
        SetProgramFolder(m_programFolder);
    }

    QString Folder() const { return QString::fromStdString(m_folder.Path().string()); }
    QString Path(const QString& name) const { return Folder() + "/" + name; }
    void WriteProgramIni(const QByteArray& content) { WriteBytes(Path("Zandvoet.ini"), content); }
    void UseSystem(const International& international)
    {
        SetInternational(&international);
        gConvert.Release();
    }

private:
    TemporaryFolder m_folder;
    QString m_programFolder;
    FakeInternational m_comma{","};
};

#ifndef Q_OS_WIN
/// While it lives this process can open no further file or pipe.
class NoFreeFiles {
public:
    NoFreeFiles()
    {
        getrlimit(RLIMIT_NOFILE, &m_before);
        rlimit none = m_before;
        none.rlim_cur = 3; // the standard streams only
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoFreeFiles() { setrlimit(RLIMIT_NOFILE, &m_before); }
    NoFreeFiles(const NoFreeFiles&) = delete;
    NoFreeFiles& operator=(const NoFreeFiles&) = delete;

private:
    rlimit m_before{};
};

/// While it lives no file of this process can grow beyond so many bytes.
class FullDisc {
public:
    explicit FullDisc(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) // fail the write
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit small = m_before;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisc()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisc(const FullDisc&) = delete;
    FullDisc& operator=(const FullDisc&) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int);
};
#endif

/// What `statement` raises: its number, 0 when nothing is thrown.
template <typename Statement>
int RaisedNumber(Statement statement)
{
    try {
        statement();
    } catch (const Fout& fout) {
        return fout.Number();
    }
    return 0;
}
