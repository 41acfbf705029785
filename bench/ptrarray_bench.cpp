// PTRARRAY beside std::vector: adding, searching a sorted array, scanning for a pointer.
#include "platform/ptrarray.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace {

struct RECORD {
    std::int32_t key;
};

int compare_records(const void* a, const void* b) {
    const std::int32_t left = (*static_cast<const RECORD* const*>(a))->key;
    const std::int32_t right = (*static_cast<const RECORD* const*>(b))->key;
    return (left > right) - (left < right);
}

std::vector<RECORD> make_records(std::int64_t count) {
    std::vector<RECORD> records(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < records.size(); ++i) {
        records[i].key = static_cast<std::int32_t>(2 * i);
    }
    return records;
}

// A walk over all keys in an order that no predictor learns; odd keys aren't there.
std::int32_t next_key(std::uint32_t& state, std::int64_t count) {
    state = state * 1664525u + 1013904223u;
    return static_cast<std::int32_t>(
        (std::uint64_t{state} * 2 * static_cast<std::uint64_t>(count)) >> 32);
}

void add_ptrarray(benchmark::State& state) {
    std::vector<RECORD> records = make_records(state.range(0));
    for (auto _ : state) {
        PTRARRAY array;
        for (RECORD& record : records) {
            array.add(&record);
        }
        benchmark::DoNotOptimize(array.get_data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void add_vector(benchmark::State& state) {
    std::vector<RECORD> records = make_records(state.range(0));
    for (auto _ : state) {
        std::vector<void*> array;
        for (RECORD& record : records) {
            array.push_back(&record);
        }
        benchmark::DoNotOptimize(array.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void search_ptrarray(benchmark::State& state) {
    std::vector<RECORD> records = make_records(state.range(0));
    PTRARRAY array(0, 0, nullptr, compare_records);
    for (RECORD& record : records) {
        array.add(&record);
    }
    std::uint32_t seed = 1;
    for (auto _ : state) {
        RECORD key{next_key(seed, state.range(0))};
        benchmark::DoNotOptimize(array.find(&key));
    }
    state.SetItemsProcessed(state.iterations());
}

void search_vector(benchmark::State& state) {
    std::vector<RECORD> records = make_records(state.range(0));
    std::vector<RECORD*> array;
    for (RECORD& record : records) {
        array.push_back(&record);
    }
    std::uint32_t seed = 1;
    for (auto _ : state) {
        const std::int32_t key = next_key(seed, state.range(0));
        const auto found =
            std::lower_bound(array.begin(), array.end(), key,
                             [](const RECORD* record, std::int32_t k) { return record->key < k; });
        benchmark::DoNotOptimize(
            found != array.end() && (*found)->key == key ? found - array.begin() : -1);
    }
    state.SetItemsProcessed(state.iterations());
}

void scan_ptrarray(benchmark::State& state) {
    std::vector<RECORD> records = make_records(state.range(0));
    PTRARRAY array;
    for (RECORD& record : records) {
        array.add(&record);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(array.find(&records.back()));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void scan_vector(benchmark::State& state) {
    std::vector<RECORD> records = make_records(state.range(0));
    std::vector<void*> array;
    for (RECORD& record : records) {
        array.push_back(&record);
    }
    for (auto _ : state) {
        void* key = &records.back();
        benchmark::DoNotOptimize(std::find(array.begin(), array.end(), key));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(add_ptrarray)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(add_vector)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(search_ptrarray)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(search_vector)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(scan_ptrarray)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(scan_vector)->Arg(10)->Arg(1000)->Arg(100000);

}  // namespace
