#include "support/WindowHome.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "catalogue/Catalogue.h"
#include "platform/ScriptedDialogService.h"

#include <QDir>
#include <QFile>

namespace vd::test {

WindowHome::WindowHome(platform::ScriptedDialogService& dialogs, const QByteArray& mainKeys)
{
    if (!m_dir.isValid())
        return;
    app::setProgramFolder(m_dir.path());
    if (!QDir().mkpath(app::gTempPath))
        return;
    dialogs.clear();
    platform::setDialogService(&dialogs);
    m_cat = std::make_unique<CatalogueFixture>();
    m_cat->close();
    m_valid = writeIni(mainKeys);
}

WindowHome::~WindowHome()
{
    catalogue::CloseCatalogue();
    app::gDatabasePath.clear();
    platform::setDialogService(nullptr);
}

bool WindowHome::writeIni(const QByteArray& mainKeys)
{
    QFile ini(app::gIniFile);
    if (!ini.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    ini.write("[MAIN]\r\nDatabase=" + m_cat->path().toUtf8() + "\r\n" + mainKeys);
    ini.close();
    app::reloadIni();
    return true;
}

} // namespace vd::test
