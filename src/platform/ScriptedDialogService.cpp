#include "platform/ScriptedDialogService.h"

#include <cstdio>
#include <QTextStream>

namespace vd::platform {

namespace {

const char* kindName(ScriptedDialogService::Kind kind)
{
    switch (kind) {
    case ScriptedDialogService::Kind::Message:
        return "message box";
    case ScriptedDialogService::Kind::Input:
        return "input box";
    case ScriptedDialogService::Kind::OpenFile:
        return "open dialog";
    case ScriptedDialogService::Kind::SaveFile:
        return "save dialog";
    case ScriptedDialogService::Kind::Folder:
        return "folder dialog";
    case ScriptedDialogService::Kind::Color:
        return "colour dialog";
    }
    return "dialog";
}

QString oneLine(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

} // namespace

QList<int> msgBoxButtons(int style)
{
    switch (style & kButtonMask) {
    case vbOKCancel:
        return {vbOK, vbCancel};
    case vbAbortRetryIgnore:
        return {vbAbort, vbRetry, vbIgnore};
    case vbYesNoCancel:
        return {vbYes, vbNo, vbCancel};
    case vbYesNo:
        return {vbYes, vbNo};
    case vbRetryCancel:
        return {vbRetry, vbCancel};
    default:
        return {vbOK};
    }
}

int defaultAnswer(int style)
{
    const QList<int> buttons = msgBoxButtons(style);
    int index = 0;
    if (style & vbDefaultButton3)
        index = 2;
    else if (style & vbDefaultButton2)
        index = 1;
    // A default beyond the last button falls back to the first, as the classic box does.
    return index < buttons.size() ? buttons[index] : buttons.first();
}

void ScriptedDialogService::answer(int msgResult)
{
    m_script.push_back({Scripted::Button, msgResult, {}});
}

void ScriptedDialogService::answerText(const QString& text)
{
    m_script.push_back({Scripted::Text, 0, text});
}

void ScriptedDialogService::answerCancel()
{
    m_script.push_back({Scripted::Cancel, 0, {}});
}

void ScriptedDialogService::answerColor(qint64 bgr)
{
    m_script.push_back({Scripted::Text, 0, QString::number(bgr)});
}

QStringList ScriptedDialogService::messages() const
{
    QStringList texts;
    for (const Call& call : calls)
        if (call.kind == Kind::Message)
            texts << call.text;
    return texts;
}

void ScriptedDialogService::clear()
{
    calls.clear();
    scriptErrors.clear();
    m_script.clear();
}

std::optional<ScriptedDialogService::Scripted> ScriptedDialogService::next()
{
    if (m_script.empty())
        return std::nullopt;
    Scripted answer = m_script.front();
    m_script.pop_front();
    return answer;
}

void ScriptedDialogService::record(const Call& call)
{
    if (m_recording)
        calls << call;
}

int ScriptedDialogService::msgBox(const QString& text, int style, const QString& title)
{
    if (m_echo) {
        *m_echo << oneLine(text) << '\n';
        m_echo->flush();
    }
    int result = defaultAnswer(style);
    if (const auto scripted = next()) {
        if (scripted->type == Scripted::Button)
            result = scripted->button;
        else if (scripted->type == Scripted::Cancel)
            result = vbCancel;
        else
            scriptErrors << QStringLiteral("text \"%1\" given to the message box \"%2\"")
                                .arg(scripted->text, text);
    }
    Call call;
    call.kind = Kind::Message;
    call.text = text;
    call.title = title;
    call.style = style;
    call.answer = result;
    call.cancelled = result == vbCancel;
    record(call);
    return result;
}

std::optional<QString> ScriptedDialogService::textDialog(Kind kind, const QString& text,
                                                         const QString& title, const QString& start)
{
    std::optional<QString> result;
    if (const auto scripted = next()) {
        if (scripted->type == Scripted::Text)
            result = scripted->text;
        else if (scripted->type == Scripted::Button)
            scriptErrors << QStringLiteral("button %1 given to the %2 \"%3\"")
                                .arg(scripted->button)
                                .arg(QLatin1String(kindName(kind)), title);
    }
    Call call;
    call.kind = kind;
    call.text = text;
    call.title = title;
    call.start = start;
    call.answerText = result.value_or(QString());
    call.cancelled = !result.has_value();
    record(call);
    return result;
}

std::optional<QString> ScriptedDialogService::inputBox(const QString& prompt, const QString& title,
                                                       const QString& defaultText)
{
    return textDialog(Kind::Input, prompt, title, defaultText);
}

QString ScriptedDialogService::openFile(const QString& title, const QString& filter,
                                        const QString& start)
{
    return textDialog(Kind::OpenFile, filter, title, start).value_or(QString());
}

QString ScriptedDialogService::saveFile(const QString& title, const QString& filter,
                                        const QString& start)
{
    return textDialog(Kind::SaveFile, filter, title, start).value_or(QString());
}

QString ScriptedDialogService::chooseFolder(const QString& title, const QString& start)
{
    return textDialog(Kind::Folder, {}, title, start).value_or(QString());
}

std::optional<qint64> ScriptedDialogService::chooseColor(qint64 current, const QString& title)
{
    const std::optional<QString> text =
        textDialog(Kind::Color, {}, title, QString::number(current));
    if (!text)
        return std::nullopt;
    bool ok = false;
    const qint64 bgr = text->toLongLong(&ok);
    if (!ok || bgr < 0 || bgr > 0xFFFFFF) {
        scriptErrors
            << QStringLiteral("text \"%1\" given to the colour dialog \"%2\"").arg(*text, title);
        return std::nullopt;
    }
    return bgr;
}

ConsoleDialogService::ConsoleDialogService(QTextStream* stream)
{
    if (!stream) {
        m_stderr = std::make_unique<QTextStream>(stderr);
        stream = m_stderr.get();
    }
    setEcho(stream);
    setRecording(false);
}

ConsoleDialogService::~ConsoleDialogService() = default;

} // namespace vd::platform
