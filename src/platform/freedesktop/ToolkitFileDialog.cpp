#include "platform/freedesktop/ToolkitFileDialog.h"

#include "foundation/MakeChild.h"
#include "platform/FieldExchange.h"
#include "platform/freedesktop/FileKinds.h"

#include <QFileDialog>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListView>
#include <QTreeView>

namespace ostrelle {

namespace {

void askForFolders(QFileDialog &dialog)
{
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    // The mode for folders allows one; its lists and its answer do allow several.
    for (auto *list : dialog.findChildren<QListView *>(QStringLiteral("listView"))) {
        list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }
    for (auto *tree : dialog.findChildren<QTreeView *>(QStringLiteral("treeView"))) {
        tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    }
}

void askForFile(QFileDialog &dialog, const FileChoice &choice)
{
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (!choice.mimeTypes.isEmpty()) {
        const QStringList patterns = fileKinds::namePatternsOf(choice.mimeTypes) + choice.namePatterns;
        dialog.setNameFilter(QStringLiteral("%1 (%2)").arg(choice.kindName, patterns.join(u' ')));
        dialog.setOption(QFileDialog::HideNameFilterDetails);
    }
}

} // namespace

ToolkitFileDialog::ToolkitFileDialog(const FileChoice &choice, ClipboardPort &clipboard,
                                     std::function<void(QStringList)> answer)
    : m_dialog(std::make_unique<QFileDialog>(nullptr, choice.message))
{
    // A native dialog would come from a desktop integration, whose ways with several folders differ.
    m_dialog->setOption(QFileDialog::DontUseNativeDialog);
    m_dialog->setAcceptMode(QFileDialog::AcceptOpen);
    if (choice.kind == FileChoice::Kind::Folders) {
        askForFolders(*m_dialog);
    } else {
        askForFile(*m_dialog, choice);
    }
    if (!choice.acceptLabel.isEmpty()) {
        m_dialog->setLabelText(QFileDialog::Accept, choice.acceptLabel);
    }
    for (auto *field : m_dialog->findChildren<QLineEdit *>()) {
        makeChild<FieldExchange>(field, clipboard, *field);
        // The toolkit's menu looks into the clipboard before it opens.
        field->setContextMenuPolicy(Qt::PreventContextMenu);
    }
    // Above all else, and not every window manager shows titles.
    auto message = std::make_unique<QLabel>(choice.message);
    message->setMargin(9);
    m_dialog->layout()->setMenuBar(message.release());

    connect(m_dialog.get(), &QFileDialog::finished, this, [this, answer = std::move(answer)](int result) {
        const auto respond = answer; // this object may end in it
        respond(result == QDialog::Accepted ? m_dialog->selectedFiles() : QStringList());
    });
    m_dialog->show();
    raise();
}

void ToolkitFileDialog::raise()
{
    m_dialog->raise();
    m_dialog->activateWindow();
}

ToolkitFileDialog::~ToolkitFileDialog()
{
    // It may be the sender of the signal that led here.
    m_dialog->disconnect(this);
    m_dialog->hide();
    m_dialog.release()->deleteLater();
}

} // namespace ostrelle
