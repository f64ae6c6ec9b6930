#include "database/Transactie.h"

#include "jet/base/Error.h"

Transactie::Transactie(jet::Workspace& workspace, int& leftOpen)
    : m_workspace(workspace), m_leftOpen(leftOpen)
{
    m_workspace.BeginTrans();
}

Transactie::~Transactie()
{
    if (!m_open)
        return;
    try {
        m_workspace.Rollback();
        if (m_workspace.TransactionDepth() == m_leftOpen && !CanGoOn())
            RollBackLeftOpen();
    } catch (const jet::Error&) {
        // The error that brought us here is the one to tell.
    }
}

void Transactie::Commit()
{
    m_workspace.CommitTrans(jet::Flush::Yes);
    m_open = false;
    if (m_workspace.TransactionDepth() > m_leftOpen)
        return;
    try {
        for (; m_leftOpen > 0; --m_leftOpen)
            m_workspace.CommitTrans(jet::Flush::Yes);
    } catch (const jet::Error&) {
        RollBackLeftOpen();
        throw;
    }
}

void Transactie::LeaveOpen()
{
    if (!CanGoOn())
        return; // the destructor rolls back
    m_open = false;
    ++m_leftOpen;
}

/// Whether more can be changed within the transactions that are open. One that
/// failed half-way refuses everything but a roll-back.
bool Transactie::CanGoOn()
{
    try {
        m_workspace.BeginTrans();
        m_workspace.Rollback();
        return true;
    } catch (const jet::Error&) {
        return false;
    }
}

void Transactie::RollBackLeftOpen()
{
    for (; m_leftOpen > 0; --m_leftOpen)
        m_workspace.Rollback();
}
