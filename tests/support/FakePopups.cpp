#include "support/FakePopups.h"

#include <QWidget>

namespace ostrelle {

namespace {

QtMessageHandler thePreviousHandler = nullptr;

/// The offscreen platform complains about each thing that a menu does to be on top; everything else passes.
void dropPlatformComplaints(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.startsWith(QLatin1String("This plugin does not support")) && thePreviousHandler) {
        thePreviousHandler(type, context, message);
    }
}

} // namespace

FakePopups::FakePopups()
{
    const QtMessageHandler previous = qInstallMessageHandler(&dropPlatformComplaints);
    if (previous != &dropPlatformComplaints) {
        thePreviousHandler = previous;
        m_hasInstalledHandler = true;
    }
}

FakePopups::~FakePopups()
{
    if (m_hasInstalledHandler) {
        qInstallMessageHandler(thePreviousHandler);
    }
}

void FakePopups::openMenu(QMenu &menu, QWidget &anchor, const QPointF &position)
{
    m_menu = &menu;
    m_position = position;
    ++m_count;
    menu.popup(anchor.mapToGlobal(position).toPoint());
}

} // namespace ostrelle
