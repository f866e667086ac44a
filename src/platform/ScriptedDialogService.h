#pragma once
// A dialog service that answers from a script instead of asking anyone. The tests queue the
// answers a routine should get and read back every box it showed; the command line prints each
// message and takes the default button.

#include "platform/DialogService.h"

#include <deque>
#include <memory>
#include <QList>
#include <QString>
#include <QStringList>

class QTextStream;

namespace vd::platform {

// The buttons of a message box style, left to right, as MsgResult values.
QList<int> msgBoxButtons(int style);
// The answer a box gives when the user only presses Enter: its default button, as the
// vbDefaultButton flags choose it among the buttons of the style.
int defaultAnswer(int style);

class ScriptedDialogService : public DialogService
{
public:
    enum class Kind
    {
        Message,
        Input,
        OpenFile,
        SaveFile,
        Folder,
        Color
    };

    // One dialog that was shown, with the answer it gave.
    struct Call
    {
        Kind kind = Kind::Message;
        QString text; // the message, the prompt, or the file dialog's filter
        QString title;
        int style = 0;      // message boxes only
        QString start;      // default text of an input box, start of a file dialog
        int answer = 0;     // message boxes: the MsgResult given
        QString answerText; // the text or path given
        bool cancelled = false;
    };

    // Every dialog shown so far, oldest first.
    QList<Call> calls;
    // Script answers that did not fit the dialog that took them (a path for a message box...).
    // They were answered with the default instead; a test should find this list empty.
    QStringList scriptErrors;

    // Queue the answers, first in, first out. Each dialog takes the next one.
    void answer(int msgResult);
    void answerText(const QString& text); // an input box's text or a file dialog's path
    void answerCancel();                  // the user cancelled (vbCancel for a message box)
    void answerColor(qint64 bgr);         // a colour dialog's choice (0xBBGGRR)
    int pendingAnswers() const { return int(m_script.size()); }

    // The texts of the message boxes shown, oldest first.
    QStringList messages() const;
    void clear();

    // Each message box text is also written to `stream`, one line each (line breaks inside a
    // text become blanks). nullptr stops the echo.
    void setEcho(QTextStream* stream) { m_echo = stream; }
    // Off, `calls` stays empty; for long-running services that nobody reads back.
    void setRecording(bool on) { m_recording = on; }

    int msgBox(const QString& text, int style = vbOKOnly, const QString& title = {}) override;
    std::optional<QString> inputBox(const QString& prompt, const QString& title,
                                    const QString& defaultText = {}) override;
    QString openFile(const QString& title, const QString& filter, const QString& start) override;
    QString saveFile(const QString& title, const QString& filter, const QString& start) override;
    QString chooseFolder(const QString& title, const QString& start) override;
    // Recorded with the current colour's number as `start` and the choice as `answerText`.
    std::optional<qint64> chooseColor(qint64 current, const QString& title) override;

private:
    struct Scripted
    {
        enum Type
        {
            Button,
            Text,
            Cancel
        } type;
        int button = 0;
        QString text;
    };

    std::optional<Scripted> next();
    std::optional<QString> textDialog(Kind kind, const QString& text, const QString& title,
                                      const QString& start);
    void record(const Call& call);

    std::deque<Scripted> m_script;
    QTextStream* m_echo = nullptr;
    bool m_recording = true;
};

// The service of the command line: every message text goes to stderr (or the stream given) on
// a line of its own and is answered with the default button; nothing is recorded.
class ConsoleDialogService : public ScriptedDialogService
{
public:
    explicit ConsoleDialogService(QTextStream* stream = nullptr);
    ~ConsoleDialogService() override;

private:
    std::unique_ptr<QTextStream> m_stderr; // when no stream was given
};

} // namespace vd::platform
