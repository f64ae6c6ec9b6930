#pragma once

#include "jet/dao/Workspace.h"

/// A transaction that is rolled back unless it was committed. Nests.
///
/// Some operations raise before their roll-back is reached (see LeaveOpen):
/// what they did stays in an open transaction, and `leftOpen` counts those. The
/// next outermost commit takes them with it; the end of the connection undoes them.
class Transactie {
public:
    Transactie(jet::Workspace& workspace, int& leftOpen)
        : m_workspace(workspace), m_leftOpen(leftOpen)
    {
        m_workspace.BeginTrans();
    }
    ~Transactie()
    {
        if (!m_open)
            return;
        try {
            m_workspace.Rollback();
        } catch (const jet::Error&) {
            // The error that brought us here is the one to tell.
        }
    }
    Transactie(const Transactie&) = delete;
    Transactie& operator=(const Transactie&) = delete;

    /// Commits and waits until the disk has everything.
    void Commit()
    {
        m_workspace.CommitTrans(jet::Flush::Yes);
        m_open = false;
        if (m_workspace.TransactionDepth() > m_leftOpen)
            return;
        for (; m_leftOpen > 0; --m_leftOpen)
            m_workspace.CommitTrans(jet::Flush::Yes);
    }
    /// Leaves the transaction to the next commit or to the end of the connection.
    void LeaveOpen()
    {
        m_open = false;
        ++m_leftOpen;
    }

private:
    jet::Workspace& m_workspace;
    int& m_leftOpen;
    bool m_open = true;
};
