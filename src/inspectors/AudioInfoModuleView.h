#pragma once

#include "inspectors/InspectorView.h"

namespace ostrelle {

class AudioDetail;
class AudioInspector;

/// The audio tool: the facts of a sound, its tempo, and a player. Space plays or stops the file on display unless a
/// button has the focus, Left and Right go five seconds back and forth in what is being played.
class AudioInfoModuleView : public InspectorView
{
    Q_OBJECT
public:
    AudioInfoModuleView(AudioInspector &inspector, const Surroundings &surroundings, const ControlContext &context,
                        QWidget *parent);
    ~AudioInfoModuleView() override;

protected:
    QString factsText() const override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void follow();
    bool handleKey(const QKeyEvent &event, const QWidget *focused);

    AudioInspector &m_inspector;
    AudioDetail &m_detail;
    QPropertyNotifier m_watch;
};

} // namespace ostrelle
