#include "FormsUnderTest.h"

#include "mainwindow/frmAbout.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/frmSplash.h"

QList<FormUnderTest> FormsUnderTest()
{
    return {
        {"About.ini", [] { return std::make_unique<frmAbout>(); }},
        {"Main.ini", [] { return std::make_unique<frmMain>(); }, {"database.open.title"}},
        {"Splash.ini", [] { return std::make_unique<frmSplash>(); }},
    };
}
