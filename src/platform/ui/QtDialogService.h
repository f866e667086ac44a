#pragma once
// The dialog service of the windows: Qt's message box, input dialog and file dialogs.

#include "platform/DialogService.h"

#include <QMessageBox>

class QWidget;

namespace vd::platform {

class QtDialogService : public DialogService
{
public:
    int msgBox(const QString& text, int style = vbOKOnly, const QString& title = {}) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText = {}) override;
    QString openFile(const QString& title, const QString& filter, const QString& start) override;
    QString saveFile(const QString& title, const QString& filter, const QString& start) override;
    QString chooseFolder(const QString& title, const QString& start) override;
    std::optional<qint64> chooseColor(qint64 current, const QString& title) override;

    // The message box for a style, ready to show: icon, buttons, default and escape button.
    // Exposed so that the windows' tests can look at it without running it.
    static QMessageBox* createMessageBox(const QString& text, int style, const QString& title,
                                         QWidget* parent);
    // The MsgResult for a button of a box made by createMessageBox.
    static int resultOf(QMessageBox::StandardButton button, int style);

private:
    static QWidget* parentWindow();
};

} // namespace vd::platform
