#pragma once
// The writes of a batch grouped into transactions that are committed at least every half second
// and at the end, so a crash loses at most that last half second and the batch stays fast.
// Rows written before a failure stay: the end commits whatever came before it.

#include "app/Globals.h"
#include "catalogue/Database.h"

#include <QElapsedTimer>

namespace vd::import {

class BatchTransaction
{
public:
    static constexpr qint64 kCommitIntervalMs = 500;

    explicit BatchTransaction(db::Database* database = app::gDB.get()) : m_db(database) { begin(); }
    ~BatchTransaction()
    {
        try {
            finish();
        } catch (const db::DbError&) {
            // The engine refused the commit; what it holds is its own to keep or drop.
        }
    }
    BatchTransaction(const BatchTransaction&) = delete;
    BatchTransaction& operator=(const BatchTransaction&) = delete;

    void commitIfDue()
    {
        if (m_open && m_since.elapsed() >= kCommitIntervalMs) {
            finish();
            begin();
        }
    }
    void finish()
    {
        if (!m_open)
            return;
        m_open = false;
        m_db->commitTrans();
    }

private:
    void begin()
    {
        // A caller's own transaction (an upgrade inside the opening) is left to the caller.
        if (!m_db || m_db->inTransaction())
            return;
        m_db->beginTrans();
        m_open = true;
        m_since.start();
    }

    db::Database* m_db;
    bool m_open = false;
    QElapsedTimer m_since;
};

} // namespace vd::import
