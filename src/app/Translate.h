#pragma once
// Every user text of the program goes through Translate. The texts are the German originals and
// are their own keys in a language file: Lang/<name>.lng, one "German@@Translation" per line.
// With no language loaded a text comes back as it is, with "@1" replaced by the parameter.
// The language "NEW" collects every text that is asked for, so that a new language file can be
// written from them at exit.

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace vd::app {

// The language that collects the texts in use instead of translating them.
inline const QString kNewLanguage = QStringLiteral("NEW");

QString Translate(const QString& text, const QString& param = {});

// Without `reverse` the same as Translate without a parameter; with it, a translated text is
// turned back into its German key, so that an open window can change its language.
QString TranslateText(const QString& text, bool reverse);

// Reads gLangPath + gLanguageFile. True at once for an empty gLanguageFile, which also goes
// back to German; "NEW" starts collecting. False (after the message "Fehler beim Einlesen der
// Sprachdatei: ") when the file can't be read or holds no translation; German is then in force.
bool LoadLanguage();
// The parsing half of LoadLanguage, on the file's bytes: `language` is the name the message
// shows and that CurrentLanguage() gives afterwards.
bool LoadLanguageData(const QByteArray& bytes, const QString& language);
// The text of a language file: UTF-8 with or without its BOM, UTF-16 with a BOM (either byte
// order), and otherwise Windows-1252, as older files were written.
QString DecodeLanguageFile(const QByteArray& bytes);
// The language loaded now: the file name, "NEW", or "" for German.
QString CurrentLanguage();

// Whether a text can be one of the program's own: it has a letter and holds no absolute path.
// Numbers and the user's paths are neither collected in "NEW" nor translated in a window.
bool IsProgramText(QStringView text);

// The caption of a language file in the menu: the name without ".lng", the four languages
// that have a German name under it ("English" is "Englisch", ...).
QString LanguageCaption(const QString& fileName);

// The window whose texts are being translated; each window keeps its own cache of lookups.
void EnterForm(const QString& name);
void LeaveForm();

// A message box whose prompt and title go through Translate (the dialog service's styles).
int MsgBoxT(const QString& prompt, int style = 0, const QString& title = {});

// In the language "NEW": writes the collected texts to gLangPath + "NEW.lng" as "German@@German"
// lines, in the order they were first asked for. False when there is nothing to write or the
// file can't be written.
bool WriteNewLanguageFile();

} // namespace vd::app
