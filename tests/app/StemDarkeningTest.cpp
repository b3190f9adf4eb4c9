#include "notch/Theme.h"
#include "support/TestBase.h"
#include "support/TestMain.h"

#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTest>

#include <functional>

using namespace ostrelle;

namespace {

const auto kText = QStringLiteral("Clipboard, Projects, harbour.png");
constexpr QPointF kBaseline{5, 20};
/// Outlines of this size have no hinting that matters, and no darkening.
constexpr int kOutlineSize = 2000;

/// Pixels that are covered, those in part for their part.
double ink(const std::function<void(QPainter &)> &draw)
{
    QImage image(800, 60, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::white);
    draw(painter);
    painter.end();
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qGray(image.pixel(x, y)) / 255.0;
    }
    return sum;
}

} // namespace

class StemDarkeningTest : public TestBase
{
    Q_OBJECT
private Q_SLOTS:
    void textHasTheWeightOfItsOutlines();
};

void StemDarkeningTest::textHasTheWeightOfItsOutlines()
{
    const QFont font = Theme::font(FontRole::CaptionMedium);
    QCOMPARE(QFontInfo(font).family(), QStringLiteral("Inter"));
    QFont large = font;
    large.setPixelSize(kOutlineSize);
    large.setHintingPreference(QFont::PreferNoHinting);
    QPainterPath outlines;
    outlines.addText({}, large, kText);
    const double scale = double(font.pixelSize()) / kOutlineSize;

    const double drawn = ink([&font](QPainter &painter) {
        painter.setFont(font);
        painter.drawText(kBaseline, kText);
    });
    const double expected = ink([&](QPainter &painter) {
        painter.translate(kBaseline);
        painter.scale(scale, scale);
        painter.fillPath(outlines, Qt::white);
    });
    QVERIFY2(drawn > 0.96 * expected && drawn < 1.04 * expected, qPrintable(QString::number(drawn / expected)));
}

OSTRELLE_TEST(StemDarkeningTest)

#include "StemDarkeningTest.moc"
