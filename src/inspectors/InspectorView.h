#pragma once

#include "notch/ContentFade.h"
#include "notch/ToolView.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/EmptyStateView.h"
#include "notch/controls/Shake.h"

#include <QPropertyNotifier>
#include <QString>
#include <QStringList>

namespace ostrelle {

class AudioPreview;
class ClipboardPort;
class DropOverlay;
class DropWell;
class FileInspector;
class FilePicker;
class FilePresence;
class GlyphButton;
class Haptics;
class RecentFilesStrip;
class RecentThumbnails;
class RefusalNote;
class ThumbnailSource;
struct FileChoice;

/// What the tools look like that show the facts of one file: a well that invites files or says that one was refused, or
/// the file's detail; below it the recent files. Files dropped anywhere on it are loaded. Undo brings back what was
/// forgotten last.
class InspectorView : public ToolView
{
    Q_OBJECT
public:
    struct Surroundings
    {
        FilePicker &picker;
        FilePresence &presence;
        ClipboardPort &clipboard;
        Haptics &haptics;
        AudioPreview &preview;
        RecentThumbnails &thumbnails; ///< of recent files
        ThumbnailSource &pictures;
    };

    ~InspectorView() override;

    std::optional<double> wantedBodyHeight() const override;
    QList<QWidget *> headerActions() override;
    QList<MenuEntry> menuEntries() override;
    void appeared() override;
    bool acceptsDrop(const QStringList &paths) const override;
    void setDropTargeted(bool targeted) override;
    bool dropFiles(const QStringList &paths) override;
    void undo() override;

    RecentFilesStrip &strip() { return m_strip; }

protected:
    /// What tells one tool from another.
    struct Kind
    {
        EmptyStateView::Content invitation;
        EmptyStateView::Content refusal;
        QString chooseHelp;
        QString chooserMessage;
        QString chooserKind; ///< what the chooser calls such files
        QStringList mimeTypes;
        QStringList namePatterns; ///< of names that no MIME type stands for
        QString symbol;           ///< of recent files without a picture
        bool hasThumbnails = false;
        bool isPlayable = false;
        double detailHeight = 0;
    };

    InspectorView(FileInspector &inspector, Kind kind, const Surroundings &surroundings, const ControlContext &context,
                  QWidget *parent);

    const ControlContext &context() const { return m_context; }
    const Surroundings &around() const { return m_around; }
    /// Makes the detail known; it fills the place above the recent files. Once, in the constructor.
    void setDetail(QWidget &detail);
    /// The detail has got other controls: the Tab key finds them between the header's and those of the recent files.
    void setFocusOrder();
    /// The inspector's file is another one, or none.
    void showFile(bool hasFile);
    /// All facts on display as lines.
    virtual QString factsText() const = 0;

    /// Up and Down go to the list of recent files while it is there.
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void choose();
    void followRejection();
    void showNote();
    void followRecents();
    void setExpanded(bool expanded);
    void showTarget();
    void arrange();
    void applyFade();
    void tellHeight();

    FileInspector &m_inspector;
    const Kind m_kind;
    Surroundings m_around;
    ControlContext m_context;
    // In the order of the Tab key.
    GlyphButton &m_choose;
    GlyphButton &m_clear;
    DropWell &m_well;
    EmptyStateView &m_invitation;
    EmptyStateView &m_refusal;
    RecentFilesStrip &m_strip;
    RefusalNote &m_note;
    DropOverlay &m_overlay;
    QWidget *m_detail = nullptr;
    ContentFade *m_wellFade = nullptr;
    ContentFade *m_detailFade = nullptr;
    AnimatedNumber m_shown; ///< 0 the well, 1 the detail
    Shake m_shake;          ///< of the detail, when another file is refused
    bool m_hasFile = false;
    bool m_isTargeted = false;
    double m_wantedHeight = 0;
    QPropertyNotifier m_rejectionWatch;
    QPropertyNotifier m_recentsWatch;
};

} // namespace ostrelle
