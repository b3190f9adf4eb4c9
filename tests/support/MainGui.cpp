#include "support/TestMain.h"

#include <QApplication>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    return ostrelle::runRegisteredTests(argc, argv);
}
