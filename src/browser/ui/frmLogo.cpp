#include "browser/ui/frmLogo.h"

#include "app/Globals.h"
#include "app/Settings.h"
#include "app/Translate.h"
#include "app/ui/IconSet.h"
#include "app/ui/TranslateForm.h"

#include <archive.h>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <sqlite3.h>

namespace vd::browser {

namespace {

QString folder(const QString& path)
{
    return QDir::toNativeSeparators(QDir::cleanPath(path));
}

// The name and the version, and the libraries: the same in every language.
QString versionCaption()
{
    return QStringLiteral("<b>Vellumdock %1</b>").arg(app::gVersion.toHtmlEscaped());
}

QString librariesLine()
{
    return QStringLiteral("Qt %1 · SQLite %2 · %3")
        .arg(QString::fromLatin1(qVersion()), QString::fromLatin1(sqlite3_libversion()),
             QString::fromLatin1(archive_version_string()));
}

} // namespace

frmLogo::frmLogo(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmLogo"));
    setWindowTitle(QStringLiteral("Über Vellumdock"));
    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    auto* picture = new QLabel(this);
    QIcon icon = QApplication::windowIcon();
    if (icon.isNull())
        icon = app::IconSet::keyIcon(QStringLiteral("MAINFILES"));
    picture->setPixmap(icon.pixmap(64, 64));
    top->addWidget(picture, 0, Qt::AlignTop);

    auto* text = new QVBoxLayout;
    lblVersion = new QLabel(versionCaption(), this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    text->addWidget(lblVersion);
    auto* about =
        new QLabel(QStringLiteral("Katalog und Starter für Commodore-64-Sammlungen"), this);
    about->setObjectName(QStringLiteral("lblAbout"));
    text->addWidget(about);

    // The parts that tell which copy runs where; they stay as they are in every language.
    const QString catalogue =
        app::gDatabasePath.isEmpty() ? QStringLiteral("-") : folder(app::gDatabasePath);
    lblInfo = new QLabel(this);
    lblInfo->setObjectName(QStringLiteral("lblInfo"));
    lblInfo->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblInfo->setText(librariesLine() + QStringLiteral("\n\n") +
                     app::Translate(QStringLiteral("Programmordner: ")) + folder(app::gAppPath) +
                     QLatin1Char('\n') + app::Translate(QStringLiteral("Einstellungen: ")) +
                     folder(app::gIniFile) + QLatin1Char('\n') +
                     app::Translate(QStringLiteral("Datenbank: ")) + catalogue);
    text->addWidget(lblInfo);
    top->addLayout(text, 1);
    layout->addLayout(top);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* close =
        buttons->addButton(QStringLiteral("Schließen"), QDialogButtonBox::AcceptRole);
    close->setObjectName(QStringLiteral("cmdClose"));
    close->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
    app::ui::TranslateForm(this, true);
}

} // namespace vd::browser
