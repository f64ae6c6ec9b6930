#pragma once

#include "jet/table/TableInternals.h"

namespace jet {

/// A row found for reading, with its page pinned.
struct RowReader::State {
    TableParts* parts = nullptr;
    RowId id;
    PageNumber at = 0; ///< where its bytes stand, which a moved row's id does not tell
    PageView page;
    std::optional<RowView> view;
    std::uint64_t changes = 0;

    void Point(FoundRow&& row);
    bool Find();
    /// The row, looked up again when the file changed. Throws NoCurrentRow.
    const RowView& Row();
};

} // namespace jet
