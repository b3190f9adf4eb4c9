#include "notch/NotchShape.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QRectF>
#include <QTest>

using namespace ostrelle;

class NotchShapeTest : public TestBase
{
    Q_OBJECT

private Q_SLOTS:
    void reducesRadiiThatDoNotFit_data();
    void reducesRadiiThatDoNotFit();
    void reachesBeyondTheRectangleWithItsEarsOnly();
    void leavesTheTopEdgeOpen();
};

void NotchShapeTest::reducesRadiiThatDoNotFit_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<double>("bottom");
    QTest::addColumn<double>("top");
    QTest::newRow("both fit") << QSizeF(588, 154) << 20.0 << 12.0;
    QTest::newRow("low: the corners take all height") << QSizeF(200, 10) << 10.0 << 0.0;
    QTest::newRow("a little lower than both") << QSizeF(200, 25) << 20.0 << 5.0;
    QTest::newRow("narrow: the corners take all width") << QSizeF(30, 200) << 15.0 << 0.0;
    QTest::newRow("a little wider than the corners") << QSizeF(48, 200) << 20.0 << 4.0;
    QTest::newRow("empty") << QSizeF(0, 0) << 0.0 << 0.0;
}

void NotchShapeTest::reducesRadiiThatDoNotFit()
{
    QFETCH(QSizeF, size);
    QFETCH(double, bottom);
    QFETCH(double, top);
    const NotchShape shape = {20, 12};
    const NotchShape fitted = shape.fitted(size.width(), size.height());
    QCOMPARE(fitted.bottomRadius, bottom);
    QCOMPARE(fitted.topRadius, top);
    const QRectF bounds = shape.path(QRectF({5, 7}, size)).boundingRect();
    QCOMPARE(bounds, QRectF({5, 7}, size).adjusted(-top, 0, top, 0));
}

void NotchShapeTest::reachesBeyondTheRectangleWithItsEarsOnly()
{
    const QPainterPath path = NotchShape{26, 12}.path({0, 0, 588, 154});
    // The ear's curve is at (-3, 3) when half way, the corner's at (6.5, 147.5).
    QVERIFY(path.contains(QPointF(-2, 2)));
    QVERIFY(!path.contains(QPointF(-4, 4)));
    QVERIFY(path.contains(QPointF(588 + 2, 2)));
    QVERIFY(!path.contains(QPointF(-0.5, 12.5)));
    QVERIFY(path.contains(QPointF(7.5, 146.5)));
    QVERIFY(!path.contains(QPointF(5.5, 148.5)));
}

void NotchShapeTest::leavesTheTopEdgeOpen()
{
    const NotchShape shape = {26, 12};
    const QRectF rect(10, 0, 300, 100);
    const QPainterPath open = shape.openPath(rect);
    QCOMPARE(QPointF(open.elementAt(0)), QPointF(-2, 0));
    QCOMPARE(open.currentPosition(), QPointF(322, 0));
    QCOMPARE(shape.path(rect).length() - open.length(), 324.0);
}

OSTRELLE_TEST(NotchShapeTest)
#include "NotchShapeTest.moc"
