// Recording copies into a history of 200 one-MiB images. Budgets: 2 ms of the main thread per copy; bytes written to
// the disk, amortised over 200 copies and without the fold at quit, 3 times the copied bytes + 8 KiB for texts and 5
// times for images of 1 MiB. Reading it at start: 500 ms. Needs a folder on a disk: TMPDIR decides.

#include "clipboard/ClipboardService.h"
#include "core/SettingsStore.h"
#include "foundation/DefaultsDatabase.h"
#include "records/ClipboardStore.h"
#include "support/FakeClipImages.h"
#include "support/FakeClipboardPort.h"
#include "support/ManualTaskScheduler.h"

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <memory>

using namespace ostrelle;

namespace {

constexpr int kCopies = 200;
constexpr qsizetype kImageSize = 1024 * 1024;
constexpr qsizetype kTextLength = 600;

QByteArray noise()
{
    QByteArray bytes(kImageSize, Qt::Uninitialized);
    for (qsizetype at = 0; at < bytes.size(); at += 8) {
        const quint64 word = QRandomGenerator::global()->generate64();
        std::copy_n(reinterpret_cast<const char *>(&word), sizeof word, bytes.data() + at);
    }
    return bytes;
}

/// A figure of /proc, by its label.
double processFigure(const char *file, const char *label)
{
    QFile source(QString::fromLatin1(file));
    if (!source.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : source.readAll().split('\n')) {
        if (line.startsWith(label))
            return line.simplified().split(' ').at(1).toDouble();
    }
    return 0;
}

/// Of the processor, so that the figure does not depend on what else runs on the machine. Nothing waits in there.
double threadSeconds()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// The service over a real store, fed by a clipboard that answers at once.
class History
{
public:
    explicit History(const QString &folder)
        : m_database(folder + QStringLiteral("/defaults.json"))
        , m_settings(m_database)
        , m_store(folder + QStringLiteral("/store"))
    {
        m_settings.setClipboardLimit(2 * kCopies);
        m_service = std::make_unique<ClipboardService>(m_settings, m_port, m_store, m_scheduler, m_images);
        m_service->finishLoading();
        m_service->start();
    }

    qsizetype count() const { return m_service->items().size(); }
    /// Records what was copied; returns the seconds that the main thread needed.
    double record(const FakeClipboardPort::Owner &owner)
    {
        m_port.copy(owner);
        const double begin = threadSeconds();
        m_scheduler.advance(std::chrono::milliseconds(500));
        const double end = threadSeconds();
        m_store.flush();
        QCoreApplication::processEvents();
        return end - begin;
    }

private:
    ManualTaskScheduler m_scheduler;
    FakeClipboardPort m_port{m_scheduler};
    FakeClipImages m_images{m_scheduler};
    DefaultsDatabase m_database;
    SettingsStore m_settings;
    ClipboardStore m_store;
    std::unique_ptr<ClipboardService> m_service;
};

FakeClipboardPort::Owner imageOwner()
{
    FakeClipboardPort::Owner owner;
    owner.png = noise();
    return owner;
}

FakeClipboardPort::Owner textOwner(int number)
{
    FakeClipboardPort::Owner owner;
    owner.text = QString::number(number).leftJustified(kTextLength, u'x');
    return owner;
}

void fill(const QString &folder)
{
    History history(folder);
    for (int i = 0; i < kCopies; ++i)
        history.record(imageOwner());
}

template <typename MakeOwner>
void recordCopies(benchmark::State &state, double copiedBytes, MakeOwner makeOwner)
{
    QTemporaryDir folder;
    fill(folder.path());
    History history(folder.path());
    double longest = 0;
    for (auto iteration : state) {
        const double before = processFigure("/proc/self/io", "write_bytes:");
        for (int i = 0; i < kCopies; ++i)
            longest = std::max(longest, history.record(makeOwner(i)));
        const double written = processFigure("/proc/self/io", "write_bytes:") - before;
        state.counters["longest_ms"] = longest * 1000;
        state.counters["written_per_copy"] = written / kCopies;
        state.counters["written_ratio"] = written / kCopies / copiedBytes;
        state.counters["resident_kB"] = processFigure("/proc/self/status", "VmRSS:");
    }
    if (history.count() != 2 * kCopies)
        state.SkipWithError("copies are missing");
}

void recordTexts(benchmark::State &state)
{
    recordCopies(state, static_cast<double>(kTextLength), textOwner);
}
BENCHMARK(recordTexts)->Iterations(1)->Unit(benchmark::kMillisecond);

void recordImages(benchmark::State &state)
{
    recordCopies(state, static_cast<double>(kImageSize), [](int) { return imageOwner(); });
}
BENCHMARK(recordImages)->Iterations(1)->Unit(benchmark::kMillisecond);

void readAtStart(benchmark::State &state)
{
    QTemporaryDir folder;
    fill(folder.path());
    for (auto iteration : state) {
        ClipboardStore store(folder.path() + QStringLiteral("/store"));
        benchmark::DoNotOptimize(store.load());
    }
    state.counters["resident_kB"] = processFigure("/proc/self/status", "VmRSS:");
}
BENCHMARK(readAtStart)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
