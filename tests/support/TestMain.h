#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace ostrelle {

/// Registers a test class with the executable's main(), which runs the class named by its first argument, or all.
struct TestRegistration
{
    TestRegistration(const char *name, std::function<std::unique_ptr<QObject>()> make);
};

/// Runs the class named by the first argument with the other arguments, or all classes without arguments; `--list`
/// prints their names. Returns the exit status. Needs an application object.
int runRegisteredTests(int argc, char **argv);

} // namespace ostrelle

#define OSTRELLE_TEST(Class)                                                                                           \
    static const ostrelle::TestRegistration k##Class##Registration(#Class, [] { return std::make_unique<Class>(); });
