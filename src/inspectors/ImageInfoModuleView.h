#pragma once

#include "inspectors/InspectorView.h"

namespace ostrelle {

class ImageDetail;
class ImageInspector;

/// The image tool: a picture and its facts.
class ImageInfoModuleView : public InspectorView
{
    Q_OBJECT
public:
    ImageInfoModuleView(ImageInspector &inspector, const Surroundings &surroundings, const ControlContext &context,
                        QWidget *parent);
    ~ImageInfoModuleView() override;

protected:
    QString factsText() const override;

private:
    void follow();

    ImageInspector &m_inspector;
    ImageDetail &m_detail;
    QPropertyNotifier m_watch;
};

} // namespace ostrelle
