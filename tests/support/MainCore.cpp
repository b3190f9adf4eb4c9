#include "support/TestMain.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return ostrelle::runRegisteredTests(argc, argv);
}
