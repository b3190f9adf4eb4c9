#include "inspectors/AudioInfoModuleView.h"

#include "files/AudioPreview.h"
#include "files/RecentFilesStrip.h"
#include "files/RecentRowsView.h"
#include "foundation/MakeChild.h"
#include "inspectors/AudioDetail.h"
#include "inspectors/AudioInspector.h"
#include "media_client/MediaKind.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

namespace ostrelle {
namespace {

constexpr double kSeekStep = 5;

} // namespace

AudioInfoModuleView::AudioInfoModuleView(AudioInspector &inspector, const Surroundings &surroundings,
                                         const ControlContext &context, QWidget *parent)
    : InspectorView(inspector,
                    Kind{.invitation = {.symbol = QStringLiteral("waveform"),
                                        .message = QStringLiteral("Drop an audio file here"),
                                        .hint = {}},
                         .refusal = {.symbol = QStringLiteral("exclamationmark.triangle"),
                                     .message = QStringLiteral("That isn't an audio file"),
                                     .hint = QStringLiteral("Try WAV, AIFF, MP3, M4A, FLAC or CAF")},
                         .chooseHelp = QStringLiteral("Choose an audio file…"),
                         .chooserMessage = QStringLiteral("Choose an audio file to inspect."),
                         .chooserKind = QStringLiteral("Audio files"),
                         .mimeTypes = {QStringLiteral("audio/*")},
                         .namePatterns = extraNamePatterns(NamedKind::Audio),
                         .symbol = QStringLiteral("waveform"),
                         .hasThumbnails = false,
                         .isPlayable = true,
                         .detailHeight = 212},
                    surroundings, context, parent)
    , m_inspector(inspector)
    , m_detail(
          makeChild<AudioDetail>(this, context, surroundings.preview, surroundings.clipboard, surroundings.haptics))
    , m_watch(inspector.bindableInspection().addNotifier([this] { follow(); }))
{
    connect(&m_detail, &AudioDetail::doubleTimeToggled, &inspector, &AudioInspector::toggleDoubleTime);
    setDetail(m_detail);
    // Buttons keep the arrow keys to themselves.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *focused) {
        if (focused != nullptr && isAncestorOf(focused))
            focused->installEventFilter(this);
    });
    follow();
}

AudioInfoModuleView::~AudioInfoModuleView()
{
    // What of it has the focus gives it up later than this.
    qApp->disconnect(this);
}

void AudioInfoModuleView::follow()
{
    m_detail.setInspection(m_inspector.inspection());
    setFocusOrder();
    showFile(m_inspector.inspection().info.has_value());
    for (QWidget *action : InspectorView::headerActions())
        action->installEventFilter(this);
}

QString AudioInfoModuleView::factsText() const
{
    return m_detail.text();
}

bool AudioInfoModuleView::handleKey(const QKeyEvent &event, const QWidget *focused)
{
    AudioPreview &preview = around().preview;
    const QString path = m_inspector.inspection().path;
    const bool isPlain = (event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) == Qt::NoModifier;
    const bool isOnButton = qobject_cast<const QAbstractButton *>(focused) != nullptr;
    // In a value they move what is selected.
    const bool isOnText = qobject_cast<const QLineEdit *>(focused) != nullptr;
    // There it plays the chosen one.
    const bool isOnRow = focused == &strip().rows() && !strip().rows().activeId().isNull();
    switch (event.key()) {
    case Qt::Key_Space:
        if (!isPlain || isOnButton || isOnRow || path.isEmpty())
            return false;
        // Held down it is one wish.
        if (!event.isAutoRepeat())
            preview.toggle(path);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (!isPlain || isOnText || preview.playingPath().isEmpty())
            return false;
        preview.seek(preview.position() + (event.key() == Qt::Key_Left ? -kSeekStep : kSeekStep));
        return true;
    default:
        return false;
    }
}

bool AudioInfoModuleView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress &&
        handleKey(*static_cast<QKeyEvent *>(event), static_cast<QWidget *>(watched)))
        return true;
    return InspectorView::eventFilter(watched, event);
}

void AudioInfoModuleView::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(*event, this))
        InspectorView::keyPressEvent(event);
}

} // namespace ostrelle
