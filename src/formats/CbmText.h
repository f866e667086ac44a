#pragma once
// Text as the single-byte code page treats it: one character per byte, upper case only where
// the upper-case letter is itself one of those characters.

#include <QString>

namespace vd::formats {

// Upper case within ISO-8859-1: "ß", "ÿ" and "µ" stay as they are, so a text keeps its length.
QString upperLatin1(const QString& text);

// Text cut at the right end of its blanks (not of other white space).
QString trimRightBlanks(const QString& text);

} // namespace vd::formats
