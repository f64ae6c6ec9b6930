#include "rekenhart/data/JetGegevensbron.h"
#include "rekenhart/files/InputFile.h"
#include "rekenhart/files/TextEncoding.h"
#include "rekenhart/program/CommandLine.h"
#include "rekenhart/report/Reports.h"
#include "rekenhart/run/Rekenrun.h"

#include <iostream>

using namespace rekenhart;

int main(int argc, char** argv)
{
    Console console(std::cout);
    const auto arguments = CommandLineArguments(argc, argv);
    const std::string option = arguments.empty() ? "" : UpperCase(arguments[0]);

    if (option == "-VERSIE" && arguments.size() == 1) {
        console.Line(ProgramLine());
        return static_cast<int>(ExitCode::Ok);
    }
    if (option == "-INVOER" && arguments.size() == 2) {
        console.Line(ProgramLine());
        return static_cast<int>(Rekenrun(OpenJetGegevensbron, console).Run(ToPath(arguments[1])));
    }
    console.Line("FOUT: Gebruik: rekenhart -INVOER bestand, of rekenhart -VERSIE.");
    return static_cast<int>(ExitCode::NoInput);
}
