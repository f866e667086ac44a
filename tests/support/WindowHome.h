#pragma once
// Where every test of the main window starts: a program folder of its own (with Temp), the
// test's scripted dialogs installed, and a filled catalogue, closed, named in a fresh settings
// file. Going away closes whatever catalogue the window left open.

#include "support/CatalogueFixture.h"

#include <memory>
#include <QByteArray>
#include <QTemporaryDir>

namespace vd::platform {
class ScriptedDialogService;
}

namespace vd::test {

class WindowHome
{
public:
    // `mainKeys`: the lines of [MAIN] behind its "Database=" line.
    explicit WindowHome(platform::ScriptedDialogService& dialogs,
                        const QByteArray& mainKeys = "ViewMode=1\r\n");
    ~WindowHome();
    WindowHome(const WindowHome&) = delete;
    WindowHome& operator=(const WindowHome&) = delete;

    bool isValid() const { return m_valid; }
    QString path() const { return m_dir.path(); }
    QString filePath(const QString& name) const { return m_dir.filePath(name); }
    CatalogueFixture& cat() { return *m_cat; }

    // Writes the settings file anew ("[MAIN]", the catalogue, `mainKeys`) and reads it.
    bool writeIni(const QByteArray& mainKeys);

private:
    QTemporaryDir m_dir;
    std::unique_ptr<CatalogueFixture> m_cat;
    bool m_valid = false;
};

} // namespace vd::test
