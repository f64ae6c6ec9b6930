#pragma once

#include "frame/Ports.h"

#include <QList>
#include <QString>
#include <QStringList>

/// Stand-ins for windows: they note what they were told.

class FakeStatusBar : public StatusBar {
public:
    void ShowProgress(int) override { progressShown = true; }
    void SetProgress(int) override {}
    void HideProgress() override { progressShown = false; }

    QString text;
    QStringList history; ///< every text that was shown
    bool progressShown = false;

protected:
    QString StatusText() const override { return text; }
    void ShowStatusText(const QString& newText) override
    {
        text = newText;
        history << newText;
    }
};

class FakeLog : public LogSink {
public:
    QString Text() const override { return text; }
    void SetText(const QString& newText) override { text = newText; }
    void Append(const QString& more) override { text += more; }

    QString text;
};

/// Answers questions with `answers` in turn (the last one again and again; No
/// when there are none).
class FakeBoxes : public Boxes {
public:
    struct Asked {
        int number;
        QStringList arguments;
    };

    void ShowMessage(int number, const QStringList& arguments) override
    {
        messages << Asked{number, arguments};
    }
    void ShowFout(int number, const QStringList& arguments) override
    {
        fouten << Asked{number, arguments};
    }
    int AskQuestion(int number, const QStringList& arguments) override
    {
        return Note(number, arguments);
    }
    int AskQuestionButtons(int number, const QString& button1, const QString& button2,
                           const QString& button3, const QStringList& arguments) override
    {
        buttons = QStringList{button1, button2, button3};
        return Note(number, arguments);
    }
    void ReportError(const std::exception& error) override { reported << error.what(); }

    QList<int> answers;
    QList<Asked> questions, messages, fouten;
    QStringList reported; ///< descriptions
    QStringList buttons;  ///< of the last question with buttons

private:
    int Note(int number, const QStringList& arguments)
    {
        questions << Asked{number, arguments};
        if (answers.isEmpty())
            return Answer::No;
        return answers.size() > 1 ? answers.takeFirst() : answers.first();
    }
};
