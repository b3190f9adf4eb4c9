#include "support/FakeScreens.h"

namespace ostrelle {

FakeScreens::FakeScreens(QObject *parent)
    : Screens(parent)
    , m_all{make(QStringLiteral("Fake-1"), QRectF(0, 0, 1920, 1080))}
{
}

std::optional<Screen> FakeScreens::primary() const
{
    return m_all.isEmpty() ? std::nullopt : std::optional(m_all.first());
}

void FakeScreens::arrange(const QList<Screen> &screens)
{
    if (m_all != screens) {
        m_all = screens;
        Q_EMIT changed();
    }
}

Screen FakeScreens::make(const QString &name, const QRectF &frame)
{
    Screen screen;
    screen.name = name;
    screen.frame = frame;
    return screen;
}

} // namespace ostrelle
