#include "JsonLines.h"

#include "jet/base/Text.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace {

class Parser {
public:
    explicit Parser(std::string_view source) : m_source(source) {}

    Json Value()
    {
        SkipBlanks();
        Json json;
        switch (Peek()) {
        case '{':
            json.kind = Json::Kind::Object;
            Items('{', '}', [&] {
                const std::string name = Text();
                Expect(':');
                json.members.emplace(name, Value());
            });
            break;
        case '[':
            json.kind = Json::Kind::List;
            Items('[', ']', [&] { json.list.push_back(Value()); });
            break;
        case '"':
            json.kind = Json::Kind::Text;
            json.text = Text();
            break;
        case 't':
        case 'f':
            json.kind = Json::Kind::Bool;
            json.boolean = Peek() == 't';
            m_at += json.boolean ? 4 : 5;
            break;
        case 'n':
            m_at += 4;
            break;
        default: {
            json.kind = Json::Kind::Number;
            const std::string rest(m_source.substr(m_at, 40));
            char* end = nullptr;
            json.number = std::strtod(rest.c_str(), &end);
            if (end == rest.c_str())
                throw std::runtime_error("no JSON value");
            m_at += static_cast<std::size_t>(end - rest.c_str());
        }
        }
        return json;
    }

private:
    char Peek() const { return m_at < m_source.size() ? m_source[m_at] : '\0'; }

    void SkipBlanks()
    {
        while (Peek() == ' ' || Peek() == '\r')
            ++m_at;
    }

    void Expect(char c)
    {
        SkipBlanks();
        if (Peek() != c)
            throw std::runtime_error("unexpected character in JSON");
        ++m_at;
    }

    template <typename Item>
    void Items(char open, char close, Item item)
    {
        Expect(open);
        SkipBlanks();
        if (Peek() == close) {
            ++m_at;
            return;
        }
        while (true) {
            item();
            SkipBlanks();
            if (Peek() != ',')
                break;
            ++m_at;
        }
        Expect(close);
    }

    std::string Text()
    {
        Expect('"');
        std::string text;
        std::u16string escaped; // neighbouring escapes may be one surrogate pair
        while (true) {
            const char c = Peek();
            ++m_at;
            if (c == '\\' && Peek() == 'u') {
                escaped.push_back(static_cast<char16_t>(
                    std::stoul(std::string(m_source.substr(m_at + 1, 4)), nullptr, 16)));
                m_at += 5;
                continue;
            }
            text += jet::Utf8FromUtf16(escaped);
            escaped.clear();
            if (c == '"')
                return text;
            if (c != '\\') {
                text.push_back(c);
                continue;
            }
            const char e = Peek();
            ++m_at;
            text.push_back(e == 'n'   ? '\n'
                           : e == 'r' ? '\r'
                           : e == 't' ? '\t'
                           : e == 'b' ? '\b'
                           : e == 'f' ? '\f'
                                      : e);
        }
    }

    std::string_view m_source;
    std::size_t m_at = 0;
};

} // namespace

const Json& Json::operator[](const std::string& name) const
{
    return members.at(name);
}

Json Json::Parse(std::string_view source)
{
    return Parser(source).Value();
}

std::vector<Json> ReadJsonLines(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::vector<Json> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(Json::Parse(line));
    return lines;
}
