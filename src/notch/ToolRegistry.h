#pragma once

#include "records/KestroModule.h"
#include "records/ModuleBadge.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>

class QWidget;

namespace ostrelle {

class ToolView;
struct ControlContext;

/// What a tool brings to the notch. Everything but the view is optional.
struct Tool
{
    /// Whether files are delivered before their tool is shown, or after: for a tool that takes its time over them.
    enum class Delivery { BeforeShowing, OnceShown };

    /// Makes the tool's body inside the chrome, with `parent`.
    std::function<ToolView &(const ControlContext &context, QWidget &parent)> makeView = {};
    std::function<std::optional<ModuleBadge>()> badge = {};
    /// Number of items the tool holds, for status; nothing while it is not known yet.
    std::function<std::optional<int>()> count = {};
    /// Takes files dropped on its landing zone: all of them, in the order of the drag. One that shows a single file
    /// takes the first.
    std::function<void(const QStringList &paths)> deliver = {};
    Delivery delivery = Delivery::BeforeShowing;
    /// What its landing zone says that it does with files.
    QString dropAction = {};
};

/// The tools that exist. The notch knows them only through here. Main thread.
class ToolRegistry : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    void add(KestroModule module, Tool tool);
    /// The registration of the module, or null.
    const Tool *find(KestroModule module) const;
    /// Makes the module's view; there is one for each that can be chosen.
    ToolView &makeView(KestroModule module, const ControlContext &context, QWidget &parent) const;
    std::optional<ModuleBadge> badge(KestroModule module) const;
    /// To be called by a tool when what badge() answers changed.
    void notifyBadgeChanged(KestroModule module);

Q_SIGNALS:
    void badgeChanged(KestroModule module);

private:
    std::map<KestroModule, Tool> m_tools;
};

} // namespace ostrelle
