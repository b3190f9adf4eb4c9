#include "notch/Glyph.h"
#include "support/TestMain.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace ostrelle;

namespace {

/// A symbol drawn at eight pixels per grid unit, so that a pixel is an eighth of a unit.
constexpr int kPixelsPerUnit = 8;
constexpr int kSide = 24 * kPixelsPerUnit;

QImage drawn(const QString &symbol, double systemSize, GlyphWeight weight, const QColor &color = Qt::white,
             double rotationDegrees = 0)
{
    QImage image(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const double square = 1.25 * systemSize;
    painter.scale(kSide / square, kSide / square);
    paintGlyph(painter, symbol, QRectF(0, 0, square, square), systemSize, weight, color, rotationDegrees);
    return image;
}

int alphaAt(const QImage &image, double x, double y)
{
    return qAlpha(image.pixel(int(x * kPixelsPerUnit), int(y * kPixelsPerUnit)));
}

/// The painted area in grid units.
QRectF bounds(const QImage &image)
{
    QRect painted;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 127)
                painted |= QRect(x, y, 1, 1);
        }
    }
    return {painted.left() / double(kPixelsPerUnit), painted.top() / double(kPixelsPerUnit),
            painted.width() / double(kPixelsPerUnit), painted.height() / double(kPixelsPerUnit)};
}

double coverage(const QImage &image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y)) / 255.0;
    }
    return sum / (kSide * kSide);
}

} // namespace

class GlyphTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void knowsTheSymbolsOfTheToolsAndOfTheSettings()
    {
        for (const char *symbol :
             {"list.clipboard", "eyedropper.halffull", "tray.full", "folder", "photo", "waveform", "gearshape",
              "square.grid.2x2", "command", "circle.lefthalf.filled", "hand.raised", "info.circle"})
            QVERIFY2(hasGlyph(QString::fromLatin1(symbol)), symbol);
        QVERIFY(!hasGlyph(u"folder.svg"));
        QVERIFY(glyphNames().contains(QStringLiteral("xmark.circle.fill")));
    }

    void staysNearTheLiveAreaAtEverySize_data()
    {
        QTest::addColumn<double>("systemSize");
        QTest::addColumn<GlyphWeight>("weight");
        QTest::newRow("19 light") << 19.0 << GlyphWeight::Light;
        QTest::newRow("16 medium") << 16.0 << GlyphWeight::Medium;
        QTest::newRow("13 medium") << 13.0 << GlyphWeight::Medium;
        QTest::newRow("10.5 semibold") << 10.5 << GlyphWeight::Semibold;
        QTest::newRow("9 semibold") << 9.0 << GlyphWeight::Semibold;
    }

    /// The live area is 20 units, 2 from each side; round shapes overshoot it, and a heavy pen lies half outside.
    void staysNearTheLiveAreaAtEverySize()
    {
        QFETCH(double, systemSize);
        QFETCH(GlyphWeight, weight);
        const QRectF allowed = QRectF(2, 2, 20, 20).adjusted(-0.85, -0.85, 0.85, 0.85);
        for (const QString &symbol : glyphNames()) {
            const QRectF painted = bounds(drawn(symbol, systemSize, weight));
            QVERIFY2(allowed.contains(painted), qPrintable(symbol));
            QVERIFY2(std::max(painted.width(), painted.height()) >= 13, qPrintable(symbol));
        }
    }

    void paintsASolidSymbolWithoutHolesWhereStrokesCross_data()
    {
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QPointF>("crossing");
        QTest::newRow("two lines") << "xmark" << QPointF(12, 12);
        QTest::newRow("a line over a filled shape") << "eyedropper" << QPointF(14, 10);
        QTest::newRow("one line over itself") << "command" << QPointF(9, 9);
        QTest::newRow("a filled shape and its outline") << "heart.fill" << QPointF(3.5, 9.1);
        QTest::newRow("a filled half") << "circle.lefthalf.filled" << QPointF(3.6, 12);
    }

    void paintsASolidSymbolWithoutHolesWhereStrokesCross()
    {
        QFETCH(QString, symbol);
        QFETCH(QPointF, crossing);
        QCOMPARE(alphaAt(drawn(symbol, 16, GlyphWeight::Medium), crossing.x(), crossing.y()), 255);
    }

    void fadesAsOnePiece()
    {
        const QColor faded(255, 255, 255, 128);
        for (const QString &symbol : glyphNames()) {
            const QImage image = drawn(symbol, 16, GlyphWeight::Bold, faded);
            int highest = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    highest = std::max(highest, qAlpha(image.pixel(x, y)));
            }
            QVERIFY2(std::abs(highest - faded.alpha()) <= 1, qPrintable(symbol));
        }
    }

    void cutsTheMarksOutOfBadges_data()
    {
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QPointF>("inTheMark");
        QTest::newRow("crossing of the mark's lines") << "xmark.circle.fill" << QPointF(12, 12);
        QTest::newRow("end of a line") << "xmark.circle.fill" << QPointF(15, 9);
        QTest::newRow("corner of the check") << "checkmark.seal.fill" << QPointF(11, 15.5);
    }

    void cutsTheMarksOutOfBadges()
    {
        QFETCH(QString, symbol);
        QFETCH(QPointF, inTheMark);
        for (const auto weight : {GlyphWeight::Light, GlyphWeight::Medium, GlyphWeight::Bold}) {
            const QImage image = drawn(symbol, 16, weight);
            QCOMPARE(alphaAt(image, inTheMark.x(), inTheMark.y()), 0);
            QCOMPARE(alphaAt(image, 12, 3), 255);
        }
    }

    void coversMoreWithAHeavierPenButForShapesOfOneWeight()
    {
        const QStringList sameAtEveryWeight{QStringLiteral("checkmark.seal.fill"), QStringLiteral("play.fill"),
                                            QStringLiteral("stop.fill"), QStringLiteral("xmark.circle.fill")};
        for (const QString &symbol : glyphNames()) {
            double before = 0;
            for (const auto weight : {GlyphWeight::Light, GlyphWeight::Regular, GlyphWeight::Medium,
                                      GlyphWeight::Semibold, GlyphWeight::Bold}) {
                const double now = coverage(drawn(symbol, 20, weight));
                const bool same = before > 0 && sameAtEveryWeight.contains(symbol);
                QVERIFY2(same ? qFuzzyCompare(now, before) : now > before, qPrintable(symbol));
                before = now;
            }
        }
    }

    void keepsThePenAtAPixelAndInSteps()
    {
        QCOMPARE(glyphPenWidth(9, GlyphWeight::Light), 1.0);
        QCOMPARE(glyphPenWidth(19, GlyphWeight::Light), 1.25);
        QCOMPARE(glyphPenWidth(16, GlyphWeight::Medium), 1.5);
        QCOMPARE(glyphPenWidth(10.5, GlyphWeight::Semibold), 1.2);
    }

    void turnsClockwiseAboutItsCentre()
    {
        const QImage upright = drawn(QStringLiteral("pin.fill"), 16, GlyphWeight::Medium);
        const QImage turned = drawn(QStringLiteral("pin.fill"), 16, GlyphWeight::Medium, Qt::white, 90);
        QCOMPARE(alphaAt(upright, 12, 20), 255);
        QCOMPARE(alphaAt(turned, 4, 12), 255);
        QCOMPARE(alphaAt(turned, 12, 20), 0);
    }

    void reportsAnUnknownSymbolOnce()
    {
        QTest::ignoreMessage(QtWarningMsg, "no such symbol: \"no.such.symbol\"");
        for (int i = 0; i < 2; ++i)
            QCOMPARE(coverage(drawn(QStringLiteral("no.such.symbol"), 16 + i, GlyphWeight::Light)), 0.0);
    }
};

OSTRELLE_TEST(GlyphTest)
#include "GlyphTest.moc"
