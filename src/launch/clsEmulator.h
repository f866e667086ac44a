#pragma once
// The records of the launcher: a configured emulator program and a profile, i.e. a named
// command line for one emulator. Both are kept in collections that know their order and find
// a record by its key, the decimal text of its number.

#include <memory>
#include <QList>
#include <QString>

namespace vd::launch {

class clsEmulator
{
public:
    bool Aktiv = false;
    int EmulType = 0; // index into the emulator type table (EmulatorTypes.h)
    QString Key;
    QString Name; // empty: deleted in the options dialog
    QString Path;
};

class clsProfil
{
public:
    bool Aktiv = false;
    QString EmulKey;
    QString Key;
    QString Name; // empty: deleted in the options dialog
    QString Options;
};

// An ordered collection of shared records with a unique key each.
template <typename T> class RecordCollection
{
public:
    using Ptr = std::shared_ptr<T>;

    // Appends `record` under `key`. A key that is taken already adds nothing and gives null.
    Ptr add(const QString& key, Ptr record)
    {
        if (!record || find(key))
            return nullptr;
        m_items.append(record);
        return record;
    }
    // The record whose Key equals `key`, or null.
    Ptr find(const QString& key) const
    {
        for (const Ptr& item : m_items)
            if (item->Key == key)
                return item;
        return nullptr;
    }
    qsizetype count() const { return m_items.size(); }
    bool isEmpty() const { return m_items.isEmpty(); }
    // 0-based position.
    Ptr at(qsizetype i) const { return m_items.value(i); }
    void removeAt(qsizetype i) { m_items.removeAt(i); }
    void clear() { m_items.clear(); }
    // A deep copy: the records are copied, not shared (the options dialog edits copies).
    RecordCollection clone() const
    {
        RecordCollection copy;
        for (const Ptr& item : m_items)
            copy.m_items.append(std::make_shared<T>(*item));
        return copy;
    }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    QList<Ptr> m_items;
};

using EmulatorPtr = std::shared_ptr<clsEmulator>;
using ProfilPtr = std::shared_ptr<clsProfil>;
using Emulators = RecordCollection<clsEmulator>;
using Profils = RecordCollection<clsProfil>;

} // namespace vd::launch
