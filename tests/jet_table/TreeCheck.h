#pragma once

#include "jet/table/TableInternals.h"

#include <vector>

/// Examines a whole tree as a strict reader would: page kinds and levels, free
/// counts, masks, prefixes, order, node entries that name their child's last
/// entry exactly, the chain of leaves. Failures are test failures.
/// Returns all leaf entries in order.
/// `lenient` bears what other programs write: missing levels and previous pointers of nodes, and
/// nodes that list every child.
std::vector<jet::Bytes> ExpectSoundTree(const jet::IndexTree& tree, bool lenient = false,
                                        int* depth = nullptr);

/// Compares the entries of every index of the table with the keys of its rows.
/// Returns how many there were.
int ExpectIndexesMatchRows(const jet::Table& table);
