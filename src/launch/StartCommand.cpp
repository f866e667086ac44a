#include "launch/StartCommand.h"

#include "app/Translate.h"
#include "launch/CommandLine.h"
#include "launch/OptionString.h"
#include "platform/DialogService.h"

namespace vd::launch {

namespace {

constexpr int kTapeImage = 6;

QString placeholderValue(const QString& name, const QString& textSoFar, StartItem& item,
                         bool& known)
{
    known = true;
    if (name == u"FILEPATH")
        return kFilePathMarker;
    if (name == u"INPUT") {
        const auto answer = platform::dialogs().inputBox(
            app::Translate("Bitte geben Sie einen Wert ein: ") + textSoFar,
            app::Translate("Optionsparameter"));
        return answer.value_or(QString());
    }
    if (item.flipList) {
        known = false;
        return {};
    }
    if (name == u"C64FILENAME")
        return (!item.isEntry || item.lIndex == 1) ? QString() : C64WildcardName(item.realProgram);
    if (name == u"C64FILEINDEX") {
        item.useTemp = false; // the emulator picks the program itself
        return item.isEntry ? QString::number(item.lIndex - 1) : QString();
    }
    known = false;
    return {};
}

void message(const QString& text, const QString& detail)
{
    platform::dialogs().msgBox(app::Translate(text) + detail, platform::vbInformation);
}

} // namespace

QString C64WildcardName(const QString& name)
{
    qsizetype cut = name.indexOf(u'_');
    if (cut < 0)
        cut = name.indexOf(u'$');
    if (cut < 0)
        return name.toLower();
    return (name.left(cut) + u'*').toLower();
}

bool ExpandPlaceholders(QString& text, StartItem& item)
{
    qsizetype pos = 0;
    // Every round replaces the placeholder at `start`, or fails; a value that holds "<$" again
    // is expanded in its turn, so the rounds are bounded by the text's length as it grows.
    for (int rounds = 0; pos < text.size() - 1; ++rounds) {
        const qsizetype start = text.indexOf(QStringLiteral("<$"), pos);
        if (start < 0)
            break;
        const qsizetype end = text.indexOf(QStringLiteral("$>"), start);
        if (end < 0) {
            message(QStringLiteral("Unvollständiger Parameter: "), text.mid(start));
            return false;
        }
        const QString placeholder = text.mid(start, end + 2 - start);
        bool known = false;
        const QString value = placeholderValue(placeholder.mid(2, placeholder.size() - 4).toUpper(),
                                               text.left(end + 2), item, known);
        if (!known || rounds > 1000) {
            message(QStringLiteral("Unbekannter Parameter: "), placeholder);
            return false;
        }
        // A C64 name is the disk's text, not the user's: it stays one piece of its argument.
        if (placeholder.mid(2, placeholder.size() - 4).toUpper() == u"C64FILENAME")
            ReplaceWithLiteral(text, placeholder, value);
        else
            text.replace(placeholder, value, Qt::CaseSensitive);
        pos = start;
    }
    return true;
}

bool BuildCommandLine(const QString& options, StartItem& item, QString& commandLine)
{
    commandLine.clear();
    const OptionTable rows = ParseOptions(options);
    if (HasNoItems(rows))
        return true;
    for (const OptionRow& row : rows) {
        if (row.flag != u"1")
            continue;
        QString text = row.text;
        const QString upper = text.toUpper();
        if (item.flipList) {
            // taken as text
        } else if (upper == u"USETEMPFILE") {
            if (item.isEntry)
                item.useTemp = true;
            text.clear();
        } else if (upper == u"-FASTLOAD" && item.iFileType == kTapeImage) {
            text.clear();
        }
        if (!ExpandPlaceholders(text, item))
            return false;
        commandLine += u' ' + text;
    }
    return true;
}

} // namespace vd::launch
