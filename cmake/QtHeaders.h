// Precompiled for every target that has windows; see precompile_qt().
#include <QtCore/QtCore>
#include <QtGui/QtGui>
#include <QtWidgets/QtWidgets>
