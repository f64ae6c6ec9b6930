#include "jet/index/IndexTree.h"

#include "jet/storage/Faults.h"

namespace jet {

void IndexCursor::Load(PageNumber leaf)
{
    m_leaf.reset();
    m_page = m_tree->File().Read(leaf);
    m_leaf.emplace(m_tree->File(), leaf, m_tree->Owner(), m_page.Data());
    if (!m_leaf->IsLeaf())
        ThrowDamaged(m_tree->File(), leaf,
                     "de keten van bladeren van de index leidt naar een knoop");
    m_changes = m_tree->File().ChangeCount();
}

bool IndexCursor::IsStale() const
{
    return !m_leaf || m_changes != m_tree->File().ChangeCount();
}

bool IndexCursor::Take(std::size_t position)
{
    m_position = position;
    m_after = m_leaf->After(position);
    m_leaf->CopyEntry(position, m_entry);
    return true;
}

bool IndexCursor::SeekFirst(ByteSpan target)
{
    Load(m_tree->FindLeaf(target));
    const std::size_t at = m_leaf->LowerBound(target);
    if (at == m_leaf->End())
        return MoveRight(target);
    Take(at);
    if (CompareBytes(m_entry, target) < 0)
        FailOrder();
    return true;
}

bool IndexCursor::SeekBefore(ByteSpan target)
{
    Load(m_tree->FindLeaf(target));
    const std::size_t at = m_leaf->LowerBound(target);
    if (at == 0)
        return MoveLeft(target);
    Take(m_leaf->Before(at));
    if (CompareBytes(m_entry, target) >= 0)
        FailOrder();
    return true;
}

bool IndexCursor::SeekLast()
{
    Load(m_tree->LastLeaf());
    if (m_leaf->End() > 0)
        return Take(m_leaf->Before(m_leaf->End()));
    const Bytes behindAll(64, std::byte{0xFF});
    return MoveLeft(behindAll);
}

bool IndexCursor::Next()
{
    if (IsStale()) {
        Bytes behind = m_entry; // nothing stands between an entry and itself with a zero
        behind.push_back(std::byte{0});
        return SeekFirst(behind);
    }
    if (m_after < m_leaf->End())
        return Take(m_after);
    const Bytes here = m_entry;
    return MoveRight(here);
}

bool IndexCursor::Previous()
{
    if (IsStale()) {
        const Bytes here = m_entry;
        return SeekBefore(here);
    }
    if (m_position > 0)
        return Take(m_leaf->Before(m_position));
    const Bytes here = m_entry;
    return MoveLeft(here);
}

// Leaves must rise from one to the next: that is also what keeps a chain that
// runs into itself from being walked for ever.

bool IndexCursor::MoveRight(ByteSpan floor)
{
    for (PageNumber steps = 0; m_leaf->Next() != 0; ++steps) {
        if (steps > m_tree->File().PageCount())
            FailOrder();
        Load(m_leaf->Next());
        if (m_leaf->End() == 0)
            continue;
        Take(0);
        if (CompareBytes(m_entry, floor) <= 0)
            FailOrder();
        return true;
    }
    return false;
}

bool IndexCursor::MoveLeft(ByteSpan ceiling)
{
    for (PageNumber steps = 0; m_leaf->Previous() != 0; ++steps) {
        if (steps > m_tree->File().PageCount())
            FailOrder();
        Load(m_leaf->Previous());
        if (m_leaf->End() == 0)
            continue;
        Take(m_leaf->Before(m_leaf->End()));
        if (CompareBytes(m_entry, ceiling) >= 0)
            FailOrder();
        return true;
    }
    return false;
}

void IndexCursor::FailOrder() const
{
    ThrowDamaged(m_tree->File(), m_page.Number(), "de index staat niet op volgorde");
}

} // namespace jet
