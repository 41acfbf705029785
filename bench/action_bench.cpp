// Movements looked up by name: the action table beside a hash table of the standard library and a
// perfect hash made by gperf.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kvanim/action.h"
#ifdef KV_HAVE_GPERF
#include "action_gperf.inc"
#endif

namespace {

using namespace KVANIM;

enum class LETTERS { CAPITAL, SMALL };

// All names in a random order, so that neither the caches nor the branch predictor see a pattern.
std::vector<std::string> make_names(LETTERS letters) {
    std::vector<std::string> names;
    for (std::int32_t number = 0; number < ACTION::COUNT; number++) {
        names.emplace_back(ACTION::get_action_name(static_cast<ACTION::TYPE>(number)));
        for (char& c : names.back()) {
            const auto byte = static_cast<unsigned char>(c);
            c = static_cast<char>(letters == LETTERS::CAPITAL ? std::toupper(byte)
                                                              : std::tolower(byte));
        }
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

// Names that no row has, and that differ from one in a single letter.
std::vector<std::string> make_missing_names() {
    std::vector<std::string> names = make_names(LETTERS::CAPITAL);
    for (std::string& name : names) {
        name[name.size() / 2] = '#';
    }
    return names;
}

template <typename LOOK_UP>
void run(benchmark::State& state, const std::vector<std::string>& names, LOOK_UP look_up) {
    for (auto _ : state) {
        for (const std::string& name : names) {
            benchmark::DoNotOptimize(look_up(name));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(names.size()));
}

ACTION::TYPE find_in_table(const std::string& name) {
    return ACTION::get_action_type(name);
}

void action_table(benchmark::State& state) {
    run(state, make_names(LETTERS::CAPITAL), find_in_table);
}
void action_table_small_letters(benchmark::State& state) {
    run(state, make_names(LETTERS::SMALL), find_in_table);
}
void action_table_missing(benchmark::State& state) {
    run(state, make_missing_names(), find_in_table);
}

using ROWS = std::unordered_map<std::string, std::int32_t>;

ROWS make_rows() {
    ROWS rows;
    for (std::int32_t number = 0; number < ACTION::COUNT; number++) {
        rows.emplace(ACTION::get_action_name(static_cast<ACTION::TYPE>(number)), number);
    }
    return rows;
}

std::int32_t find_in_map(const ROWS& rows, const std::string& name) {
    const auto row = rows.find(name);
    return row == rows.end() ? 0 : row->second;
}

// The map alone; it takes capitals only, so it does less than the table.
void unordered_map(benchmark::State& state) {
    const ROWS rows = make_rows();
    run(state, make_names(LETTERS::CAPITAL),
        [&rows](const std::string& name) { return find_in_map(rows, name); });
}
void unordered_map_missing(benchmark::State& state) {
    const ROWS rows = make_rows();
    run(state, make_missing_names(),
        [&rows](const std::string& name) { return find_in_map(rows, name); });
}
// With the letters made capital first: the same work as the table's.
void unordered_map_small_letters(benchmark::State& state) {
    const ROWS rows = make_rows();
    std::string upper;
    run(state, make_names(LETTERS::SMALL), [&rows, &upper](const std::string& name) {
        upper = name;
        for (char& c : upper) {
            c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
        }
        return find_in_map(rows, upper);
    });
}

BENCHMARK(action_table);
BENCHMARK(unordered_map);
#ifdef KV_HAVE_GPERF
std::int32_t find_with_gperf(const std::string& name) {
    const GPERF_ROW* row = GPERF_ACTIONS::find(name.data(), name.size());
    return row == nullptr ? 0 : row->number;
}

void gperf(benchmark::State& state) {
    run(state, make_names(LETTERS::CAPITAL), find_with_gperf);
}
void gperf_small_letters(benchmark::State& state) {
    run(state, make_names(LETTERS::SMALL), find_with_gperf);
}
void gperf_missing(benchmark::State& state) {
    run(state, make_missing_names(), find_with_gperf);
}
BENCHMARK(gperf);
#endif
BENCHMARK(action_table_small_letters);
BENCHMARK(unordered_map_small_letters);
#ifdef KV_HAVE_GPERF
BENCHMARK(gperf_small_letters);
#endif
BENCHMARK(action_table_missing);
BENCHMARK(unordered_map_missing);
#ifdef KV_HAVE_GPERF
BENCHMARK(gperf_missing);
#endif

}  // namespace
