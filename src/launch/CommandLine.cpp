#include "launch/CommandLine.h"

namespace vd::launch {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

} // namespace

QStringList SplitCommandLine(const QString& params)
{
    QStringList args;
    QString current;
    bool inArg = false; // an argument has started, even if it is still empty ("")
    bool quoted = false;
    const qsizetype n = params.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = params.at(i);
        if (isBlank(c) && !quoted) {
            if (inArg) {
                args.append(current);
                current.clear();
                inArg = false;
            }
            ++i;
            continue;
        }
        inArg = true;
        if (c == u'\\') {
            qsizetype slashes = 0;
            while (i < n && params.at(i) == u'\\') {
                ++slashes;
                ++i;
            }
            if (i < n && params.at(i) == u'"') {
                current.append(QString(slashes / 2, u'\\'));
                if (slashes % 2 == 1) {
                    current.append(u'"');
                    ++i;
                }
                // With an even count the quote is handled as a quote on the next round.
            } else {
                current.append(QString(slashes, u'\\'));
            }
            continue;
        }
        if (c == u'"') {
            if (quoted && i + 1 < n && params.at(i + 1) == u'"') {
                current.append(u'"');
                i += 2;
                continue;
            }
            quoted = !quoted;
            ++i;
            continue;
        }
        current.append(c);
        ++i;
    }
    if (inArg)
        args.append(current);
    return args;
}

namespace {

QString literalText(const QString& value, bool quoteFollows)
{
    QString out;
    out.reserve(value.size() + 8);
    qsizetype backslashes = 0;
    for (const QChar c : value) {
        if (c == u'\\') {
            ++backslashes;
            continue;
        }
        if (c == u'"') {
            out += QString(backslashes * 2 + 1, u'\\') + u'"';
        } else {
            out += QString(backslashes, u'\\') + c;
        }
        backslashes = 0;
    }
    out += QString(quoteFollows ? backslashes * 2 : backslashes, u'\\');
    return out;
}

} // namespace

void ReplaceWithLiteral(QString& commandLine, const QString& marker, const QString& value)
{
    if (marker.isEmpty())
        return;
    qsizetype pos = 0;
    while ((pos = commandLine.indexOf(marker, pos)) >= 0) {
        const qsizetype after = pos + marker.size();
        const bool quoteFollows = after < commandLine.size() && commandLine.at(after) == u'"';
        const QString text = literalText(value, quoteFollows);
        commandLine.replace(pos, marker.size(), text);
        pos += text.size();
    }
}

} // namespace vd::launch
