#include "ShownDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QListView>
#include <QPushButton>
#include <QTest>

namespace ostrelle {

QFileDialog *shownDialog()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QFileDialog *>(widget); dialog && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

bool confirmAll(QFileDialog &dialog, int count)
{
    auto *list = dialog.findChild<QListView *>(QStringLiteral("listView"));
    auto *buttons = dialog.findChild<QDialogButtonBox *>();
    if (!list || !buttons ||
        !QTest::qWaitFor([list, count] { return list->model()->rowCount(list->rootIndex()) == count; })) {
        return false;
    }
    list->setFocus();
    list->setCurrentIndex(list->model()->index(0, 0, list->rootIndex()));
    list->selectAll(); // all or, where one is the most, that one
    buttons->button(QDialogButtonBox::Open)->click();
    return true;
}

} // namespace ostrelle
