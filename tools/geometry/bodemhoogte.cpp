#include "Program.h"

int main(int argc, char** argv)
{
    return geometrytools::RunOnStandardStreams(argc, argv, geometrytools::RunBodemhoogte);
}
