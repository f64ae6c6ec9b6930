#include "rekenhart/files/OutputFiles.h"

#include "rekenhart/Fout.h"
#include "rekenhart/files/TextEncoding.h"

#include <fstream>
#include <iterator>

namespace rekenhart {

namespace {

std::string FileBytes(std::string_view text)
{
    std::string bytes;
    for (const char c : ToWindows1252(text)) {
        if (c == '\n')
            bytes += '\r';
        bytes += c;
    }
    return bytes;
}

void Write(const std::filesystem::path& path, const std::string& bytes, std::ios::openmode mode)
{
    std::ofstream file(path, std::ios::binary | mode);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file)
        throw OnschrijfbaarBestand(ToUtf8(path));
}

} // namespace

std::optional<std::string> ReadBytes(const std::filesystem::path& path)
{
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored))
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return file.bad() ? std::nullopt : std::optional(std::move(bytes));
}

void WriteTextFile(const std::filesystem::path& path, std::string_view text)
{
    Write(path, FileBytes(text), std::ios::trunc);
}

Appended::Appended(const std::filesystem::path& path, std::string_view heading,
                   std::string_view lines)
    : m_path(path)
{
    std::error_code absent;
    const auto size = std::filesystem::file_size(path, absent);
    m_isNew = static_cast<bool>(absent);
    m_formerSize = m_isNew ? 0 : size;
    const std::string text =
        (m_formerSize == 0 ? std::string(heading) : std::string()) + std::string(lines);
    try {
        Write(path, FileBytes(text), std::ios::app);
    } catch (...) {
        TakeBack();
        throw;
    }
}

void Appended::TakeBack() noexcept
{
    std::error_code ignored;
    if (m_isNew)
        std::filesystem::remove(m_path, ignored);
    else
        std::filesystem::resize_file(m_path, m_formerSize, ignored);
}

} // namespace rekenhart
