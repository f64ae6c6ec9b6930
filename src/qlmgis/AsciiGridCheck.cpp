#include "qlmgis/AsciiGridCheck.h"

#include <array>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace qlmgis {
namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool IsNumber(std::string_view token)
{
    if (token.starts_with('+'))
        token.remove_prefix(1);
    // Numbers of this kind are nearly all: a sign, a few digits, a point.
    std::size_t digits = 0;
    std::size_t points = 0;
    std::size_t i = token.starts_with('-') ? 1 : 0;
    for (; i < token.size(); ++i) {
        if (token[i] >= '0' && token[i] <= '9')
            ++digits;
        else if (token[i] == '.')
            ++points;
        else
            break;
    }
    if (i == token.size())
        return digits > 0 && points <= 1;
    double value = 0;
    const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
    return end == token.data() + token.size() && error != std::errc::invalid_argument;
}

// The blank-separated tokens of a file, read by blocks.
class Tokens {
public:
    explicit Tokens(const std::string& file)
        : m_stream(std::filesystem::path(std::u8string(file.begin(), file.end())),
                   std::ios::binary),
          m_block(1 << 20)
    {}

    // Empty at the end. Valid until the next call.
    std::string_view Next()
    {
        while (Fill() && IsBlank(m_block[m_place]))
            ++m_place;
        m_token.clear();
        const std::size_t start = m_place;
        while (m_place < m_size && !IsBlank(m_block[m_place]))
            ++m_place;
        if (m_place < m_size)
            return {m_block.data() + start, m_place - start};
        // The token runs to the end of the block, perhaps into the next one.
        m_token.assign(m_block.data() + start, m_place - start);
        while (m_token.size() < kLongest && Fill() && !IsBlank(m_block[m_place]))
            m_token.push_back(m_block[m_place++]);
        return m_token;
    }

private:
    static constexpr std::size_t kLongest = 1000; // no number is

    bool Fill()
    {
        if (m_place < m_size)
            return true;
        m_stream.read(m_block.data(), static_cast<std::streamsize>(m_block.size()));
        m_size = static_cast<std::size_t>(m_stream.gcount());
        m_place = 0;
        return m_size > 0;
    }

    std::ifstream m_stream;
    std::vector<char> m_block;
    std::size_t m_place = 0;
    std::size_t m_size = 0;
    std::string m_token;
};

} // namespace

void CheckAsciiGrid(const std::string& file, std::size_t columns, std::size_t rows)
{
    Tokens tokens(file);
    std::string_view token = tokens.Next();
    // The header: keys, each with its value.
    while (!token.empty() && !IsNumber(token)) {
        if (!std::isalpha(static_cast<unsigned char>(token.front())))
            throw std::runtime_error("the grid's header is not in order");
        if (!IsNumber(tokens.Next()))
            throw std::runtime_error("the grid has a text where a number belongs");
        token = tokens.Next();
    }
    std::size_t count = 0;
    for (; !token.empty(); token = tokens.Next(), ++count) {
        if (!IsNumber(token))
            throw std::runtime_error("the grid has a text where a number belongs");
    }
    if (count / columns != rows || count % columns != 0)
        throw std::runtime_error("the grid's rows do not agree with its header");
}

} // namespace qlmgis
