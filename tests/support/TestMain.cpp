#include "support/TestMain.h"

#include <QTest>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace ostrelle {
namespace {

using Make = std::function<std::unique_ptr<QObject>()>;

std::map<std::string, Make> &registry()
{
    static std::map<std::string, Make> tests;
    return tests;
}

} // namespace

TestRegistration::TestRegistration(const char *name, std::function<std::unique_ptr<QObject>()> make)
{
    registry().emplace(name, std::move(make));
}

int runRegisteredTests(int argc, char **argv)
{
    std::vector<char *> arguments(argv, argv + argc);
    const std::string wanted = argc > 1 ? argv[1] : "";
    if (wanted == "--list") {
        for (const auto &[name, make] : registry())
            std::puts(name.c_str());
        return 0;
    }
    if (argc > 1)
        arguments.erase(arguments.begin() + 1);
    bool isKnown = false;
    bool allPassed = true;
    for (const auto &[name, make] : registry()) {
        if (argc > 1 && name != wanted)
            continue;
        isKnown = true;
        const std::unique_ptr<QObject> test = make();
        if (QTest::qExec(test.get(), static_cast<int>(arguments.size()), arguments.data()) != 0)
            allPassed = false;
    }
    if (!isKnown)
        std::fprintf(stderr, "No test is named \"%s\"; --list prints the names.\n", wanted.c_str());
    return isKnown && allPassed ? 0 : 1;
}

} // namespace ostrelle
