#pragma once
// A language file read line by line as the engine reads it, for tests that check the file
// itself or what the windows show with it.

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

namespace vd::test {

// The key of a text in a language file: without a leading "&" and without a trailing ":" or ": ".
QString LanguageKey(const QString& text);

// A language file as the engine reads it, with every way its lines could mislead the engine.
struct LanguageFile
{
    QByteArray bytes;
    QHash<QString, QString> byKey; // lower-case key -> translation
    QStringList problems;          // one line each; empty for a sound file
};

LanguageFile ReadLanguageFile(const QString& path);

// Whether `shown` is a German text that `lng` translates into something else: a text a window
// shows this way was left untranslated.
bool IsLeftGerman(const LanguageFile& lng, const QString& shown);

} // namespace vd::test
