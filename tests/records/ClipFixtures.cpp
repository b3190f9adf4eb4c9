#include "ClipFixtures.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace ostrelle {
namespace {

template <typename T>
std::optional<T> awaited(const std::function<void(QObject *, std::function<void(std::optional<T>)>)> &ask)
{
    QObject context;
    std::optional<std::optional<T>> answered;
    ask(&context, [&](std::optional<T> answer) { answered = std::move(answer); });
    return QTest::qWaitFor([&] { return answered.has_value(); }) ? *answered : std::nullopt;
}

} // namespace

ClipItem textClip(const QString &text, double date)
{
    ClipItem item;
    item.id = QUuid::createUuid();
    item.text = text;
    item.date = date;
    return item;
}

ClipItem imageClip(const QByteArray &image, double date)
{
    ClipItem item;
    item.id = QUuid::createUuid();
    item.kind = ClipItem::Kind::Image;
    item.image = ClipImage{QStringLiteral("public.png"), image.size(), QSize()};
    item.date = date;
    item.appName = QStringLiteral("Paint \"X\"");
    return item;
}

QByteArray noise(qsizetype size, quint32 seed)
{
    QRandomGenerator generator(seed);
    std::vector<quint32> words(static_cast<std::size_t>(size) / sizeof(quint32) + 1);
    generator.fillRange(words.data(), static_cast<qsizetype>(words.size()));
    return QByteArray(reinterpret_cast<const char *>(words.data()), size);
}

void ExpectedHistory::insert(const ClipItem &item, const QByteArray &image)
{
    m_items.prepend(item);
    m_images.insert(item.id, image);
    m_store->insertAtTop(item, image);
}

void ExpectedHistory::moveToTop(int index, double date)
{
    m_items.move(index, 0);
    m_items.first().date = date;
    m_store->moveToTop(m_items.first().id, date);
}

void ExpectedHistory::togglePin(int index)
{
    m_items[index].pinned = !m_items[index].pinned;
    m_store->setPinned(m_items[index].id, m_items[index].pinned);
}

QList<QUuid> ExpectedHistory::takeId(int index)
{
    m_removedIndex = index;
    m_removed = m_items.takeAt(index);
    return {m_removed.id};
}

void ExpectedHistory::trim(int index)
{
    m_store->trim(takeId(index));
}

void ExpectedHistory::remove(int index, ClipboardStore::Erasure erasure)
{
    m_store->remove(takeId(index), erasure);
}

void ExpectedHistory::restore()
{
    m_items.insert(m_removedIndex, m_removed);
    QList<QUuid> order;
    for (const ClipItem &item : std::as_const(m_items))
        order.append(item.id);
    m_store->restore({m_removed}, order);
}

std::optional<QByteArray> readImage(ClipboardStore &store, const QUuid &id)
{
    return awaited<QByteArray>([&](QObject *context, auto answer) { store.readImage(id, context, std::move(answer)); });
}

std::optional<QUuid> findImage(ClipboardStore &store, const QByteArray &image, const QList<QUuid> &candidates)
{
    return awaited<QUuid>(
        [&](QObject *context, auto answer) { store.findImage(image, candidates, context, std::move(answer)); });
}

void compareWithStore(ClipboardStore &store, const QList<ClipItem> &loaded, const ExpectedHistory &expected)
{
    QCOMPARE(loaded.size(), expected.items().size());
    for (qsizetype i = 0; i < loaded.size(); ++i) {
        QCOMPARE(loaded[i].id, expected.items()[i].id);
        QVERIFY(loaded[i] == expected.items()[i]);
        if (loaded[i].kind == ClipItem::Kind::Image)
            QVERIFY(readImage(store, loaded[i].id) == expected.image(loaded[i].id));
    }
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
}

bool folderContains(const QString &folder, const QByteArray &needle)
{
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    return std::any_of(names.begin(), names.end(),
                       [&](const QString &name) { return fileContent(folder + u'/' + name).contains(needle); });
}

} // namespace ostrelle
