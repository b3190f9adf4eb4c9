#include "support/TestBase.h"

#include <QRegularExpression>
#include <QTest>

namespace ostrelle {

void TestBase::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
}

} // namespace ostrelle
