#pragma once
// One blocking HTTP download into a file: a local event loop per file, so the window keeps
// painting and sees Esc while it waits.

#include <QString>

namespace vd::gamebase {

// Fetches `url` into `target`. True when the server answered with success and the whole body
// was written; a failed transfer leaves no file behind. The wait ends after `idleMs` without
// data.
bool FetchToFile(const QString& url, const QString& target, int idleMs = 30000);

} // namespace vd::gamebase
