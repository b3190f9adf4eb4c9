#include "inspectors/InspectorView.h"

#include "files/FilePicker.h"
#include "files/RecentFilesStrip.h"
#include "files/RecentRowsView.h"
#include "foundation/MakeChild.h"
#include "inspectors/FileInspector.h"
#include "inspectors/RefusalNote.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/DropOverlay.h"
#include "notch/controls/DropWell.h"
#include "notch/controls/GlyphButton.h"
#include "platform/ClipboardPort.h"
#include "platform/Haptics.h"
#include "records/Motion.h"

#include <QApplication>
#include <QKeyEvent>

#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

/// Header and tool strip.
constexpr double kAboveContent = 106;
constexpr double kWellHeight = 154;
constexpr int kWellSide = 14;
constexpr int kWellAbove = 12;
constexpr double kDetailResponse = 0.22;

} // namespace

InspectorView::InspectorView(FileInspector &inspector, Kind kind, const Surroundings &surroundings,
                             const ControlContext &context, QWidget *parent)
    : ToolView(parent)
    , m_inspector(inspector)
    , m_kind(std::move(kind))
    , m_around(surroundings)
    , m_context(context)
    , m_choose(makeChild<GlyphButton>(
          this, context, GlyphButton::Content{.symbol = QStringLiteral("folder"), .help = m_kind.chooseHelp}))
    , m_clear(makeChild<GlyphButton>(
          this, context, GlyphButton::Content{.symbol = QStringLiteral("xmark"), .help = QStringLiteral("Clear")}))
    , m_well(makeChild<DropWell>(this, context))
    , m_invitation(makeChild<EmptyStateView>(&m_well, context, m_kind.invitation))
    , m_refusal(makeChild<EmptyStateView>(&m_well, context, m_kind.refusal))
    , m_strip(makeChild<RecentFilesStrip>(
          this, context,
          RecentListModel::Surroundings{.recents = inspector.recents(),
                                        .presence = surroundings.presence,
                                        .preview = m_kind.isPlayable ? &surroundings.preview : nullptr,
                                        .thumbnails = m_kind.hasThumbnails ? &surroundings.thumbnails : nullptr},
          m_kind.symbol))
    , m_note(makeChild<RefusalNote>(this, context, m_kind.refusal))
    , m_overlay(makeChild<DropOverlay>(this, context))
    , m_shown(context, 0, [this] { applyFade(); })
    , m_shake(context, [this] { arrange(); })
    , m_rejectionWatch(inspector.bindableRejected().addNotifier([this] { followRejection(); }))
    , m_recentsWatch(inspector.recents().bindableItems().addNotifier([this] { followRecents(); }))
{
    m_refusal.hide();
    // The chrome shows them when it takes them over.
    m_choose.hide();
    m_clear.hide();
    connect(&m_choose, &QAbstractButton::clicked, this, &InspectorView::choose);
    connect(&m_clear, &QAbstractButton::clicked, this, [this] { m_inspector.clear(); });
    connect(&m_strip, &RecentFilesStrip::opened, this, [this](const RecentFile &file) { m_inspector.open(file); });
    connect(&m_strip, &RecentFilesStrip::forgotten, this,
            [this](const RecentFile &file) { m_inspector.recents().remove(file.path); });
    connect(&m_strip, &RecentFilesStrip::clearWanted, this, [this] {
        m_inspector.recents().clear();
        setExpanded(false);
    });
    connect(&m_strip, &RecentFilesStrip::expansionWanted, this, &InspectorView::setExpanded);
    connect(&m_note, &RefusalNote::faded, this, &InspectorView::applyFade);
    m_strip.setVisible(!inspector.recents().items().isEmpty());
    if (inspector.isRejected())
        followRejection();
}

InspectorView::~InspectorView() = default;

void InspectorView::setDetail(QWidget &detail)
{
    m_detail = &detail;
    detail.hide();
    m_wellFade = &makeChild<ContentFade>(&m_well);
    m_detailFade = &makeChild<ContentFade>(&detail);
    for (const auto &[widget, fade] : {std::pair<QWidget *, ContentFade *>(&m_well, m_wellFade),
                                       std::pair<QWidget *, ContentFade *>(&detail, m_detailFade)}) {
        widget->setGraphicsEffect(fade);
        fade->setEnabled(false);
    }
    m_note.raise();
    m_overlay.raise();
    setFocusOrder();
}

void InspectorView::setFocusOrder()
{
    QWidget *previous = &m_clear;
    for (auto *control : m_detail->findChildren<QWidget *>()) {
        // One that takes no focus has no place in the order.
        if (control->focusPolicy() == Qt::NoFocus)
            continue;
        setTabOrder(previous, control);
        previous = control;
    }
}

std::optional<double> InspectorView::wantedBodyHeight() const
{
    const int recents = m_inspector.recents().items().isEmpty() ? 0
                        : m_strip.isExpanded()                  ? RecentFilesStrip::kExpandedHeight
                                                                : RecentFilesStrip::kCollapsedHeight;
    return kAboveContent + (m_hasFile ? m_kind.detailHeight : kWellHeight) + recents;
}

QList<QWidget *> InspectorView::headerActions()
{
    return m_hasFile ? QList<QWidget *>{&m_choose, &m_clear} : QList<QWidget *>{&m_choose};
}

QList<MenuEntry> InspectorView::menuEntries()
{
    if (!m_hasFile)
        return {};
    return {{.text = QStringLiteral("Copy all"), .action = [this] {
                 m_around.clipboard.write(factsText());
                 m_around.haptics.tick();
             }}};
}

void InspectorView::appeared()
{
    setFocus(Qt::OtherFocusReason);
}

bool InspectorView::acceptsDrop(const QStringList &paths) const
{
    // Any file: one that is of no use here is refused in words.
    return !paths.isEmpty();
}

void InspectorView::setDropTargeted(bool targeted)
{
    m_isTargeted = targeted;
    showTarget();
}

void InspectorView::showTarget()
{
    m_well.setTargeted(m_isTargeted && !m_hasFile);
    m_overlay.setTargeted(m_isTargeted && m_hasFile);
}

bool InspectorView::dropFiles(const QStringList &paths)
{
    if (paths.isEmpty())
        return false;
    m_inspector.load(paths.first());
    return true;
}

void InspectorView::undo()
{
    if (m_inspector.recents().canUndo())
        m_inspector.recents().undo();
}

void InspectorView::choose()
{
    FileChoice choice;
    choice.kind = FileChoice::Kind::File;
    choice.message = m_kind.chooserMessage;
    choice.mimeTypes = m_kind.mimeTypes;
    choice.namePatterns = m_kind.namePatterns;
    choice.kindName = m_kind.chooserKind;
    // The tool may be closed when the answer comes.
    m_around.picker.pick(choice, &m_inspector, FilePicker::AfterCancel::CollapseLater,
                         [&inspector = m_inspector](const QStringList &paths) {
                             if (!paths.isEmpty())
                                 inspector.load(paths.first());
                         });
}

void InspectorView::followRejection()
{
    EmptyStateView &coming = m_inspector.isRejected() ? m_refusal : m_invitation;
    EmptyStateView &going = m_inspector.isRejected() ? m_invitation : m_refusal;
    going.disappear();
    coming.appear();
    showNote();
    if (m_inspector.isRejected() && m_hasFile)
        m_shake.start();
}

/// Where a file is on display nothing else says that another one was refused.
void InspectorView::showNote()
{
    m_note.setShown(m_inspector.isRejected() && m_hasFile);
}

void InspectorView::followRecents()
{
    const bool hasRecents = !m_inspector.recents().items().isEmpty();
    if (!hasRecents && m_strip.isAncestorOf(QApplication::focusWidget()))
        setFocus(Qt::OtherFocusReason);
    if (!hasRecents && m_strip.isExpanded())
        setExpanded(false);
    m_strip.setVisible(hasRecents);
    tellHeight();
}

void InspectorView::setExpanded(bool expanded)
{
    m_strip.setExpanded(expanded);
    arrange();
    tellHeight();
}

void InspectorView::showFile(bool hasFile)
{
    if (hasFile == m_hasFile)
        return;
    m_hasFile = hasFile;
    // The button that had it may be gone with the file.
    const QWidget *focused = QApplication::focusWidget();
    if (!hasFile && focused != nullptr && (m_clear.hasFocus() || m_detail->isAncestorOf(focused)))
        setFocus(Qt::OtherFocusReason);
    m_clear.setVisible(hasFile && m_clear.parentWidget() != this);
    m_shown.animateTo(hasFile ? 1 : 0, Motion::damped(kDetailResponse));
    // A view that is not on screen yet has nothing to fade from.
    if (!isVisible())
        m_shown.jumpTo(hasFile ? 1 : 0);
    showNote();
    applyFade();
    showTarget();
    Q_EMIT headerActionsChanged();
    tellHeight();
}

void InspectorView::applyFade()
{
    const double detail = m_shown.value();
    const QRectF everything(rect());
    m_well.setVisible(detail < 1 || !m_hasFile);
    m_detail->setVisible(detail > 0 || m_hasFile);
    m_wellFade->setLook(1 - detail, everything.translated(-m_well.pos()));
    m_detailFade->setLook(detail * m_note.remainder(), everything.translated(-m_detail->pos()));
    m_wellFade->setEnabled(m_shown.isMoving());
    m_detailFade->setEnabled(m_shown.isMoving() || m_note.remainder() < 1);
    m_well.update();
    m_detail->update();
    arrange();
}

void InspectorView::tellHeight()
{
    const double height = *wantedBodyHeight();
    if (std::exchange(m_wantedHeight, height) != height)
        Q_EMIT wantedBodyHeightChanged();
}

void InspectorView::arrange()
{
    const auto detail = static_cast<int>(m_kind.detailHeight);
    m_well.setGeometry(kWellSide, kWellAbove, width() - 2 * kWellSide, static_cast<int>(kWellHeight) - 2 * kWellAbove);
    if (m_detail != nullptr)
        m_detail->setGeometry(static_cast<int>(std::lround(m_shake.offset())), 0, width(), detail);
    m_note.setGeometry(0, 0, width(), detail);
    // The recent files travel while the one gives way to the other.
    const double shown = m_context.appearance.reducesMotion() ? m_shown.target() : m_shown.value();
    const auto above = static_cast<int>(std::lround(kWellHeight + (m_kind.detailHeight - kWellHeight) * shown));
    const int strip = m_strip.isExpanded() ? RecentFilesStrip::kExpandedHeight : RecentFilesStrip::kCollapsedHeight;
    m_strip.setGeometry(0, above, width(), strip);
    m_overlay.setGeometry(rect());
}

void InspectorView::keyPressEvent(QKeyEvent *event)
{
    const bool isForList = event->key() == Qt::Key_Up || event->key() == Qt::Key_Down;
    if (isForList && m_strip.isVisible() && m_strip.isExpanded())
        m_strip.rows().setFocus(Qt::TabFocusReason);
    else
        ToolView::keyPressEvent(event);
}

void InspectorView::resizeEvent(QResizeEvent *)
{
    arrange();
}

} // namespace ostrelle
