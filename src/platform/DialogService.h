#pragma once
// The one way the program asks its user anything. The windows install a Qt implementation;
// the command line, the tests and the core's batch work use a scripted one.

#include <optional>
#include <QString>

namespace vd::platform {

// Message box styles and answers, numbered as the classic message box numbers them, so that
// a style such as 21 (critical icon with Retry and Cancel) reads the same everywhere.
enum MsgStyle : int
{
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbAbortRetryIgnore = 2,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbRetryCancel = 5,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    vbDefaultButton2 = 256,
    vbDefaultButton3 = 512,
};

enum MsgResult : int
{
    vbOK = 1,
    vbCancel = 2,
    vbAbort = 3,
    vbRetry = 4,
    vbIgnore = 5,
    vbYes = 6,
    vbNo = 7,
};

constexpr int kButtonMask = 0x0F;
constexpr int kIconMask = 0xF0;

class DialogService
{
public:
    virtual ~DialogService() = default;

    // A message box; returns one of MsgResult.
    virtual int msgBox(const QString& text, int style = vbOKOnly, const QString& title = {}) = 0;
    // A line of text; nullopt when the user cancelled.
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                            const QString& defaultText = {}) = 0;
    // File dialogs take filters as "Caption|*.ext;*.ext2|Caption2|*.*"; they return "" on cancel.
    virtual QString openFile(const QString& title, const QString& filter, const QString& start) = 0;
    virtual QString saveFile(const QString& title, const QString& filter, const QString& start) = 0;
    virtual QString chooseFolder(const QString& title, const QString& start) = 0;
    // A colour, as the settings number it (0xBBGGRR); nullopt when the user cancelled. A
    // service without a colour dialog cancels.
    virtual std::optional<qint64> chooseColor(qint64 current, const QString& title)
    {
        (void)current;
        (void)title;
        return std::nullopt;
    }

    bool yesNo(const QString& text, const QString& title = {})
    {
        return msgBox(text, vbYesNo | vbQuestion, title) == vbYes;
    }
    bool retryCancel(const QString& text, const QString& title = {})
    {
        return msgBox(text, vbRetryCancel | vbCritical, title) == vbRetry;
    }
};

// The service in force. Until a front end installs one, a scripted service that answers with
// each box's default button is used, so core code never blocks.
DialogService& dialogs();
// Installs a service (not owned); nullptr returns to the default.
void setDialogService(DialogService* service);

} // namespace vd::platform
