#include "app/UpdateCheckRun.h"

#include "core/SettingsStore.h"
#include "foundation/AppPaths.h"
#include "foundation/DefaultsDatabase.h"
#include "foundation/SystemTaskScheduler.h"
#include "records/UpdateReport.h"
#include "updates/FeedProcess.h"
#include "updates/UpdateReporting.h"
#include "updates/UpdateService.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <cstdio>
#include <string_view>

namespace ostrelle {
namespace {

enum class Form { Text, Json };

int print(const UpdateReport &report, Form form)
{
    if (form == Form::Json)
        std::printf("%s\n", QJsonDocument(report.toJson()).toJson(QJsonDocument::Compact).constData());
    else if (report.isFailure())
        std::fprintf(stderr, "ostrelle: %s\n", qUtf8Printable(report.text()));
    else
        std::fputs(qUtf8Printable(report.text()), stdout);
    const bool isPrinted = std::fflush(stdout) == 0;
    return report.isFailure() || !isPrinted ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace

bool isUpdateCheck(int argc, char **argv)
{
    return argc > 1 && std::string_view(argv[1]) == "--check-update";
}

int checkForUpdateOnce(int argc, char **argv, const UpdateDeployment &deployment)
{
    QCoreApplication application(argc, argv);
    const Form form = argc > 2 && std::string_view(argv[2]) == "--json" ? Form::Json : Form::Text;
    DefaultsDatabase defaults(AppPaths::defaultsFile());
    SettingsStore settings(defaults);
    SystemTaskScheduler scheduler;
    FeedProcess feed(scheduler, FeedProcess::installed(deployment.version));
    UpdateService updates(settings, scheduler, feed, deployment);
    updates.check(UpdateService::Check::Manual,
                  [form](const UpdateState &state) { QCoreApplication::exit(print(reportOf(state), form)); });
    return QCoreApplication::exec();
}

} // namespace ostrelle
