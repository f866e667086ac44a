// frmOptions: the tree treeProfils of emulators, their profiles and the profiles' items, its six
// commands (the buttons cmdTree and the popup mnuPopUp) and its check marks. The rules are
// those of launch/ProfilRules.h; after each command the tree is built anew from the copies,
// so that it always shows what OK would store.

#include "app/Translate.h"
#include "launch/OptionString.h"
#include "launch/Profiles.h"
#include "launch/ui/frmEditEmu.h"
#include "launch/ui/frmEditParams.h"
#include "launch/ui/frmEditProfil.h"
#include "setup/ui/frmOptions.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QPushButton>
#include <QSet>
#include <QTreeWidget>

namespace vd::setup {

using app::Translate;
using namespace launch;

namespace {

// A node's tag: the record's key, or an item's text; items also keep their row.
constexpr int kTagRole = Qt::UserRole;
constexpr int kRowRole = Qt::UserRole + 1;

int levelOf(const QTreeWidgetItem* node)
{
    int level = 0;
    for (const QTreeWidgetItem* p = node ? node->parent() : nullptr; p; p = p->parent())
        ++level;
    return node ? level : -1;
}

QTreeWidgetItem* addNode(QTreeWidgetItem* parent, const QString& text, const QString& tag,
                         bool checked)
{
    auto* node = new QTreeWidgetItem(parent, QStringList{text});
    node->setData(0, kTagRole, tag);
    node->setFlags(node->flags() | Qt::ItemIsUserCheckable);
    node->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    return node;
}

// The keys that identify an expanded node across a rebuild.
QString expandKey(const QTreeWidgetItem* node)
{
    QStringList parts;
    for (; node; node = node->parent())
        parts.prepend(node->data(0, kTagRole).toString());
    return parts.join(QChar(0x1F));
}

bool hasNamedProfil(const ProfilConfig& c, const QString& emulKey)
{
    for (const ProfilPtr& p : c.profils)
        if (!p->Name.isEmpty() && p->EmulKey == emulKey)
            return true;
    return false;
}

bool hasItems(const ProfilConfig& c, const QString& profilKey)
{
    const ProfilPtr p = c.profils.find(profilKey);
    return p && !HasNoItems(ParseOptions(p->Options));
}

} // namespace

// ---- The tree and the copies ----------------------------------------------------------------

void frmOptions::fillTree()
{
    const NodePath selected = currentPath();
    QSet<QString> expanded;
    for (QTreeWidgetItemIterator it(treeProfils); *it; ++it)
        if ((*it)->isExpanded())
            expanded.insert(expandKey(*it));

    m_treeFilling = true;
    treeProfils->clear();
    auto* top =
        new QTreeWidgetItem(treeProfils, QStringList{Translate(QStringLiteral("Emulatoren"))});
    top->setData(0, kTagRole, QStringLiteral("ROOT"));
    const ProfilConfig& c = m_state.config;
    for (const EmulatorPtr& e : c.emulators) {
        if (e->Name.isEmpty())
            continue;
        QTreeWidgetItem* emulNode = addNode(top, e->Name, e->Key, e->Aktiv);
        for (const ProfilPtr& p : c.profils) {
            if (p->Name.isEmpty() || p->EmulKey != e->Key)
                continue;
            QTreeWidgetItem* profilNode = addNode(emulNode, p->Name, p->Key, p->Aktiv);
            const OptionTable rows = ParseOptions(p->Options);
            if (HasNoItems(rows))
                continue;
            for (int row = 0; row < rows.size(); ++row) {
                QTreeWidgetItem* item =
                    addNode(profilNode, rows[row].text, rows[row].text, rows[row].flag == u"1");
                item->setData(0, kRowRole, row);
            }
        }
    }
    top->setExpanded(true);
    for (QTreeWidgetItemIterator it(treeProfils); *it; ++it)
        if (expanded.contains(expandKey(*it)))
            (*it)->setExpanded(true);
    m_treeFilling = false;
    selectNode(selected);
}

// The check marks as the copies hold them: after a rule changed other records, or refused.
void frmOptions::syncTreeChecks()
{
    m_treeFilling = true;
    const ProfilConfig& c = m_state.config;
    for (QTreeWidgetItemIterator it(treeProfils); *it; ++it) {
        QTreeWidgetItem* node = *it;
        const NodePath path = pathOf(node);
        bool checked = false;
        if (path.level == 1) {
            const EmulatorPtr e = c.emulators.find(path.emulKey);
            checked = e && e->Aktiv;
        } else if (path.level == 2) {
            const ProfilPtr p = c.profils.find(path.profilKey);
            checked = p && p->Aktiv;
        } else if (path.level == 3) {
            const ProfilPtr p = c.profils.find(path.profilKey);
            const OptionTable rows = p ? ParseOptions(p->Options) : OptionTable();
            checked = path.row >= 0 && path.row < rows.size() && rows[path.row].flag == u"1";
        } else {
            continue;
        }
        node->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    }
    m_treeFilling = false;
}

frmOptions::NodePath frmOptions::pathOf(const QTreeWidgetItem* node) const
{
    NodePath path;
    path.level = levelOf(node);
    if (path.level < 0)
        return path;
    const QTreeWidgetItem* n = node;
    if (path.level == 3) {
        path.itemText = n->data(0, kTagRole).toString();
        path.row = n->data(0, kRowRole).toInt();
        n = n->parent();
    }
    if (path.level >= 2) {
        path.profilKey = n->data(0, kTagRole).toString();
        n = n->parent();
    }
    if (path.level >= 1)
        path.emulKey = n->data(0, kTagRole).toString();
    return path;
}

QTreeWidgetItem* frmOptions::nodeAt(const NodePath& path) const
{
    QTreeWidgetItem* node = treeProfils->topLevelItem(0);
    if (!node || path.level <= 0)
        return node;
    const auto child = [](QTreeWidgetItem* parent, const QString& tag) -> QTreeWidgetItem* {
        for (int i = 0; parent && i < parent->childCount(); ++i)
            if (parent->child(i)->data(0, kTagRole).toString() == tag)
                return parent->child(i);
        return nullptr;
    };
    QTreeWidgetItem* emul = child(node, path.emulKey);
    if (path.level == 1 || !emul)
        return emul ? emul : node;
    QTreeWidgetItem* profil = child(emul, path.profilKey);
    if (path.level == 2 || !profil)
        return profil ? profil : emul;
    if (path.row >= 0 && path.row < profil->childCount())
        return profil->child(path.row);
    return profil->childCount() > 0 ? profil->child(profil->childCount() - 1) : profil;
}

void frmOptions::selectNode(const NodePath& path)
{
    QTreeWidgetItem* node = nodeAt(path);
    for (QTreeWidgetItem* p = node ? node->parent() : nullptr; p; p = p->parent())
        p->setExpanded(true);
    treeProfils->setCurrentItem(node);
    updateTreeButtons();
}

frmOptions::NodePath frmOptions::currentPath() const
{
    return pathOf(treeProfils->currentItem());
}

// ---- Captions and states of the commands ----------------------------------------------------

// "Neu" makes a record of the node's own level. An emulator without profiles and a profile
// without items offer their first child instead, which would otherwise have no way in.
QString frmOptions::newCaption(const NodePath& path) const
{
    if (path.level == 1 && !hasNamedProfil(m_state.config, path.emulKey))
        return QStringLiteral("Neues Profil");
    if (path.level == 2 && !hasItems(m_state.config, path.profilKey))
        return QStringLiteral("Neuer Parameter");
    switch (path.level) {
    case 2:
        return QStringLiteral("Neues Profil");
    case 3:
        return QStringLiteral("Neuer Parameter");
    default:
        return QStringLiteral("Neuer Emulator");
    }
}

// A remembered emulator goes in at the top or on an emulator; a profile under the current
// emulator; an item under the current profile.
bool frmOptions::pasteAllowed(const NodePath& path) const
{
    if (!m_remembered || path.level < 0)
        return false;
    switch (m_copied.level) {
    case 1:
        return path.level <= 1;
    case 2:
        return path.level == 1 || path.level == 2;
    case 3:
        return path.level == 2 || path.level == 3;
    default:
        return false;
    }
}

void frmOptions::updateTreeButtons()
{
    const NodePath path = currentPath();
    const bool onRecord = path.level >= 1;
    const QString captions[kTreeCommandCount] = {
        Translate(newCaption(path)),           Translate(QStringLiteral("Bearbeiten")),
        Translate(QStringLiteral("Löschen")),  Translate(QStringLiteral("Kopieren")),
        Translate(QStringLiteral("Einfügen")), Translate(QStringLiteral("Standard- Emulator"))};
    const bool enabled[kTreeCommandCount] = {path.level >= 0, onRecord,           onRecord,
                                             onRecord,        pasteAllowed(path), path.level == 1};
    const QList<QAction*> entries = mnuPopUp->actions();
    for (int i = 0; i < kTreeCommandCount; ++i) {
        cmdTree[size_t(i)]->setText(captions[i]);
        cmdTree[size_t(i)]->setEnabled(enabled[i]);
        entries[i]->setText(captions[i]);
        entries[i]->setEnabled(enabled[i]);
    }
    // "Standard- Emulator" is not offered below the emulators.
    entries[kStandard]->setVisible(path.level == 1);
}

void frmOptions::treeProfils_MouseUp(const QPoint& pos)
{
    if (QTreeWidgetItem* node = treeProfils->itemAt(pos))
        treeProfils->setCurrentItem(node);
    updateTreeButtons();
    if (m_popupRunner)
        m_popupRunner(*mnuPopUp);
    else
        mnuPopUp->exec(treeProfils->viewport()->mapToGlobal(pos));
}

// ---- Check marks -------------------------------------------------------------------------------

void frmOptions::treeProfils_NodeCheck(QTreeWidgetItem* node)
{
    if (m_treeFilling || !node)
        return;
    const NodePath path = pathOf(node);
    const bool checked = node->checkState(0) == Qt::Checked;
    ProfilConfig& c = m_state.config;
    bool was = false;
    if (path.level == 1) {
        const EmulatorPtr e = c.emulators.find(path.emulKey);
        was = e && e->Aktiv;
    } else if (path.level == 2 || path.level == 3) {
        const ProfilPtr p = c.profils.find(path.profilKey);
        if (p && path.level == 2) {
            was = p->Aktiv;
        } else if (p) {
            const OptionTable rows = ParseOptions(p->Options);
            was = path.row >= 0 && path.row < rows.size() && rows[path.row].flag == u"1";
        }
    } else {
        return;
    }
    if (was == checked)
        return; // not a change of the mark
    if (path.level == 1)
        SetEmulatorChecked(c, path.emulKey, checked);
    else if (path.level == 2)
        SetProfilChecked(c, path.profilKey, checked);
    else
        SetItemChecked(c, path.profilKey, path.row, checked);
    treeChanged();
    // The rule may have changed other records, or refused: the marks follow the copies.
    syncTreeChecks();
}

void frmOptions::treeChanged()
{
    m_state.emulatorsChanged = true;
    m_state.profilsChanged = true;
    // The assignments offer the active profiles as they are now.
    if (m_tabFilled[FILES])
        fillFilesTab();
}

// ---- The six commands ----------------------------------------------------------------------

void frmOptions::cmdTree_Click(int index)
{
    const NodePath path = currentPath();
    if (path.level < 0)
        return;
    switch (index) {
    case kNew:
        treeNew(path);
        break;
    case kEdit:
        if (path.level >= 1)
            treeEdit(path);
        break;
    case kDelete:
        if (path.level >= 1)
            treeDelete(path);
        break;
    case kCopy:
        if (path.level >= 1) {
            m_copied = path;
            m_remembered = true;
        }
        break;
    case kPaste:
        if (pasteAllowed(path))
            treePaste(path);
        break;
    case kStandard:
        if (path.level == 1)
            treeStandard(path);
        break;
    default:
        break;
    }
    updateTreeButtons();
}

void frmOptions::treeNew(const NodePath& at)
{
    ProfilConfig& c = m_state.config;
    const QString caption = newCaption(at);
    NodePath made = at;
    if (caption == u"Neues Profil") {
        const QString key = EditProfil(c, at.emulKey, QString(), frmEditProfil::Mode::New, this);
        if (key.isEmpty())
            return;
        made.level = 2;
        made.profilKey = key;
    } else if (caption == u"Neuer Parameter") {
        if (EditParam(c.emulators, c.profils, at.profilKey, -1, QString(), this).isEmpty())
            return;
        made.level = 3;
        made.row = int(ParseOptions(c.profils.find(at.profilKey)->Options).size()) - 1;
    } else {
        const QString key = EditEmulator(c.emulators, c.profils, QString(), false, this);
        if (key.isEmpty())
            return;
        made = NodePath{1, key, {}, -1, {}};
    }
    treeChanged();
    fillTree();
    selectNode(made);
}

void frmOptions::treeEdit(const NodePath& at)
{
    ProfilConfig& c = m_state.config;
    QString result;
    if (at.level == 1)
        result = EditEmulator(c.emulators, c.profils, at.emulKey, false, this);
    else if (at.level == 2)
        result = EditProfil(c, at.emulKey, at.profilKey, frmEditProfil::Mode::Edit, this);
    else
        result = EditParam(c.emulators, c.profils, at.profilKey, at.row, QString(), this);
    if (result.isEmpty())
        return;
    // A renamed item is remembered under its new text.
    if (at.level == 3 && m_remembered && m_copied.level == 3 &&
        m_copied.profilKey == at.profilKey && m_copied.row == at.row)
        m_copied.itemText = result;
    treeChanged();
    fillTree();
    selectNode(at);
}

void frmOptions::treeDelete(const NodePath& at)
{
    ProfilConfig& c = m_state.config;
    bool deleted = false;
    if (at.level == 1) {
        deleted = DeleteEmulator(c, at.emulKey);
    } else if (at.level == 2) {
        deleted = DeleteProfil(c, at.profilKey);
    } else if (const ProfilPtr p = c.profils.find(at.profilKey)) {
        OptionTable rows = ParseOptions(p->Options);
        if (!HasNoItems(rows) && at.row >= 0 && at.row < rows.size()) {
            rows[at.row].text.clear(); // joining drops the row
            p->Options = JoinOptions(rows);
            deleted = true;
        }
    }
    // A refused emulator may have lost some profiles before the refusal: the tree shows what
    // is left either way.
    treeChanged();
    if (deleted)
        forgetRememberedUnder(at);
    fillTree();
    // After an item the one that moved up (or the last) is selected, else the parent.
    NodePath next = at;
    if (deleted && at.level < 3)
        next.level = at.level - 1;
    selectNode(next);
}

// A remembered node that was deleted, or lay beneath the deleted one, is forgotten.
void frmOptions::forgetRememberedUnder(const NodePath& deleted)
{
    if (!m_remembered)
        return;
    bool under = false;
    if (deleted.level == 1)
        under = m_copied.emulKey == deleted.emulKey;
    else if (deleted.level == 2)
        under = m_copied.level >= 2 && m_copied.profilKey == deleted.profilKey;
    else
        under = m_copied.level == 3 && m_copied.profilKey == deleted.profilKey &&
                m_copied.row == deleted.row;
    if (under)
        m_remembered = false;
    else if (deleted.level == 3 && m_copied.level == 3 && m_copied.profilKey == deleted.profilKey &&
             m_copied.row > deleted.row)
        --m_copied.row; // the rows behind the deleted one moved up
}

void frmOptions::treePaste(const NodePath& at)
{
    ProfilConfig& c = m_state.config;
    NodePath made = at;
    if (m_copied.level == 1) {
        const EmulatorPtr source = c.emulators.find(m_copied.emulKey);
        if (!source)
            return;
        const QString key = EditEmulator(c.emulators, c.profils, source->Key, true, this);
        if (key.isEmpty())
            return;
        c.emulators.find(key)->Aktiv = source->Aktiv;
        // Collected first: the new profiles join the same collection.
        QList<ProfilPtr> profils;
        for (const ProfilPtr& p : c.profils)
            if (!p->Name.isEmpty() && p->EmulKey == source->Key)
                profils << p;
        for (const ProfilPtr& p : profils)
            AddProfil(c.profils, key, p->Name, p->Options, p->Aktiv, 0);
        made = NodePath{1, key, {}, -1, {}};
    } else if (m_copied.level == 2) {
        const QString key =
            EditProfil(c, at.emulKey, m_copied.profilKey, frmEditProfil::Mode::Copy, this);
        if (key.isEmpty())
            return;
        made = NodePath{2, at.emulKey, key, -1, {}};
    } else {
        if (EditParam(c.emulators, c.profils, at.profilKey, -1, m_copied.itemText, this).isEmpty())
            return;
        const int last = int(ParseOptions(c.profils.find(at.profilKey)->Options).size()) - 1;
        made = NodePath{3, at.emulKey, at.profilKey, last, {}};
    }
    treeChanged();
    fillTree();
    selectNode(made);
}

void frmOptions::treeStandard(const NodePath& at)
{
    AdaptExtensionsToEmulator(m_state.config, at.emulKey);
    if (m_tabFilled[FILES])
        fillFilesTab(); // the new assignments
}

} // namespace vd::setup
