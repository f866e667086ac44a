#pragma once
// frmFlipList: edits a flip list (the disks of a multi-disk game, in list order), saves it as a
// catalogued .vfl file, and starts it: a catalogued list through its owner, any other through
// a temporary list file.

#include <QString>
#include <QStringList>
#include <QWidget>

class QAction;
class QLabel;
class QToolBar;
class QTreeWidget;

namespace vd::import {
class clsFileManager;
}

namespace vd::launch {

class frmFlipList : public QWidget
{
    Q_OBJECT
public:
    static constexpr double kDesignWidthTwips = 7500;
    static constexpr double kDesignHeightTwips = 4500;
    // Columns of lstFiles.
    enum Column
    {
        kColFile = 0,
        kColPath = 1,
        kColIcon = 2
    };

    // `fm` catalogues a saved list; it must outlive the window.
    explicit frmFlipList(import::clsFileManager* fm, QWidget* parent = nullptr);
    ~frmFlipList() override;

    // id not 0: the list of the Category row id. id 0 and a path: that file is added to the
    // list on show. Both empty: a new, empty list.
    void FillList(qint64 id, const QString& path);
    // Adds a row for `path` at the end.
    void AddListRow(const QString& path);

    // The toolbar's commands.
    void cmdNew();
    void cmdDelete();
    void cmdUp();
    void cmdDown();
    void cmdSave();
    void cmdStart();

    // What the tests and the owner look at.
    QStringList paths() const;
    QString listFile() const { return sListFile; }
    bool catalogued() const { return bCatalogued; }
    bool changed() const { return m_changed; }
    QTreeWidget* files() const { return lstFiles; }
    QAction* command(const QString& key) const;
    QLabel* fileLabel() const { return lblFile; }

signals:
    // cmdStart of a catalogued list: the owner starts the negated Category id.
    void PreviewFileStart(qint32 id);
    // A saved list was catalogued (or catalogued anew).
    void catalogueChanged();
    // The start of a list that is not catalogued, with its status text.
    void started(const QString& status);

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void buildToolbar();
    void clearList();
    void swapRows(int a, int b);
    void setChanged(bool changed);
    void UpdateButtons();
    int selectedRow() const;
    void selectRow(int row);
    bool catalogueList(const QString& fileName);

    import::clsFileManager* m_fm;
    QString sListFile;        // the .vfl on show, "" for a new list
    bool bCatalogued = false; // opened from a catalogued file
    qint64 m_categoryId = 0;  // its Category row
    bool m_changed = false;
    QToolBar* tbListe = nullptr;
    QLabel* lblFile = nullptr;
    QTreeWidget* lstFiles = nullptr;
};

// The icon key of a list row: "ZIP" for an archive (".ZIP;.RAR;.7Z;.CAB"), else the file's
// extension upper-cased with its point.
QString flipRowIconKey(const QString& path);

// The name a list is saved under: ".vfl" added unless it already ends in ".VFL" in any case.
QString flipListFileName(const QString& chosen);

} // namespace vd::launch
