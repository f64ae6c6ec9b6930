#pragma once

#include "MemoryFileSystem.h"
#include "jet/dao/Workspace.h"

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

/// The engine and plain containers side by side: the same random operations on
/// both, and a comparison of everything after each.
class EngineModel {
public:
    explicit EngineModel(std::uint32_t seed);

    /// One operation. Throws std::runtime_error, saying which step of which seed
    /// went wrong, when engine and model differ.
    void Step();
    /// Compares all contents and examines the file.
    void Compare();

    struct Counts {
        int inserts = 0, updates = 0, deletes = 0, refused = 0, begins = 0, commits = 0,
            rollbacks = 0, schemaChanges = 0, reopens = 0;
    };
    const Counts& Done() const { return m_counts; }

private:
    struct Table {
        std::vector<jet::FieldDef> fields; ///< the first is Id, an autonumber
        bool uniqueCode = true;            ///< field 1 has a unique index
        std::map<int, jet::Row> rows;      ///< by Id
        int lastNumber = 0;
    };
    using Content = std::map<std::string, Table>;

    void Insert();
    void Update();
    void Delete();
    void Begin();
    void Commit();
    void Rollback();
    void CreateTable();
    void DropTable();
    void AddField();
    void DropField();
    void Reopen();

    void CompareTable(const std::string& name, const Table& table);
    jet::Value RandomValue(const jet::FieldDef& field);
    bool CodeIsTaken(const Table& table, const jet::Value& code, int exceptId) const;
    Content::iterator RandomTable(); ///< end() when there is none
    int Random(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }
    [[noreturn]] void Fail(const std::string& what) const;

    std::uint32_t m_seed;
    int m_step = 0;
    std::string m_operation;
    std::mt19937 m_random;
    jet_testing::MemoryFileSystem m_files;
    std::optional<jet::Workspace> m_workspace;
    std::unique_ptr<jet::Database> m_database;
    Content m_content;
    std::vector<Content> m_saved; ///< at each begin
    int m_names = 0;
    Counts m_counts;
};
