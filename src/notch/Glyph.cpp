#include "notch/Glyph.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QLoggingCategory>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPolygonF>
#include <QTransform>
#include <QVarLengthArray>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

// Outside the namespace, as the macro demands; the resource would be dropped from a static library otherwise.
static void initializeIconResource()
{
    Q_INIT_RESOURCE(icons);
}

namespace ostrelle {
namespace {

Q_LOGGING_CATEGORY(lcGlyph, "ostrelle.notch.glyph", QtWarningMsg)

constexpr double kGridUnits = 24;
constexpr double kSquarePerSystemSize = 1.25;
constexpr double kPenStep = 0.05;
constexpr double kDotRadiusPerPen = 0.62;
/// Outlines are kept per this step of the pen, in grid units: far below what is visible, and it bounds their number
/// while a size is animated.
constexpr double kOutlinePenStep = 0.02;
constexpr qsizetype kOutlineLimit = 512;
/// Tolerance of stroked curves in grid units; the stroker's default is meant for pixels and leaves flat spots here.
constexpr double kCurveThreshold = 0.02;

/// Curves become polygons once, as fine as drawn at this many pixels per grid unit: filling polygons takes half the
/// time, and Qt's boolean operations flatten curves too, at a scale of one.
constexpr double kFlatteningScale = 16;

/// Written as the element's class in the files; a stroked centre line has none.
enum class Role {
    Stroke,
    Fill,  ///< filled and stroked with the same pen
    Solid, ///< filled only, for a shape that is the same at every weight
    Dot,   ///< a circle whose radius follows the pen
    Cut,   ///< a stroke of its own width, taken out of the whole symbol
};

struct Mark
{
    QPainterPath path;
    Role role = Role::Stroke;
    double cutWidth = 0;
};

using Marks = std::vector<Mark>;

std::optional<Role> roleOf(QStringView className)
{
    if (className.isEmpty())
        return Role::Stroke;
    if (className == u"fill")
        return Role::Fill;
    if (className == u"solid")
        return Role::Solid;
    if (className == u"dot")
        return Role::Dot;
    if (className == u"cut")
        return Role::Cut;
    return std::nullopt;
}

using Numbers = QVarLengthArray<double, 6>;

bool appendSegment(QPainterPath &path, char16_t command, const Numbers &n)
{
    if (command == u'M' && n.size() == 2)
        path.moveTo(n[0], n[1]);
    else if (command == u'L' && n.size() == 2)
        path.lineTo(n[0], n[1]);
    else if (command == u'Q' && n.size() == 4)
        path.quadTo(n[0], n[1], n[2], n[3]);
    else if (command == u'C' && n.size() == 6)
        path.cubicTo(n[0], n[1], n[2], n[3], n[4], n[5]);
    else
        return false;
    return true;
}

/// The subset of SVG 1.1 path data (8.3) that the icon set keeps to: absolute M, L, Q, C and Z, each with its letter.
std::optional<QPainterPath> parsePathData(QStringView data)
{
    QPainterPath path;
    char16_t command = 0;
    Numbers numbers;
    for (QStringView token : data.split(u' ', Qt::SkipEmptyParts)) {
        if (token.front().isLetter()) {
            if (!numbers.isEmpty())
                return std::nullopt;
            command = token.front().unicode();
            token = token.sliced(1);
            if (command == u'Z') {
                path.closeSubpath();
                continue;
            }
        }
        if (token.isEmpty())
            continue;
        bool isNumber = false;
        numbers.append(token.toDouble(&isNumber));
        if (!isNumber)
            return std::nullopt;
        if (appendSegment(path, command, numbers)) {
            numbers.clear();
            command = 0;
        }
    }
    if (!numbers.isEmpty() || path.isEmpty())
        return std::nullopt;
    return path;
}

std::optional<QPainterPath> shapeOf(QStringView element, const QXmlStreamAttributes &attributes)
{
    const auto number = [&attributes](QLatin1String name) { return attributes.value(name).toDouble(); };
    const auto point = [&number](QLatin1String x, QLatin1String y) { return QPointF(number(x), number(y)); };

    QPainterPath path;
    if (element == u"path")
        return parsePathData(attributes.value(QLatin1String("d")));
    if (element == u"line") {
        path.moveTo(point(QLatin1String("x1"), QLatin1String("y1")));
        path.lineTo(point(QLatin1String("x2"), QLatin1String("y2")));
    } else if (element == u"circle") {
        const double radius = number(QLatin1String("r"));
        path.addEllipse(point(QLatin1String("cx"), QLatin1String("cy")), radius, radius);
    } else if (element == u"rect") {
        const QSizeF size(number(QLatin1String("width")), number(QLatin1String("height")));
        const double radius = number(QLatin1String("rx"));
        path.addRoundedRect(QRectF(point(QLatin1String("x"), QLatin1String("y")), size), radius, radius);
    }
    if (path.isEmpty())
        return std::nullopt;
    return path;
}

QString resourcePath(QStringView symbol)
{
    [[maybe_unused]] static const bool kInitialized = (initializeIconResource(), true);
    return QStringLiteral(":/icons/%1.svg").arg(symbol);
}

/// No marks if the symbol does not exist or its file cannot be read.
Marks readMarks(const QString &symbol)
{
    QFile file(resourcePath(symbol));
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcGlyph) << "no such symbol:" << symbol;
        return {};
    }
    Marks marks;
    QXmlStreamReader xml(&file);
    xml.readNextStartElement();
    while (xml.readNextStartElement()) {
        const auto role = roleOf(xml.attributes().value(QLatin1String("class")));
        const auto path = shapeOf(xml.name(), xml.attributes());
        if (role && path)
            marks.push_back({*path, *role, xml.attributes().value(QLatin1String("stroke-width")).toDouble()});
        else
            xml.raiseError(QStringLiteral("an element outside the icon set's subset of SVG"));
        xml.skipCurrentElement();
    }
    if (xml.hasError()) {
        qCWarning(lcGlyph) << "cannot read symbol" << symbol << "line" << xml.lineNumber() << xml.errorString();
        return {};
    }
    return marks;
}

double signedArea(const QPainterPath &path)
{
    double sum = 0;
    for (const QPolygonF &polygon : path.toSubpathPolygons()) {
        for (qsizetype i = 0; i < polygon.size(); ++i) {
            const QPointF a = polygon[i];
            const QPointF b = polygon[(i + 1) % polygon.size()];
            sum += a.x() * b.y() - b.x() * a.y();
        }
    }
    return sum / 2;
}

/// Pieces that all turn the same way unite under the winding rule without a boolean operation.
void unite(QPainterPath &outline, const QPainterPath &piece)
{
    outline.addPath(signedArea(piece) < 0 ? piece.toReversed() : piece);
}

QPainterPath stroked(const QPainterPath &path, double pen)
{
    QPainterPathStroker stroker;
    stroker.setWidth(pen);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    stroker.setCurveThreshold(kCurveThreshold);
    return stroker.createStroke(path);
}

QPainterPath polygonsOf(const QPainterPath &path, const QTransform &transform)
{
    QPainterPath polygons;
    polygons.setFillRule(path.fillRule());
    for (const QPolygonF &polygon : path.toSubpathPolygons(transform)) {
        polygons.addPolygon(polygon);
        polygons.closeSubpath();
    }
    return polygons;
}

QPainterPath outlineOf(const Marks &marks, double pen)
{
    QPainterPath outline;
    QPainterPath cuts;
    outline.setFillRule(Qt::WindingFill);
    cuts.setFillRule(Qt::WindingFill);
    for (const Mark &mark : marks) {
        switch (mark.role) {
        case Role::Fill:
            unite(outline, mark.path);
            [[fallthrough]];
        case Role::Stroke:
            unite(outline, stroked(mark.path, pen));
            break;
        case Role::Solid:
            unite(outline, mark.path);
            break;
        case Role::Dot: {
            QPainterPath dot;
            dot.addEllipse(mark.path.boundingRect().center(), kDotRadiusPerPen * pen, kDotRadiusPerPen * pen);
            unite(outline, dot);
            break;
        }
        case Role::Cut:
            unite(cuts, stroked(mark.path, mark.cutWidth));
            break;
        }
    }
    const QTransform enlarge = QTransform::fromScale(kFlatteningScale, kFlatteningScale);
    QPainterPath polygons = polygonsOf(outline, enlarge);
    if (!cuts.isEmpty())
        polygons = polygons.subtracted(polygonsOf(cuts, enlarge));
    return enlarge.inverted().map(polygons);
}

struct OutlineKey
{
    QString symbol;
    int penSteps = 0;

    friend bool operator==(const OutlineKey &, const OutlineKey &) = default;
    friend size_t qHash(const OutlineKey &key, size_t seed = 0) { return qHashMulti(seed, key.symbol, key.penSteps); }
};

/// What is painted for a symbol, by symbol and pen, in grid units. A symbol that cannot be read stays in it with no
/// marks, so that it is reported once.
class GlyphOutlines
{
public:
    const QPainterPath &outline(QStringView symbol, double penInGridUnits)
    {
        const OutlineKey key{symbol.toString(), qRound(penInGridUnits / kOutlinePenStep)};
        if (const auto found = m_outlines.constFind(key); found != m_outlines.cend())
            return *found;
        if (m_outlines.size() >= kOutlineLimit)
            m_outlines.clear();
        return *m_outlines.insert(key, outlineOf(marks(key.symbol), key.penSteps * kOutlinePenStep));
    }

private:
    const Marks &marks(const QString &symbol)
    {
        if (const auto found = m_marks.constFind(symbol); found != m_marks.cend())
            return *found;
        return *m_marks.insert(symbol, readMarks(symbol));
    }

    QHash<QString, Marks> m_marks;
    QHash<OutlineKey, QPainterPath> m_outlines;
};

double penPerSystemSize(GlyphWeight weight)
{
    switch (weight) {
    case GlyphWeight::Light:
        return 0.066;
    case GlyphWeight::Regular:
        return 0.082;
    case GlyphWeight::Medium:
        return 0.094;
    case GlyphWeight::Semibold:
        return 0.112;
    case GlyphWeight::Bold:
        return 0.136;
    }
    Q_UNREACHABLE();
}

} // namespace

double glyphPenWidth(double systemSize, GlyphWeight weight)
{
    return std::max(1.0, std::round(systemSize * penPerSystemSize(weight) / kPenStep) * kPenStep);
}

void paintGlyph(QPainter &painter, QStringView symbol, const QRectF &box, double systemSize, GlyphWeight weight,
                const QColor &color, double rotationDegrees)
{
    if (systemSize <= 0)
        return;
    static GlyphOutlines outlines;
    const double scale = kSquarePerSystemSize * systemSize / kGridUnits;
    const QPainterPath &outline = outlines.outline(symbol, glyphPenWidth(systemSize, weight) / scale);
    if (outline.isEmpty())
        return;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.center());
    painter.rotate(rotationDegrees);
    painter.scale(scale, scale);
    painter.translate(-kGridUnits / 2, -kGridUnits / 2);
    painter.fillPath(outline, color);
    painter.restore();
}

QStringList glyphNames()
{
    QStringList names = QDir(resourcePath(u"*").section(u'/', 0, 1)).entryList({QStringLiteral("*.svg")}, QDir::Files);
    for (QString &name : names)
        name.chop(4);
    names.sort();
    return names;
}

bool hasGlyph(QStringView symbol)
{
    return QFile::exists(resourcePath(symbol));
}

} // namespace ostrelle
