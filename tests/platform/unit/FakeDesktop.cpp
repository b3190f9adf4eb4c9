#include "ContractDesktop.h"
#include "support/FakeColourPicker.h"
#include "support/FakeDragOut.h"
#include "support/FakeDragSense.h"
#include "support/FakeFileDrags.h"
#include "support/FakeHotKeys.h"
#include "support/FakeKeyboardLayout.h"
#include "support/FakeOutsideActivity.h"
#include "support/FakePanelHost.h"
#include "support/FakePointerNear.h"
#include "support/FakePopups.h"
#include "support/FakeScreens.h"

#include <QTest>

#include <functional>

namespace ostrelle {

namespace {

class FakeDesktop final : public ContractDesktop
{
public:
    PanelHost &panelHost() override { return m_panelHost; }
    Popups &popups() override { return m_popups; }
    OutsideActivity &outsideActivity() override { return m_outsideActivity; }
    PointerNear &pointerNear() override { return m_pointerNear; }
    DragSense &dragSense() override { return m_dragSense; }
    FileDrags &fileDrags() override { return m_fileDrags; }
    DragOut &dragOut() override { return m_dragOut; }
    Screens &screens() override { return m_screens; }
    ColourPicker &colourPicker() override { return m_colourPicker; }
    HotKeys &hotKeys() override { return m_hotKeys; }
    KeyboardLayout &keyboardLayout() override { return m_keyboardLayout; }

    void movePointer(const QPointF &panelPosition) override
    {
        m_pointerNear.moveTo(panelPosition);
        if (m_dragged.isEmpty()) {
            return;
        }
        if (!m_panelHost.interactiveRect().contains(panelPosition)) {
            m_fileDrags.leave();
        } else if (m_fileDrags.isOver()) {
            m_fileDrags.moveTo(panelPosition);
        } else {
            m_fileDrags.enter(panelPosition, m_dragged);
        }
    }
    void movePointerToScreen(const QString &name) override { m_pointerNear.moveToScreen(name); }
    void showColours(const QList<QColor> &) override {}
    void pointAt(const QColor &colour) override { m_pointed = colour; }
    void clickWithShift() override { m_colourPicker.gather(pointedColour()); }
    bool showsLoupe() override { return m_colourPicker.isOpen(); }
    void pressButton() override
    {
        if (!m_colourPicker.isOpen()) {
            m_dragSense.press();
        }
    }
    void releaseButton() override
    {
        if (m_colourPicker.isOpen()) {
            m_colourPicker.choose(pointedColour());
            return;
        }
        m_dragSense.release();
        m_dragged.clear();
        m_fileDrags.drop();
        m_dragOut.end(DragOut::Outcome::Cancelled);
    }
    void pressKey(Qt::Key key) override
    {
        if (m_colourPicker.isOpen()) {
            m_colourPicker.close();
        } else {
            QTest::keyClick(m_popups.menu(), key);
        }
    }
    void clickElsewhere() override { m_outsideActivity.press(); }
    void activate(const QString &application) override { m_outsideActivity.activate(application); }
    void beginDrag() override { m_dragSense.beginDrag(); }
    void dragFiles(const QStringList &paths) override
    {
        m_dragSense.press();
        m_dragSense.beginDrag();
        m_dragged = paths;
    }
    void arrangeScreens(const QList<QString> &names) override
    {
        QList<Screen> screens;
        const double width = 1920.0 / static_cast<double>(names.count());
        for (const QString &name : names) {
            screens.append(
                FakeScreens::make(name, QRectF(width * static_cast<double>(screens.count()), 0, width, 1080)));
        }
        m_screens.arrange(screens);
    }
    void holdKeys(quint32 keyCode, Qt::KeyboardModifiers modifiers) override
    {
        m_repeat = [this, keyCode, modifiers] { m_hotKeys.press(keyCode, modifiers); };
        m_repeat();
    }
    void letKeysRepeat() override { m_repeat(); }
    void releaseKeys() override { m_hotKeys.release(); }
    void takeKeysElsewhere(quint32 keyCode, Qt::KeyboardModifiers modifiers) override
    {
        m_hotKeys.holdElsewhere(keyCode, modifiers);
    }
    void letKeysGoElsewhere() override { m_hotKeys.letGoElsewhere(); }
    void changeWindowManager() override { m_hotKeys.askAgain(); }

private:
    PickedColour pointedColour() const { return {m_pointed.redF(), m_pointed.greenF(), m_pointed.blueF()}; }

    FakeScreens m_screens;
    FakePanelHost m_panelHost{m_screens};
    FakePopups m_popups;
    FakeOutsideActivity m_outsideActivity;
    FakePointerNear m_pointerNear;
    FakeDragSense m_dragSense;
    FakeFileDrags m_fileDrags;
    FakeDragOut m_dragOut;
    FakeColourPicker m_colourPicker;
    QColor m_pointed;
    FakeHotKeys m_hotKeys;
    FakeKeyboardLayout m_keyboardLayout;
    std::function<void()> m_repeat;
    QStringList m_dragged;
};

} // namespace

std::unique_ptr<ContractDesktop> ContractDesktop::make()
{
    return std::make_unique<FakeDesktop>();
}

} // namespace ostrelle
