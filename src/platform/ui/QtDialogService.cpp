#include "platform/ui/QtDialogService.h"

#include "platform/FileFilter.h"
#include "platform/ScriptedDialogService.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QPointer>

namespace vd::platform {

namespace {

struct ButtonMap
{
    int result;
    QMessageBox::StandardButton button;
};

constexpr ButtonMap kButtons[] = {
    {vbOK, QMessageBox::Ok},       {vbCancel, QMessageBox::Cancel}, {vbAbort, QMessageBox::Abort},
    {vbRetry, QMessageBox::Retry}, {vbIgnore, QMessageBox::Ignore}, {vbYes, QMessageBox::Yes},
    {vbNo, QMessageBox::No},
};

QMessageBox::StandardButton buttonFor(int result)
{
    for (const ButtonMap& map : kButtons)
        if (map.result == result)
            return map.button;
    return QMessageBox::NoButton;
}

QMessageBox::Icon iconFor(int style)
{
    switch (style & kIconMask) {
    case vbCritical:
        return QMessageBox::Critical;
    case vbQuestion:
        return QMessageBox::Question;
    case vbExclamation:
        return QMessageBox::Warning;
    case vbInformation:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

QString boxTitle(const QString& title)
{
    return title.isEmpty() ? QCoreApplication::applicationName() : title;
}

} // namespace

QWidget* QtDialogService::parentWindow()
{
    return QApplication::activeWindow();
}

QMessageBox* QtDialogService::createMessageBox(const QString& text, int style, const QString& title,
                                               QWidget* parent)
{
    auto* box = new QMessageBox(parent);
    box->setWindowTitle(boxTitle(title));
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    box->setIcon(iconFor(style));
    const QList<int> results = msgBoxButtons(style);
    QMessageBox::StandardButtons buttons;
    for (int result : results)
        buttons |= buttonFor(result);
    box->setStandardButtons(buttons);
    box->setDefaultButton(buttonFor(defaultAnswer(style)));
    // Esc answers Cancel where there is one, and closes a box with a single button.
    if (results.contains(vbCancel))
        box->setEscapeButton(QMessageBox::Cancel);
    else if (results.size() == 1)
        box->setEscapeButton(buttonFor(results.first()));
    return box;
}

int QtDialogService::resultOf(QMessageBox::StandardButton button, int style)
{
    const QList<int> results = msgBoxButtons(style);
    for (int result : results)
        if (buttonFor(result) == button)
            return result;
    // Closed without a button of its own: what Esc would have answered, else the default.
    return results.contains(vbCancel) ? int(vbCancel) : defaultAnswer(style);
}

int QtDialogService::msgBox(const QString& text, int style, const QString& title)
{
    QPointer<QMessageBox> box = createMessageBox(text, style, title, parentWindow());
    const int button = box->exec();
    delete box.data();
    return resultOf(QMessageBox::StandardButton(button), style);
}

std::optional<QString> QtDialogService::inputBox(const QString& prompt, const QString& title,
                                                 const QString& defaultText)
{
    bool ok = false;
    const QString text = QInputDialog::getText(parentWindow(), boxTitle(title), prompt,
                                               QLineEdit::Normal, defaultText, &ok);
    if (!ok)
        return std::nullopt;
    return text;
}

QString QtDialogService::openFile(const QString& title, const QString& filter, const QString& start)
{
    return QFileDialog::getOpenFileName(parentWindow(), title, start, qtFileFilter(filter));
}

QString QtDialogService::saveFile(const QString& title, const QString& filter, const QString& start)
{
    return QFileDialog::getSaveFileName(parentWindow(), title, start, qtFileFilter(filter));
}

QString QtDialogService::chooseFolder(const QString& title, const QString& start)
{
    return QFileDialog::getExistingDirectory(parentWindow(), title, start);
}

std::optional<qint64> QtDialogService::chooseColor(qint64 current, const QString& title)
{
    const QColor start(int(current & 0xFF), int((current >> 8) & 0xFF),
                       int((current >> 16) & 0xFF));
    const QColor chosen = QColorDialog::getColor(start, parentWindow(), title);
    if (!chosen.isValid())
        return std::nullopt;
    return qint64(chosen.red()) + qint64(chosen.green()) * 256 + qint64(chosen.blue()) * 65536;
}

} // namespace vd::platform
