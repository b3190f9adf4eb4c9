#pragma once

#include "notch/FrameClock.h"
#include "notch/controls/ControlContext.h"
#include "updates/UpdateStatus.h"
#include "windows/controls/WrappedText.h"

#include <QPointer>
#include <QUrl>
#include <QWidget>

namespace ostrelle {

class PushButton;
class SettingsStore;
class UpdateService;

/// What is known about updates, with what can be done about it at the end of its first line.
class UpdateRow : public QWidget, private FrameClock::Client
{
    Q_OBJECT
public:
    UpdateRow(const ControlContext &context, QWidget *parent);
    ~UpdateRow() override;

    void showState(const UpdateService &updates, const SettingsStore &settings);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return {0, heightForWidth(kUnbroken)}; }

Q_SIGNALS:
    void checkRequested();
    void skipRequested();
    void downloadRequested(const QUrl &address);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// What stands before the title.
    enum class Mark { None, Available, Failed, Busy };

    bool advance(MonotonicTime now) override;
    void handOnFocus(bool hadFocus, PushButton &button);
    void arrange();
    double textX() const;
    void paintMark(QPainter &painter) const;
    WrappedText subtitle(int width) const;

    ControlContext m_context;
    UpdateStatus m_status;
    Mark m_mark = Mark::None;
    QUrl m_address;
    MonotonicTime m_now{}; ///< of the frame on screen, for the turning mark
    int m_buttonsX = 0;
    PushButton &m_skip;
    PushButton &m_download;
    PushButton &m_check;
    QPointer<QWidget> m_stoodIn; ///< has the focus while the button that had it is disabled
};

} // namespace ostrelle
