#pragma once

#include "frame/Fouten.h"
#include "frame/Ports.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

/// Boxes that nobody sees: what they would have shown is noted.
class NotedBoxes : public Boxes {
public:
    void ShowMessage(int number, const QStringList& arguments) override
    {
        messages.emplace_back(number, arguments);
    }
    void ShowFout(int, const QStringList&) override {}
    int AskQuestion(int, const QStringList&) override { return Answer::No; }
    int AskQuestionButtons(int, const QString&, const QString&, const QString&,
                           const QStringList&) override
    {
        return Answer::No;
    }
    void ReportError(const std::exception& error) override { errors << error.what(); }

    std::vector<std::pair<int, QStringList>> messages;
    QStringList errors;
};

/// `body` must raise a Fout with exactly these.
template <typename Body>
void ExpectFout(quint32 number, const QString& source, const QString& text, Body&& body)
{
    try {
        body();
        ADD_FAILURE() << "no failure";
    } catch (const Fout& fout) {
        EXPECT_EQ(static_cast<quint32>(fout.Number()), number);
        EXPECT_EQ(fout.Source(), source);
        EXPECT_EQ(fout.Description(), text);
    }
}
