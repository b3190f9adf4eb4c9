// Plays the files whose paths come in, line by line, and says when each was handed to the sound server. An empty line
// stops. Driven by playback.py.
#include "foundation/SystemTaskScheduler.h"
#include "media_client/Playback.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

int main(int argumentCount, char **arguments)
{
    using namespace ostrelle;
    std::ios::sync_with_stdio(false);
    const QCoreApplication application(argumentCount, arguments);
    SystemTaskScheduler scheduler;
    Playback playback(scheduler, QCoreApplication::applicationDirPath());
    const auto say = [](const char *word) {
        std::puts(word);
        std::fflush(stdout);
    };
    QObject::connect(&playback, &Playback::started, &playback, [say] { say("started"); });
    QObject::connect(&playback, &Playback::ended, &playback, [say] { say("ended"); });
    QObject::connect(&playback, &Playback::failed, &playback, [say] { say("failed"); });
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &playback, [&] {
        // Several lines may have come at once.
        do {
            std::string path;
            if (!std::getline(std::cin, path))
                QCoreApplication::quit();
            else if (path.empty())
                playback.stop();
            else
                playback.start(QString::fromStdString(path));
        } while (std::cin && std::cin.rdbuf()->in_avail() > 0);
    });
    return QCoreApplication::exec();
}
