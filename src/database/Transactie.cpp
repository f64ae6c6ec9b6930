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
        // Left open, what cannot be kept would keep everybody from reading.
        for (; m_leftOpen > 0; --m_leftOpen)
            m_workspace.Rollback();
        throw;
    }
}

void Transactie::LeaveOpen()
{
    m_open = false;
    ++m_leftOpen;
}
