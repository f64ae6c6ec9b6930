#include "MdbInput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<std::byte>;

std::vector<std::filesystem::path> Samples()
{
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(
             std::filesystem::path(TEST_DATA_FOLDER) / "jet" / "samples"))
        if (entry.path().extension() == ".mdb")
            paths.push_back(entry.path());
    std::ranges::sort(paths);
    return paths;
}

Bytes Load(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> chars{std::istreambuf_iterator<char>(file), {}};
    Bytes bytes(chars.size());
    std::ranges::transform(chars, bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
    return bytes;
}

/// Damage of the kinds that files meet, and of the kinds that attackers choose.
void Damage(Bytes& bytes, std::mt19937& random)
{
    const auto below = [&](std::size_t limit) { return random() % limit; };
    const std::size_t page = bytes.size() / 4096 > 0 ? below(bytes.size() / 4096) * 4096 : 0;
    switch (below(6)) {
    case 0: // single bytes, the header left alone
        for (std::size_t i = 1 + below(8); i > 0; --i)
            bytes[4096 + below(bytes.size() - 4096)] = static_cast<std::byte>(random());
        break;
    case 1: // the fields at the start of a page
        for (std::size_t i = 1 + below(4); i > 0; --i)
            bytes[page + below(64)] = static_cast<std::byte>(random());
        break;
    case 2: { // a number in a page becomes another page's number
        const std::size_t at = page + below(4092);
        const std::size_t number = below(bytes.size() / 2048 + 2);
        for (std::size_t i = 0; i < 4; ++i)
            bytes[at + i] = static_cast<std::byte>(number >> (8 * i));
        break;
    }
    case 3: // a page copied over another
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(page), 4096,
                    bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size() / 4096) * 4096));
        break;
    case 4: // the rest of a page lost
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(page + below(2048)), 2048,
                    std::byte{0});
        break;
    default: // cut off, whole pages
        bytes.resize(std::max<std::size_t>(8192, below(bytes.size() / 4096) * 4096));
    }
}

TEST(Mutation, ReadsTheSamplesWhole)
{
    for (const auto& path : Samples())
        EXPECT_TRUE(ReadEverything(Load(path))) << path;
}

// A bounded run of what the fuzz target does without bound. Nothing but Error may
// come out: a crash, a hang or another exception ends the test.
TEST(Mutation, BearsDamageOfEveryKind)
{
    std::mt19937 random(20011);
    int opened = 0;
    for (const auto& path : Samples()) {
        const Bytes original = Load(path);
        for (int round = 0; round < 60; ++round) {
            Bytes bytes = original;
            for (std::size_t times = 1 + random() % 3; times > 0; --times)
                Damage(bytes, random);
            SCOPED_TRACE(path.filename().string() + " round " + std::to_string(round));
            ASSERT_NO_THROW(opened += ReadEverything(bytes) ? 1 : 0);
        }
    }
    EXPECT_GT(opened, 300);
}

TEST(Mutation, BearsChangesInDamagedFiles)
{
    std::mt19937 random(314);
    for (const auto& path : Samples()) {
        const Bytes original = Load(path);
        for (int round = 0; round < 25; ++round) {
            Bytes bytes = original;
            if (round > 0)
                Damage(bytes, random);
            SCOPED_TRACE(path.filename().string() + " round " + std::to_string(round));
            ASSERT_NO_THROW(ChangeEverything(bytes));
        }
    }
}

TEST(Mutation, BearsFilesCutOffAnywhere)
{
    const Bytes original = Load(Samples().front());
    for (std::size_t length = 1; length < original.size(); length += 997)
        ASSERT_NO_THROW(ReadEverything(std::span(original).first(length))) << length;
}

} // namespace
