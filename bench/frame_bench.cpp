// Ini look-ups beside QSettings, and the output of a child through the process
// runner beside a plain pipe.
#include "frame/ProcessRunner.h"
#include "frame/QLMIniFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kLookups = 10'000;
constexpr int kSections = 20;
constexpr int kKeys = 75;

/// About 60 kB: twenty sections of 75 keys.
QByteArray IniContent()
{
    QByteArray content;
    for (int section = 0; section < kSections; ++section) {
        content += "[Sectie" + QByteArray::number(section) + "]\r\n";
        for (int key = 0; key < kKeys; ++key)
            content += "frmFormulier.lblTekst" + QByteArray::number(key).rightJustified(2, '0') +
                       "=Een tekst van deze lengte\r\n";
    }
    return content;
}

class IniFile {
public:
    IniFile() : m_path(m_folder.filePath("teksten.ini"))
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        file.write(IniContent());
    }
    const QString& Path() const { return m_path; }
    qint64 Size() const { return QFile(m_path).size(); }

private:
    QTemporaryDir m_folder;
    QString m_path;
};

struct Names {
    std::vector<QString> sections;
    std::vector<QString> keys;

    Names()
    {
        for (int i = 0; i < kSections; ++i)
            sections.push_back("Sectie" + QString::number(i));
        for (int i = 0; i < kKeys; ++i)
            keys.push_back("frmFormulier.lblTekst" + QString::number(i).rightJustified(2, '0'));
    }
};

template <typename Lookup>
void LookUpAll(benchmark::State& state, Lookup lookup)
{
    const Names names;
    for (auto round : state) {
        static_cast<void>(round);
        for (int i = 0; i < kLookups; ++i)
            benchmark::DoNotOptimize(lookup(names.sections[std::size_t(i % kSections)],
                                            names.keys[std::size_t(i * 7 % kKeys)]));
    }
    state.SetItemsProcessed(state.iterations() * kLookups);
}

void GetStringTenThousandTimes(benchmark::State& state)
{
    const IniFile file;
    QLMIniFile ini(file.Path());
    LookUpAll(state, [&ini](const QString& section, const QString& key) {
        return ini.GetString(section, key);
    });
    state.counters["ini_bytes"] = double(file.Size());
}

void QSettingsTenThousandTimes(benchmark::State& state)
{
    const IniFile file;
    const QSettings ini(file.Path(), QSettings::IniFormat);
    LookUpAll(state, [&ini](const QString& section, const QString& key) {
        return ini.value(section + "/" + key).toString();
    });
}

class Box : public LogSink {
public:
    QString Text() const override { return m_text; }
    void SetText(const QString& text) override
    {
        m_text = text;
        ++m_changes;
    }
    void Append(const QString& text) override { m_text += text; }
    QString m_text;
    int m_changes = 0;
};

constexpr int kLines = 1'600'000; // of 64 bytes: 100 MB

double ResidentMegabytes()
{
    std::ifstream status("/proc/self/statm");
    long total = 0;
    long resident = 0;
    status >> total >> resident;
    return double(resident) * 4096 / 1e6;
}

void RunnerHundredMegabytes(benchmark::State& state)
{
    QTemporaryDir folder;
    ProcessRunner runner;
    Box box;
    const double before = ResidentMegabytes();
    for (auto round : state) {
        static_cast<void>(round);
        QFile log(folder.filePath("uitvoer.log"));
        if (!log.open(QIODevice::WriteOnly))
            std::abort();
        runner.Execute(nullptr, {RUNNER_CHILD, {"lines", QString::number(kLines)}}, folder.path(),
                       &box, &log);
    }
    state.SetBytesProcessed(state.iterations() * kLines * 64LL);
    state.counters["box_changes"] =
        benchmark::Counter(box.m_changes, benchmark::Counter::kAvgIterations);
    state.counters["memory_growth_MB"] = ResidentMegabytes() - before;
}

void PlainPipeHundredMegabytes(benchmark::State& state)
{
    const std::string command = std::string(RUNNER_CHILD) + " lines " + std::to_string(kLines);
    std::vector<char> buffer(65536);
    QTemporaryDir folder;
    for (auto round : state) {
        static_cast<void>(round);
        std::FILE* const pipe = popen(command.c_str(), "r");
        std::ofstream log(folder.filePath("uitvoer.log").toStdString(), std::ios::binary);
        while (const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe))
            log.write(buffer.data(), std::streamsize(size));
        pclose(pipe);
    }
    state.SetBytesProcessed(state.iterations() * kLines * 64LL);
}

BENCHMARK(GetStringTenThousandTimes)->Unit(benchmark::kMillisecond);
BENCHMARK(QSettingsTenThousandTimes)->Unit(benchmark::kMillisecond);
BENCHMARK(RunnerHundredMegabytes)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(PlainPipeHundredMegabytes)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
