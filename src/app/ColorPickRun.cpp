#include "app/ColorPickRun.h"

#include "app/TerminationSignals.h"
#include "foundation/AppPaths.h"
#include "foundation/DataFolderLock.h"
#include "foundation/DefaultsDatabase.h"
#include "foundation/UnixSocket.h"
#include "platform/ColourPicker.h"
#include "platform/Platform.h"
#include "records/ColorLists.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdio>

#include <poll.h>

namespace ostrelle {

namespace {

using namespace std::chrono_literals;

constexpr int kFailed = 1;
constexpr int kRetryMilliseconds = 5;
constexpr int kRetries = 400;

int failWith(const char *problem)
{
    std::fprintf(stderr, "ostrelle: color pick: %s\n", problem);
    return kFailed;
}

/// A program that was started meanwhile keeps the colour itself; false when none listens.
bool handOver(const SampledColor &color)
{
    const FileDescriptor program = UnixSocket::connectTo(AppPaths::controlSocket());
    if (!program || !UnixSocket::isSameUser(program.get()))
        return false;
    const QJsonObject request{{QStringLiteral("verb"), QStringLiteral("color.add")},
                              {QStringLiteral("color"), color.hexString()}};
    constexpr auto kDeadline = 5s;
    return UnixSocket::sendLine(program.get(), QJsonDocument(request).toJson(QJsonDocument::Compact), kDeadline) &&
           UnixSocket::receiveLine(program.get(), kDeadline, 64 * 1024);
}

/// False when it cannot be kept.
bool keep(const SampledColor &color)
{
    for (int attempt = 0; attempt < kRetries; ++attempt) {
        DataFolderLock::Failure failure{};
        if (const auto lock = DataFolderLock::tryTake(AppPaths::support(), &failure)) {
            DefaultsDatabase defaults(AppPaths::defaultsFile());
            ColorLists lists = ColorLists::load(defaults);
            lists.record(color);
            lists.store(defaults);
            return defaults.flush();
        }
        if (failure == DataFolderLock::Failure::Unavailable)
            return false;
        if (handOver(color))
            return true;
        // Another command edits, or a program is about to listen.
        ::poll(nullptr, 0, kRetryMilliseconds);
    }
    return false;
}

} // namespace

int runColorPick(const QString &backend, ColorFormat format)
{
    const std::unique_ptr<Platform> platform = Platform::create(backend, QString());
    if (!platform)
        return failWith("the desktop cannot be reached");
    std::optional<SampledColor> gathered;
    std::optional<SampledColor> last;
    bool areKept = true;
    const auto sampled = [](const PickedColour &colour) { return SampledColor{colour.red, colour.green, colour.blue}; };
    QObject context;
    const bool isOpening = platform->colourPicker().pick(
        // At once, as the program does: what is erased while the loupe is open is not to come back with its end.
        &context, {.gathered =
                       [&](const PickedColour &colour) {
                           gathered = sampled(colour);
                           areKept = keep(*gathered) && areKept;
                       },
                   .finished =
                       [&](std::optional<PickedColour> colour) {
                           if (colour)
                               last = sampled(*colour);
                           QCoreApplication::quit();
                       }});
    if (!isOpening)
        return failWith("a loupe is open already");
    const TerminationSignals signals_;
    QObject::connect(&signals_, &TerminationSignals::received, &context, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();

    const bool isPrinted =
        last && std::puts(colorText(*last, format).toUtf8().constData()) >= 0 && std::fflush(stdout) == 0;
    if (last && last != gathered)
        areKept = keep(*last) && areKept;
    if (!areKept)
        failWith("the color is not kept among the recent ones");
    if (!last)
        return failWith("no color was picked");
    return isPrinted ? 0 : kFailed;
}

} // namespace ostrelle
