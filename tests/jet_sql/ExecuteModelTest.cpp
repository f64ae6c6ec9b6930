#include "jet_sql/ScratchDatabase.h"

#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <vector>

// Random statements, half of which fail, in nested transactions, on the engine
// and on a plain model side by side.
namespace jet {
namespace {

using testing::ScratchDatabase;

struct ModelRow {
    int groep = 0;
    std::string naam;
    bool operator==(const ModelRow&) const = default;
};
using Model = std::map<int, ModelRow>; // by key

constexpr int kKeys = 60;

class ModelRun {
public:
    explicit ModelRun(unsigned seed) : m_random(seed)
    {
        m_scratch.Run(
            {"CREATE TABLE T (id LONG CONSTRAINT pk PRIMARY KEY, groep LONG NOT NULL, naam "
             "TEXT(12) CONSTRAINT uniek UNIQUE)",
             "CREATE INDEX g ON T (groep)"});
        m_states.push_back({});
    }

    void Step(int number)
    {
        switch (Below(12)) {
        case 0:
            if (m_states.size() < 6) {
                m_scratch.workspace.BeginTrans();
                m_states.push_back(m_states.back());
            }
            break;
        case 1:
            if (m_states.size() > 1) {
                m_scratch.workspace.CommitTrans(Below(4) == 0 ? Flush::Yes : Flush::No);
                m_states[m_states.size() - 2] = m_states.back();
                m_states.pop_back();
            }
            break;
        case 2:
            if (m_states.size() > 1) {
                m_scratch.workspace.Rollback();
                m_states.pop_back();
            }
            break;
        case 3:
        case 4:
        case 5:
            Insert();
            break;
        case 6:
            InsertSelect();
            break;
        case 7:
        case 8:
            UpdateKeys();
            break;
        case 9:
            UpdateNames();
            break;
        default:
            Delete();
        }
        Compare(number);
    }

    void End()
    {
        while (m_states.size() > 1) {
            m_scratch.workspace.Rollback();
            m_states.pop_back();
        }
        Compare(-1);
        const CheckReport report = m_scratch.db->Check();
        EXPECT_TRUE(report.IsSound()) << (report.faults.empty() ? "" : report.faults.front());
    }

    int Failures() const { return m_failures; }
    int Successes() const { return m_successes; }

private:
    int Below(int bound) { return static_cast<int>(m_random() % static_cast<unsigned>(bound)); }

    std::string Name()
    {
        std::string name = "n" + std::to_string(Below(90));
        if (Below(3) == 0)
            name[0] = 'N';
        return name;
    }

    static std::string Folded(std::string name)
    {
        name[0] = 'n';
        return name;
    }

    // The model takes over `next` when its names are unique; else the statement must fail.
    void Apply(const std::string& statement, const std::optional<Model>& next, int touched)
    {
        bool good = next.has_value();
        std::map<std::string, int> names;
        for (const auto& [id, row] : good ? *next : Model())
            good = good && (row.naam.empty() || ++names[Folded(row.naam)] == 1);
        try {
            const int count = m_scratch.db->Execute(statement);
            EXPECT_TRUE(good) << "not refused: " << statement;
            EXPECT_EQ(count, touched) << statement;
            if (good)
                m_states.back() = *next;
            ++m_successes;
        } catch (const Error& error) {
            EXPECT_FALSE(good) << statement << "\n" << error.what();
            ++m_failures;
        }
    }

    void Insert()
    {
        const int id = Below(kKeys), groep = Below(5);
        const std::string name = Name();
        std::optional<Model> next = m_states.back();
        if (!next->try_emplace(id, ModelRow{groep, name}).second)
            next.reset();
        std::string groepText = std::to_string(groep);
        if (Below(6) == 0) { // a required field left null
            groepText = "Null";
            next.reset();
        }
        Apply("INSERT INTO T (id,groep,naam) VALUES (" + std::to_string(id) + "," + groepText +
                  ",'" + name + "')",
              next, 1);
    }

    // Copies of a group, shifted; fails half-way when a key is taken.
    void InsertSelect()
    {
        const int groep = Below(5), shift = 1 + Below(20);
        std::optional<Model> next = m_states.back();
        int touched = 0;
        for (const auto& [id, row] : m_states.back()) {
            if (row.groep != groep)
                continue;
            ++touched;
            if (next && !next->try_emplace(id + shift, ModelRow{row.groep + 1, ""}).second)
                next.reset();
        }
        Apply("INSERT INTO T (id,groep) SELECT id+" + std::to_string(shift) +
                  ", groep+1 FROM T WHERE groep=" + std::to_string(groep),
              next, touched);
    }

    // All rows above a key move far up and fail on the first that is taken.
    void UpdateKeys()
    {
        const int from = Below(kKeys), shift = 1000 * (1 + Below(2));
        std::optional<Model> next = Model();
        int touched = 0;
        for (const auto& [id, row] : m_states.back())
            if (id < from || id >= 500)
                next->emplace(id, row);
        for (const auto& [id, row] : m_states.back()) {
            if (id < from || id >= 500)
                continue;
            ++touched;
            if (next && !next->emplace(id + shift, row).second)
                next.reset();
        }
        Apply("UPDATE T SET id=id+" + std::to_string(shift) + " WHERE id>=" + std::to_string(from) +
                  " AND id<500",
              next, touched);
    }

    // One name for a whole group: unique only when the group has one row.
    void UpdateNames()
    {
        const int groep = Below(7);
        const std::string name = Name();
        std::optional<Model> next = m_states.back();
        int touched = 0;
        for (auto& [id, row] : *next) {
            if (row.groep == groep) {
                row.naam = name;
                ++touched;
            }
        }
        Apply("UPDATE T SET naam='" + name + "' WHERE groep=" + std::to_string(groep), next,
              touched);
    }

    void Delete()
    {
        const int from = Below(kKeys), groep = Below(5);
        std::optional<Model> next = m_states.back();
        const auto touched = std::erase_if(*next, [&](const auto& entry) {
            return (entry.first >= from && entry.second.groep == groep) || entry.first > 2500;
        });
        Apply("DELETE * FROM T WHERE (id>=" + std::to_string(from) +
                  " AND groep=" + std::to_string(groep) + ") OR id>2500",
              next, static_cast<int>(touched));
    }

    void Compare(int number)
    {
        Model found;
        const auto rows = m_scratch.Open("SELECT id, groep, naam FROM T");
        for (; !rows->EndOfFile(); rows->MoveNext())
            found[rows->Get(0).AsInt()] = {rows->Get(1).AsInt(), rows->Get(2).AsTextOr("")};
        EXPECT_EQ(found.size(), m_states.back().size()) << "step " << number;
        EXPECT_TRUE(found == m_states.back()) << "step " << number;
        // Through each index, too.
        const int groep = Below(6);
        const auto expected =
            std::count_if(m_states.back().begin(), m_states.back().end(),
                          [&](const auto& entry) { return entry.second.groep == groep; });
        EXPECT_EQ(
            m_scratch.One("SELECT Count(*) FROM T WHERE groep=" + std::to_string(groep)).AsInt(),
            expected);
    }

    std::mt19937 m_random;
    ScratchDatabase m_scratch;
    std::vector<Model> m_states; ///< one for each open transaction, the outermost first
    int m_failures = 0, m_successes = 0;
};

TEST(ExecuteModelTest, StatementsThatFailLeaveNothingInAnyDepthOfTransactions)
{
    int failures = 0, successes = 0;
    for (unsigned seed = 1; seed <= 8 && !HasFailure(); ++seed) {
        ModelRun run(seed);
        for (int i = 0; i < 400 && !HasFailure(); ++i)
            run.Step(i);
        run.End();
        failures += run.Failures();
        successes += run.Successes();
    }
    EXPECT_GT(failures, 300);
    EXPECT_GT(successes, 300);
}

} // namespace
} // namespace jet
