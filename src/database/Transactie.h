#pragma once

#include "jet/dao/Workspace.h"

/// A transaction that is rolled back unless it was committed. Nests.
///
/// Some operations raise before their roll-back is reached (see LeaveOpen):
/// what they did stays in an open transaction, and `leftOpen` counts those. The
/// next outermost commit takes them with it; the end of the connection undoes them.
class Transactie {
public:
    /// Both must outlive this.
    Transactie(jet::Workspace& workspace, int& leftOpen);
    ~Transactie();
    Transactie(const Transactie&) = delete;
    Transactie& operator=(const Transactie&) = delete;

    /// Commits and waits until the disk has everything. When that fails it is
    /// rolled back, with all that was left open before it, and the error goes up.
    void Commit();
    /// Leaves the transaction to the next commit or to the end of the connection.
    void LeaveOpen();

private:
    jet::Workspace& m_workspace;
    int& m_leftOpen;
    bool m_open = true;
};
