// The model test without an end, for a night: prints each seed it starts, stops
// at the first difference. jet_dao_model [SEED]

#include "EngineModel.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char** argv)
{
    for (auto seed = static_cast<std::uint32_t>(argc > 1 ? std::atol(argv[1]) : 1);; ++seed) {
        std::printf("seed %u\n", seed);
        std::fflush(stdout);
        try {
            EngineModel model(seed);
            for (int step = 0; step < 2000; ++step) {
                model.Step();
                model.Compare();
            }
        } catch (const std::exception& error) {
            std::printf("%s\n", error.what());
            return 1;
        }
    }
}
