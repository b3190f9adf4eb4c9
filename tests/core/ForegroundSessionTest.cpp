#include "core/ForegroundSession.h"

#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QSignalSpy>
#include <QTest>

using namespace ostrelle;

class ForegroundSessionTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void announcesOnlyTheFirstAndTheLast()
    {
        ForegroundSession session;
        QSignalSpy changes(&session, &ForegroundSession::foregroundChanged);
        const QSignalSpy activations(&session, &ForegroundSession::activationRequested);
        session.end();
        QCOMPARE(session.depth(), 0);
        session.begin();
        session.begin();
        session.end();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst().first().toBool(), true);
        session.end();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst().first().toBool(), false);
        QCOMPARE(activations.size(), 2);
        QCOMPARE(session.depth(), 0);
    }
};

OSTRELLE_TEST(ForegroundSessionTest)
#include "ForegroundSessionTest.moc"
