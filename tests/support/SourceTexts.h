#pragma once
// Gathers the German user texts of the program from its C++ sources, so that a language file can
// be checked for completeness without running any window.
//
// A literal is a user text when it reaches one of a fixed set of text sinks:
//  - an argument of a call that shows or translates text (Translate, msgBox, setText, addAction,
//    setHeaderLabels, the constructors of labels and buttons, ...; see kSinks in the .cpp);
//  - a constant "kName" defined in the same file and passed to such a call;
//  - an argument of a function or lambda that hands that parameter on to a sink;
//  - a field of a table whose struct names it caption, text, tip, title or prompt;
//  - a column of a table that a loop walks and whose column reaches a sink;
//  - a literal in the body of a function whose result goes straight into Translate.
// SQL, settings keys and object names reach none of these, so they are not gathered.

#include <QList>
#include <QString>
#include <QStringList>

namespace vd::test {

struct SourceText
{
    QString text; // the literal as the program has it, "&" and colon included
    QString file; // relative to the source folder
    int line = 0;
};

// The texts of one source file's content; `file` only labels the results.
QList<SourceText> GatherTexts(const QString& file, const QString& content);

// The texts of several files at once: functions that hand a parameter on to a sink are
// recognised across files, lambdas only within their own file.
QList<SourceText> GatherTexts(const QList<QPair<QString, QString>>& files);

} // namespace vd::test
