#pragma once

#include "platform/PanelHost.h"

#include <QColor>
#include <QPointer>
#include <QString>
#include <QWidget>

namespace ostrelle {

class Screens;

/// A panel host without a desktop around it. Answers come from the event loop, as the real ones do.
class FakePanelHost final : public PanelHost
{
    Q_OBJECT
public:
    explicit FakePanelHost(const Screens &screens, QObject *parent = nullptr);

    void attach(QWidget &panel) override;
    void place(const QString &screenName, const QSizeF &size) override;
    void raise() override { ++m_raiseCount; }
    void setGivingWay(bool givesWay) override { m_isGivingWay = givesWay; }
    void setInteractiveRect(const QRectF &rect) override { m_interactiveRect = rect; }
    void setOutline(const QPainterPath &outline) override { m_outline = outline; }
    Glass glass() const override { return m_glass; }
    bool hasCompositor() const override { return m_glass != Glass::None; }
    void captureBackdrop(const QRectF &area, QObject *context, std::function<void(BackdropCapture)> answer) override;
    void takeKeyboard(const ActivationToken &token) override;
    void releaseKeyboard() override;
    bool hasKeyboard() const override { return m_hasKeyboard; }

    /// What the desktop does.
    void setGlass(Glass glass);
    /// Requests for the keyboard are refused from now on.
    void refuseKeyboard() { m_isRefusingKeyboard = true; }
    /// Another window takes the keyboard, at once.
    void loseKeyboard();
    /// What captures show; an invalid colour makes them fail.
    void setBackdrop(const QColor &colour) { m_backdrop = colour; }

    /// What the program asked for.
    QWidget *panel() const { return m_panel; }
    QString screenName() const { return m_screenName; }
    QSizeF size() const { return m_size; }
    QRectF interactiveRect() const { return m_interactiveRect; }
    QPainterPath outline() const { return m_outline; }
    QString lastToken() const { return m_lastToken; }
    bool isGivingWay() const { return m_isGivingWay; }
    int raiseCount() const { return m_raiseCount; }
    int placeCount() const { return m_placeCount; }
    int captureCount() const { return m_captureCount; }

private:
    void setHasKeyboard(bool has);

    const Screens &m_screens;
    QPointer<QWidget> m_panel;
    QString m_screenName;
    QSizeF m_size;
    QRectF m_interactiveRect;
    QPainterPath m_outline;
    QString m_lastToken;
    QColor m_backdrop = Qt::darkGray;
    Glass m_glass = Glass::Snapshot;
    int m_raiseCount = 0;
    int m_placeCount = 0;
    int m_captureCount = 0;
    bool m_hasKeyboard = false;
    bool m_isGivingWay = false;
    bool m_isRefusingKeyboard = false;
};

} // namespace ostrelle
