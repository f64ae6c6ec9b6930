#include "jet/sql/Functions.h"

#include <cmath>

namespace jet::sql {

namespace {

// --- First, Last: the value of the row met first or last, null or not -------

struct Kept {
    sqlite3_value* value;
};

template <bool last>
void KeepStep(sqlite3_context* context, int, sqlite3_value** values) noexcept
{
    auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, sizeof(Kept)));
    if (kept == nullptr || (kept->value != nullptr && !last))
        return;
    sqlite3_value_free(kept->value);
    kept->value = sqlite3_value_dup(values[0]);
}

void KeepFinal(sqlite3_context* context) noexcept
{
    auto* kept = static_cast<Kept*>(sqlite3_aggregate_context(context, 0));
    if (kept == nullptr || kept->value == nullptr)
        return;
    sqlite3_result_value(context, kept->value);
    sqlite3_value_free(kept->value);
}

// --- spread: Welford's running mean and sum of squares ----------------------

struct Spread {
    std::int64_t count;
    double mean, squares;
};

void SpreadStep(sqlite3_context* context, int, sqlite3_value** values) noexcept
{
    if (sqlite3_value_type(values[0]) == SQLITE_NULL)
        return;
    auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, sizeof(Spread)));
    if (spread == nullptr)
        return;
    const double value = sqlite3_value_double(values[0]);
    const double before = value - spread->mean;
    ++spread->count;
    spread->mean += before / static_cast<double>(spread->count);
    spread->squares += before * (value - spread->mean);
}

template <int less, bool root>
void SpreadFinal(sqlite3_context* context) noexcept
{
    const auto* spread = static_cast<Spread*>(sqlite3_aggregate_context(context, 0));
    if (spread == nullptr || spread->count <= less)
        return;
    const double variance = spread->squares / static_cast<double>(spread->count - less);
    sqlite3_result_double(context, root ? std::sqrt(variance) : variance);
}

} // namespace

void RegisterAggregates(sqlite3* db, PendingError&)
{
    const auto add = [db](const char* name, auto* step, auto* final) {
        sqlite3_create_function_v2(db, name, 1, SQLITE_UTF8, nullptr, nullptr, step, final,
                                   nullptr);
    };
    add("jet_first", KeepStep<false>, KeepFinal);
    add("jet_last", KeepStep<true>, KeepFinal);
    add("jet_stdev", SpreadStep, SpreadFinal<1, true>);
    add("jet_stdevp", SpreadStep, SpreadFinal<0, true>);
    add("jet_var", SpreadStep, SpreadFinal<1, false>);
    add("jet_varp", SpreadStep, SpreadFinal<0, false>);
}

} // namespace jet::sql
