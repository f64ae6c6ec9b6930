#include "windwave/ui/WindWaveWindow.h"

#include <QApplication>

/// WindWaveCalculator [NL] [BYH]: the language, and the letters of the models.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    WindWaveWindow window(arguments.value(1), arguments.value(2));
    window.show();
    return QApplication::exec();
}
