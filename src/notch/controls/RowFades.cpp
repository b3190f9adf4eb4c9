#include "notch/controls/RowFades.h"

#include "notch/controls/AnimatedNumber.h"
#include "records/Motion.h"

#include <utility>

namespace ostrelle {
namespace {

constexpr double kHoverSeconds = 0.16;

} // namespace

RowFades::RowFades(const ControlContext &context, std::function<void()> changed)
    : m_context(context)
    , m_changed(std::move(changed))
{
}

RowFades::~RowFades() = default;

void RowFades::show(const QList<QUuid> &rows)
{
    std::erase_if(m_amounts, [](const auto &entry) { return !entry.second->isMoving() && entry.second->value() == 0; });
    for (const QUuid &row : rows) {
        std::unique_ptr<AnimatedNumber> &amount = m_amounts[row];
        if (!amount)
            amount = std::make_unique<AnimatedNumber>(m_context, 0, m_changed);
    }
    for (const auto &[row, amount] : m_amounts)
        amount->fadeTo(rows.contains(row) ? 1 : 0, Motion::fade(kHoverSeconds));
}

double RowFades::amount(const QUuid &row) const
{
    const auto found = m_amounts.find(row);
    return found != m_amounts.end() ? found->second->value() : 0;
}

} // namespace ostrelle
