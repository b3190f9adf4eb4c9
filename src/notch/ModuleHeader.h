#pragma once

#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QWidget>

#include <optional>

namespace ostrelle {

class BackButton;

/// The leading end of a tool's header: the way back and the tool's title. It stays while tools change; symbol and title
/// cross-fade.
class ModuleHeader : public QWidget
{
    Q_OBJECT
public:
    /// Wide enough for every title; the rest of the header is the tool's own.
    static constexpr int kWidth = 220;

    /// Opacities of one frame.
    struct Look
    {
        double header = 0;   ///< of the way back
        double arriving = 1; ///< of the present tool's symbol and title
        double leaving = 0;  ///< of the previous tool's

        friend bool operator==(const Look &, const Look &) = default;
    };

    ModuleHeader(const ControlContext &context, QWidget *parent);
    ~ModuleHeader() override;

    /// None: there is only the previous tool, on its way out.
    void setModule(std::optional<KestroModule> module);
    void setLook(const Look &look);

Q_SIGNALS:
    void backRequested();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
    BackButton &m_back;
    std::optional<KestroModule> m_module;
    std::optional<KestroModule> m_previous;
    Look m_look;
};

} // namespace ostrelle
