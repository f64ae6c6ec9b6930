#pragma once

#include <QString>

/// Removes a data source that an older installation registered. Nothing is
/// told about the outcome; outside Windows there is nothing to remove.
void RemoveDataSource(const QString& naam);
