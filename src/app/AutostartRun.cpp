#include "app/AutostartRun.h"

#include "core/LaunchAtLogin.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace ostrelle {
namespace {

constexpr std::string_view kOption = "--autostart=";

} // namespace

bool isAutostartRun(int argc, char **argv)
{
    return argc == 2 && std::string_view(argv[1]).starts_with(kOption);
}

int runAutostartOnce(int argc, char **argv)
{
    const std::string_view verb = std::string_view(argv[1]).substr(kOption.size());
    const QCoreApplication application(argc, argv);
    const auto item = LoginItem::create(QStringLiteral(OSTRELLE_APPLICATION_ID),
                                        QCoreApplication::applicationDirPath() + QStringLiteral("/ostrelle"));
    LaunchAtLogin launch(*item);
    if (verb == "status")
        return std::puts(qUtf8Printable(launch.statusText())) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    // The answer may come at once, before there is an event loop to end.
    const auto finish = [](const QString &problem) {
        const int status = problem.isEmpty() ? EXIT_SUCCESS : EXIT_FAILURE;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
    };
    launch.setEnabled(verb == "on", &launch, finish);
    return QCoreApplication::exec();
}

} // namespace ostrelle
