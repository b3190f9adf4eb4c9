#include "records/ClipText.h"

#include <QChar>
#include <QString>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr qsizetype kNormalizedAtOnce = 256;

bool isAscii(QChar character)
{
    return character.unicode() < 0x80;
}

/// Where the run of ASCII that begins at `from` ends.
qsizetype endOfAscii(QStringView text, qsizetype from)
{
    const auto end = std::find_if_not(text.begin() + from, text.end(), isAscii);
    return end - text.begin();
}

/// In pure ASCII only CR LF is one cluster of two.
qsizetype asciiClusters(QStringView ascii)
{
    qsizetype pairs = 0;
    for (qsizetype i = 1; i < ascii.size(); ++i)
        pairs += ascii[i] == u'\n' && ascii[i - 1] == u'\r' ? 1 : 0;
    return ascii.size() - pairs;
}

qsizetype clusters(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (finder.toNextBoundary() > 0)
        ++count;
    return count;
}

/// The end of a part that holds everything from `from` on that may cluster with what is not ASCII: up to two ASCII
/// characters in a row, and no cut inside CR LF.
qsizetype endOfMixed(QStringView text, qsizetype from)
{
    qsizetype at = from;
    while (at < text.size()) {
        const bool isEdge = isAscii(text[at]) && (at + 1 == text.size() || isAscii(text[at + 1])) && text[at] != u'\r';
        ++at;
        if (isEdge)
            return at;
    }
    return at;
}

/// True for a character that combines with nothing before it in a decomposed text.
bool startsPiece(QChar character)
{
    return !character.isSurrogate() && character.combiningClass() == 0 && !character.isMark();
}

/// Gives a text in canonical decomposition, piece by piece. Pieces are cut before a character that combines with
/// nothing before it, so the pieces together are the decomposition of the whole.
class Decomposition
{
public:
    explicit Decomposition(QStringView text)
        : m_rest(text)
    {
    }

    /// What is decomposed and not consumed; empty only at the end.
    QStringView ready()
    {
        if (m_consumed == m_piece.size())
            decomposeNext();
        return QStringView(m_piece).sliced(m_consumed);
    }
    void consume(qsizetype length) { m_consumed += length; }

private:
    void decomposeNext()
    {
        qsizetype end = std::min(kNormalizedAtOnce, m_rest.size());
        while (end < m_rest.size() && !startsPiece(m_rest[end]))
            ++end;
        m_piece = m_rest.first(end).toString().normalized(QString::NormalizationForm_D);
        m_rest = m_rest.sliced(end);
        m_consumed = 0;
    }

    QStringView m_rest;
    QString m_piece;
    qsizetype m_consumed = 0;
};

bool isPlainAt(QStringView text, qsizetype at)
{
    return at == text.size() || isAscii(text[at]);
}

/// Two ASCII characters that differ, with nothing after them that could combine, cannot become equal.
bool differsForGood(QStringView left, QStringView right, qsizetype at)
{
    return isPlainAt(left, at) && isPlainAt(right, at) && isPlainAt(left, std::min(at + 1, left.size())) &&
           isPlainAt(right, std::min(at + 1, right.size()));
}

} // namespace

bool isWebAddress(QStringView text)
{
    qsizetype scheme = 0;
    if (text.startsWith(u"https://"))
        scheme = 8;
    else if (text.startsWith(u"http://"))
        scheme = 7;
    return scheme > 0 && text.size() > scheme &&
           std::none_of(text.begin() + scheme, text.end(), [](QChar character) { return character.isSpace(); });
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype end = endOfAscii(text, at);
        if (end == text.size())
            return count + asciiClusters(text.sliced(at));
        // The last character of the run may be the base of what follows, and a CR before it belongs to it.
        qsizetype mixed = std::max(at, end - 1);
        if (mixed > at && text[mixed] == u'\n' && text[mixed - 1] == u'\r')
            --mixed;
        count += asciiClusters(text.sliced(at, mixed - at));
        const qsizetype mixedEnd = endOfMixed(text, mixed);
        count += clusters(text.sliced(mixed, mixedEnd - mixed));
        at = mixedEnd;
    }
    return count;
}

bool canonicallyEqual(QStringView left, QStringView right)
{
    const auto [difference, other] = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
    const qsizetype same = difference - left.begin();
    if (same == left.size() && same == right.size())
        return true;
    if (differsForGood(left, right, same))
        return false;
    // The character before the difference may be the base of what differs.
    qsizetype from = std::max<qsizetype>(same - 1, 0);
    while (from > 0 && !startsPiece(left[from]))
        --from;
    Decomposition leftParts(left.sliced(from));
    Decomposition rightParts(right.sliced(from));
    for (;;) {
        const QStringView leftReady = leftParts.ready();
        const QStringView rightReady = rightParts.ready();
        const qsizetype length = std::min(leftReady.size(), rightReady.size());
        if (length == 0)
            return leftReady.isEmpty() && rightReady.isEmpty();
        if (leftReady.first(length) != rightReady.first(length))
            return false;
        leftParts.consume(length);
        rightParts.consume(length);
    }
}

} // namespace ostrelle
