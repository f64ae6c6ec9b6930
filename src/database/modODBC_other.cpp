#include "database/modODBC.h"

void RemoveDataSource(const QString&) {}
