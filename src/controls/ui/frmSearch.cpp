#include "controls/ui/frmSearch.h"

#include "app/Translate.h"
#include "catalogue/DbError.h"
#include "controls/ReportFind.h"
#include "controls/ui/SimpleReport.h"
#include "platform/DialogService.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace vd::controls {

namespace {

QString tr_(const char* text)
{
    return app::Translate(QString::fromUtf8(text));
}

} // namespace

frmSearch::frmSearch(SimpleReport* client, QWidget* parent)
    : QDialog(parent), m_client(client), m_text(new QLineEdit(this)), m_fields(new QComboBox(this)),
      m_down(new QRadioButton(tr_("Abwärts"), this)), m_up(new QRadioButton(tr_("Aufwärts"), this)),
      m_search(new QPushButton(tr_("Suchen"), this))
{
    setObjectName(QStringLiteral("frmSearch"));
    setWindowTitle(tr_("Suchen"));
    m_text->setObjectName(QStringLiteral("txtSearch"));
    m_fields->setObjectName(QStringLiteral("cboFields"));
    m_down->setObjectName(QStringLiteral("optDown"));
    m_up->setObjectName(QStringLiteral("optUp"));
    m_search->setObjectName(QStringLiteral("cmdSearch"));
    m_down->setChecked(true);

    auto* form = new QFormLayout;
    form->addRow(tr_("Suchbegriff:"), m_text);
    form->addRow(tr_("Feld:"), m_fields);
    auto* direction = new QGroupBox(tr_("Richtung"), this);
    auto* directionLayout = new QVBoxLayout(direction);
    directionLayout->addWidget(m_down);
    directionLayout->addWidget(m_up);

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(m_search, QDialogButtonBox::ActionRole);
    QPushButton* exit = buttons->addButton(tr_("Beenden"), QDialogButtonBox::RejectRole);
    exit->setObjectName(QStringLiteral("cmdExit"));
    m_search->setDefault(true);
    connect(m_search, &QPushButton::clicked, this, [this] { cmdSearch_Click(); });
    connect(exit, &QPushButton::clicked, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(direction);
    layout->addWidget(buttons);
    fillFields();
}

void frmSearch::fillFields()
{
    m_fields->clear();
    if (!m_client)
        return;
    const ReportColumns& cols = m_client->Columns();
    for (int c : cols.displayOrder())
        if (cols[c].hidden == 0)
            m_fields->addItem(cols[c].caption, c);
}

void frmSearch::setSearchText(const QString& text)
{
    m_text->setText(text);
    m_text->selectAll();
}

void frmSearch::setField(int column)
{
    const int i = m_fields->findData(column);
    if (i >= 0)
        m_fields->setCurrentIndex(i);
}

void frmSearch::setSearchUp(bool up)
{
    (up ? m_up : m_down)->setChecked(true);
}

bool frmSearch::cmdSearch_Click()
{
    const QString title = windowTitle();
    if (!m_client) {
        platform::dialogs().msgBox(tr_("Interner Fehler: RaiseEvent fehlgeschlagen!"),
                                   platform::vbCritical, title);
        return false;
    }
    try {
        QString text = m_text->text();
        if (text.trimmed().isEmpty()) {
            platform::dialogs().msgBox(tr_("Es wurde kein gültiger Suchbegriff eingegeben!"),
                                       platform::vbExclamation, title);
            return false;
        }
        if (m_client->ItemCount() == 0 || m_fields->count() == 0) {
            platform::dialogs().msgBox(
                tr_("In der aktuellen Listenansicht sind keine Elemente vorhanden!"),
                platform::vbInformation, title);
            return false;
        }
        ReportEngine& engine = m_client->engine();
        const int column = m_fields->currentData().toInt();
        // Only a text comparison knows wildcards; a number is compared as it is.
        if (IsTextColumn(engine, column) && !text.contains(QLatin1Char('*')))
            text += QLatin1Char('*');
        const bool up = m_up->isChecked();
        qint64 row = FindInDirection(engine, column, text, m_client->SelectedIndex(), up);
        if (row < 0) {
            if (!platform::dialogs().yesNo(
                    tr_("Keine weiteren Einträge gefunden. Am Anfang der Liste weitersuchen?"),
                    title))
                return false;
            row = FindInDirection(engine, column, text, -1, up);
            if (row < 0) {
                platform::dialogs().msgBox(tr_("Keine weiteren Einträge gefunden!"),
                                           platform::vbInformation, title);
                return false;
            }
        }
        m_client->setSelectedIndex(row);
        return true;
    } catch (const db::DbError& e) {
        platform::dialogs().msgBox(e.description(), platform::vbCritical,
                                   QStringLiteral("Report-Fehler: cmdSearch"));
    } catch (const std::exception& e) {
        platform::dialogs().msgBox(QString::fromLocal8Bit(e.what()), platform::vbCritical,
                                   QStringLiteral("Report-Fehler: cmdSearch"));
    }
    return false;
}

} // namespace vd::controls
