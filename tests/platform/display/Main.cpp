#include "PeerClient.h"
#include "platform/Platform.h"
#include "platform/PlatformStart.h"
#include "support/TestMain.h"

#include <QApplication>

#include <cstdio>
#include <cstring>

/// Tests on the display that DISPLAY names. With "--until-display-lost" it is instead the program that loses its
/// display: it says "ready", and what its handler does shows as "flushed", on standard output.
int main(int argc, char **argv)
{
    QString problem;
    if (!ostrelle::PlatformStart::prepare(&problem)) {
        std::fprintf(stderr, "%s\n", qPrintable(problem));
        return 1;
    }
    const QApplication application(argc, argv);
    if (argc > 1 && std::strcmp(argv[1], "--until-display-lost") == 0) {
        const auto platform = ostrelle::Platform::create(QStringLiteral("x11"), QString());
        platform->setDisplayLostHandler([] {
            std::puts("flushed");
            std::fflush(stdout);
        });
        std::puts("ready");
        std::fflush(stdout);
        return QApplication::exec();
    }
    if (!ostrelle::PeerClient().waitForWindowManager()) {
        std::fputs("No window manager came up on the display.\n", stderr);
        return 1;
    }
    return ostrelle::runRegisteredTests(argc, argv);
}
