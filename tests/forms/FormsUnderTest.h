#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>

/// One form for the check that form and language file belong together.
struct FormUnderTest {
    QString iniName;
    std::function<std::unique_ptr<QWidget>()> make;
    /// Keys of section `Captions` that the form's code reads by itself.
    QStringList ownKeys = {};
};

/// Every form of the program that owns an ini file.
QList<FormUnderTest> FormsUnderTest();
