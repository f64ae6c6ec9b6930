#include "Arguments.h"

namespace jetsql {

namespace {

/// A path as the command line gave it, in UTF-8.
std::filesystem::path PathFrom(const std::string& word)
{
    return std::filesystem::path(std::u8string(word.begin(), word.end()));
}

class Parser {
public:
    explicit Parser(const std::vector<std::string>& words) : m_words(words) {}

    Arguments Parse()
    {
        bool onlyWords = false; // behind "--"
        while (m_next < m_words.size()) {
            const std::string& word = m_words[m_next++];
            if (!onlyWords && word == "--")
                onlyWords = true;
            else if (!onlyWords && word.size() > 1 && word[0] == '-')
                Option(word);
            else
                Word(word);
        }
        if (m_result.command == Command::Schema && m_result.table.empty() && m_result.statements) {
            m_result.table =
                *m_result.statements; // "FILE --schema TABLE" and "--schema FILE TABLE"
            m_result.statements.reset();
        }
        const bool needsFile =
            m_result.command != Command::Help && m_result.command != Command::Version;
        if (needsFile && m_result.file.empty())
            throw UsageError("Geef de naam van een bestand.");
        if (m_result.command != Command::Statements && m_result.statements)
            throw UsageError("Dit argument hoort niet bij de gekozen opdracht: " +
                             *m_result.statements);
        return std::move(m_result);
    }

private:
    void Option(const std::string& option)
    {
        if (option == "--json")
            m_result.json = true;
        else if (option == "--read-only")
            m_result.readOnly = true;
        else if (option == "--system")
            m_result.withSystemTables = true;
        else if (option == "--tables")
            Choose(Command::Tables, option);
        else if (option == "--schema")
            Choose(Command::Schema, option);
        else if (option == "--check")
            Choose(Command::Check, option);
        else if (option == "--compact")
            Choose(Command::Compact, option);
        else if (option == "--create")
            Choose(Command::Create, option);
        else if (option == "--version")
            Choose(Command::Version, option);
        else if (option == "--help" || option == "-h")
            Choose(Command::Help, option);
        else if (option == "--import") {
            Choose(Command::Import, option);
            m_result.csv = PathFrom(ValueOf(option, "een CSV-bestand en een tabel"));
            m_result.table = ValueOf(option, "een CSV-bestand en een tabel");
        } else if (option == "--export") {
            Choose(Command::Export, option);
            m_result.table = ValueOf(option, "een tabel");
        } else {
            throw UsageError("Onbekende optie: " + option);
        }
    }

    void Choose(Command command, const std::string& option)
    {
        if (m_chosen)
            throw UsageError("De opties " + m_option + " en " + option + " gaan niet samen.");
        m_chosen = true;
        m_option = option;
        m_result.command = command;
    }

    const std::string& ValueOf(const std::string& option, const char* what)
    {
        if (m_next == m_words.size())
            throw UsageError("Achter " + option + " hoort " + what + '.');
        return m_words[m_next++];
    }

    void Word(const std::string& word)
    {
        if (m_result.file.empty())
            m_result.file = PathFrom(word);
        else if (!m_result.statements)
            m_result.statements = word;
        else
            throw UsageError("Er staat een argument te veel: " + word);
    }

    const std::vector<std::string>& m_words;
    std::size_t m_next = 0;
    Arguments m_result;
    bool m_chosen = false;
    std::string m_option;
};

} // namespace

Arguments Arguments::Parse(const std::vector<std::string>& words)
{
    return Parser(words).Parse();
}

const char* HelpText()
{
    return "Gebruik: jetsql [opties] BESTAND [OPDRACHTEN]\n"
           "\n"
           "Voert SQL-opdrachten uit op een .mdb-bestand (Access 97 tot en met 2003), of:\n"
           "  --tables             de namen van de tabellen, een per regel\n"
           "  --schema [TABEL]     velden en indexen van alle tabellen of van een\n"
           "  --export TABEL       de rijen als CSV\n"
           "  --import CSV TABEL   voegt de rijen van een CSV-bestand toe (\"-\" = "
           "standaardinvoer)\n"
           "  --create             maakt een nieuw, leeg bestand\n"
           "  --check              onderzoekt het hele bestand\n"
           "  --compact            herschrijft het bestand zonder verloren ruimte\n"
           "  --version            de versie van dit programma\n"
           "  --help               deze tekst\n"
           "\n"
           "Opties:\n"
           "  --json               uitvoer als JSON, een object per regel\n"
           "  --read-only          het bestand alleen lezen\n"
           "  --system             ook de systeemtabellen\n"
           "\n"
           "Opties mogen voor en achter BESTAND staan. Een bestand dat alleen gelezen kan\n"
           "worden, wordt zo geopend; alleen een wijziging wordt dan geweigerd.\n";
}

} // namespace jetsql
