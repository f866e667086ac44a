#pragma once
// Writing the settings file: the whole file, once, at the program's end, as UTF-8 with CR LF.
// The sections come in a fixed order, [MAIN], [EMULATORS], [PROFILS], [EXTENSIONS],
// [GAMEBASE], [WINDOWS], each after an empty line; keys nobody writes disappear.
//
// The keys of MAIN (but its filters), ImportFiles and WINDOWS are written here. The other
// parts belong to the subsystems that keep those settings; each installs its writer with
// setIniPartWriter. A part without a writer passes the keys the file holds on unchanged, so a
// user's emulators, profiles, filters and GameBase settings survive a run of a program that
// does not handle them yet.

#include <functional>
#include <QString>

namespace vd::app {

// AppendIniLine: the text, a line break (CR LF), the line. An empty text takes the line alone.
void AppendIniLine(QString& text, const QString& line);

// The text of the file as it is built.
class IniText
{
public:
    // "[NAME]", after an empty line unless it is the first section.
    void section(const QString& name);
    // "key=value". Line breaks inside a value would split the line; they become blanks.
    void add(const QString& key, const QString& value);
    void add(const QString& key, bool value) { add(key, value ? "1" : "0"); }
    void add(const QString& key, const char* value) { add(key, QString::fromUtf8(value)); }
    // The whole text, with a line break after the last line.
    QString text() const;

private:
    QString m_text;
};

enum class IniPart
{
    MainFilters,       // FilterName1, FilterDef1, ... at the end of MAIN
    Emulators,         // the section EMULATORS
    Profils,           // the section PROFILS
    ExtensionProfiles, // EXTENSIONS after ImportFiles: the profile of each start extension, .txt
    GameBase,          // the section GAMEBASE
};

using IniPartWriter = std::function<void(IniText&)>;

// Installs the writer of a part; an empty function returns the part to passing keys on.
void setIniPartWriter(IniPart part, IniPartWriter writer);

// The whole settings file as text, from the globals and the installed writers.
QString settingsText();
// Writes settingsText() to gIniFile. The old file is replaced only by a complete new one.
bool writeSettings();

} // namespace vd::app
