#pragma once

#include "inspectors/AudioHead.h"
#include "notch/controls/MetadataGrid.h"

#include <QPointer>

namespace ostrelle {

class SoftButton;
struct AudioInspection;

/// What the audio tool shows of a file: its head, and the facts in two columns.
class AudioDetail : public QWidget
{
    Q_OBJECT
public:
    AudioDetail(const ControlContext &context, AudioPreview &preview, ClipboardPort &clipboard, Haptics &haptics,
                QWidget *parent);
    ~AudioDetail() override;

    /// Keeps what it shows when there is no file: it is on its way out then.
    void setInspection(const AudioInspection &inspection);
    QString text() const { return m_facts.text(); }

Q_SIGNALS:
    void doubleTimeToggled();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showDoubleTime(const AudioInspection &inspection);

    ControlContext m_context;
    AudioHead &m_head;
    MetadataGrid &m_facts;
    QPointer<SoftButton> m_doubleTime; ///< in the row of the tempo
};

} // namespace ostrelle
