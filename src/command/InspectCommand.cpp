#include "command/InspectCommand.h"

#include "command/CommandLine.h"
#include "command/FileName.h"
#include "command/InspectionRun.h"
#include "command/NameSource.h"
#include "command/Output.h"
#include "command/ProgressLine.h"

#include <algorithm>
#include <cstdio>
#include <thread>

namespace ostrelle {
namespace {

constexpr int kMostJobs = 16;
/// By default no more: each has its own memory.
constexpr int kUsualJobs = 4;

bool has(const Invocation &invocation, const char *option)
{
    return invocation.options.contains(QLatin1StringView(option));
}

int usualJobs()
{
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kUsualJobs);
}

} // namespace

ExitStatus runInspect(const Invocation &invocation)
{
    bool isNumber = true;
    const QString jobsText = invocation.options.value(QStringLiteral("--jobs"), QString::number(usualJobs()));
    const int jobs = jobsText.toInt(&isNumber);
    if (!isNumber || jobs < 1 || jobs > kMostJobs)
        return fail(ExitStatus::WrongUsage, QStringLiteral("inspect: N is a number from 1 to %1, not %2")
                                                .arg(QString::number(kMostJobs), printable(jobsText)));
    NameSource names(invocation.arguments,
                     {.separator = has(invocation, "-0") ? '\0' : '\n',
                      .isRecursive = has(invocation, "--recursive"),
                      .isWanted = [](const QByteArray &name) { return mediaKindOf(displayName(name)).has_value(); }});
    ExitStatus status = ExitStatus::Done;
    ProgressLine progress;
    const auto tempoUse =
        has(invocation, "--no-tempo") ? InspectionRun::TempoUse::TagsOnly : InspectionRun::TempoUse::Listen;
    InspectionRun run(names, jobs, tempoUse, [&](const Inspection &inspection) {
        progress.clear();
        if (!inspection.isDone())
            status = ExitStatus::Failed;
        if (invocation.json) {
            printOut(inspectionJson(inspection));
        } else if (inspection.isDone()) {
            printOut(inspectionText(inspection));
        } else {
            fail(status,
                 QStringLiteral("inspect: %1 %2").arg(printable(displayName(inspection.file)), inspection.problem));
        }
        // Nobody reads on.
        if (std::ferror(stdout) != 0)
            run.stop();
        progress.step();
    });
    run.exec();
    progress.clear();
    return status;
}

} // namespace ostrelle
