#pragma once

#include "jet/catalog/Session.h"
#include "jet/sql/Parser.h"
#include "jet/sql/Rewriter.h"
#include "jet/sql/VirtualTable.h"

#include <map>
#include <unordered_map>
#include <unordered_set>

namespace jet::sql {

class Rows;

/// Runs statements on one open file: SQLite with the file's tables as virtual
/// ones. Kept for as long as somebody uses it or the file is open; told when
/// the file closes.
class Engine : public std::enable_shared_from_this<Engine>, private Schema, private SessionUser {
public:
    /// The engine of an open file, made at the first call.
    static std::shared_ptr<Engine> Of(Session& session);

    explicit Engine(Session& session);
    ~Engine();

    /// Throws Closed once the file is closed.
    Session& File() const;
    Catalog& Tables() const { return File().Tables(); }

    /// Starts a rewritten statement. `text` is what the user wrote, for messages.
    std::unique_ptr<Rows> Run(Rewritten statement, std::string_view text);

    /// The tables as statements know them now. Call it once before a statement
    /// is bound: what was known before a change of the schema is forgotten.
    Schema& CurrentSchema();
    /// Lets go of all tables, so that the catalog may change them.
    void ForgetTables();
    /// The table behind a shape that FindTable gave.
    std::shared_ptr<Table> TableOf(const TableShape& shape) const;

    /// The first row id that a statement on one passing module gives, -1 without.
    int FindInModule(const sqlite3_module* module, void* data, const std::string& name,
                     Rewritten statement, std::string_view text);
    PendingError& Errors() { return m_errors; }
    LookupCache& Lookups() { return m_lookups; }

    /// Turns what was thrown while a statement ran into an error that tells it.
    [[noreturn]] static void RethrowFor(std::string_view text);

private:
    friend class Rows;

    std::shared_ptr<const TableShape> FindTable(std::string_view name) override;
    void FileCloses() noexcept override;
    bool Uses(std::string_view) const override { return false; }

    SqliteStatement Prepare(const std::string& sql, std::string_view text);
    void GiveBack(const std::string& sql, SqliteStatement statement);
    [[noreturn]] void Fail(int code, std::string_view text);

    Session* m_session;
    PendingError m_errors;
    LookupCache m_lookups;
    SqliteHandle m_handle;
    std::map<std::string, std::shared_ptr<VirtualTable>> m_tables; ///< by folded name
    std::uint64_t m_schemaVersion = 0;
    int m_modules = 0;
    std::uint64_t m_generation = 0; ///< rises whenever the tables are forgotten
    std::unordered_map<std::string, SqliteStatement> m_prepared;
    std::unordered_set<Rows*> m_running;
};

/// Stands around changes to the rows of some tables, and to nothing else of the
/// file: the look-ups of all other tables outlive them.
class RowChangeScope {
public:
    RowChangeScope(Engine& engine, std::vector<const Table*> tables)
        : m_engine(engine),
          m_tables(std::move(tables)),
          m_before(engine.File().File().ChangeCount())
    {}
    ~RowChangeScope()
    {
        m_engine.Lookups().KeepOthers(m_tables, m_before, m_engine.File().File().ChangeCount());
    }
    RowChangeScope(const RowChangeScope&) = delete;
    RowChangeScope& operator=(const RowChangeScope&) = delete;

private:
    Engine& m_engine;
    std::vector<const Table*> m_tables;
    std::uint64_t m_before;
};

/// The rows of a running statement, one after the other. Throws Closed when the
/// file was closed meanwhile.
class Rows {
public:
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    const std::vector<ResultColumn>& Columns() const { return m_statement.columns; }
    bool Next();
    /// A field of the current row, in the type that Columns() tells.
    Value Get(int column) const;
    /// The id of the row of the i-th table asked for; page 0 when an outer join
    /// found none.
    RowId RowIdOf(int i) const;

private:
    friend class Engine;
    Rows(std::shared_ptr<Engine> engine, Rewritten statement, std::string_view text);
    void Bind();

    std::shared_ptr<Engine> m_engine;
    Rewritten m_statement;
    std::string m_text;
    std::uint64_t m_generation;
    std::vector<std::shared_ptr<VirtualTable>> m_tables; ///< kept while it runs
    SqliteStatement m_prepared;
};

} // namespace jet::sql
