// KVCORE::STRING beside std::string, and the pool beside the standard library's.
#include <benchmark/benchmark.h>

#include <memory_resource>
#include <string>
#include <vector>

#include "kvcore/pool_allocator.h"
#include "kvcore/string.h"
#include "kvcore/string_builder.h"

namespace {

// Longer than what std::string keeps within itself, as most paths and labels are.
constexpr char TEXT[] = "stadium/stands/north/upper_tier_01.kva";
constexpr std::size_t SLOT = 48;
constexpr int SLOTS = 256;

void copy_kvcore_borrowed(benchmark::State& state) {
    const KVCORE::STRING source(TEXT, KVCORE::COPY_MODE::KEEP);
    for (auto _ : state) {
        KVCORE::STRING copy = source;
        benchmark::DoNotOptimize(copy);
    }
}
void copy_kvcore_buffer(benchmark::State& state) {
    const KVCORE::STRING source(TEXT);
    for (auto _ : state) {
        KVCORE::STRING copy = source;
        benchmark::DoNotOptimize(copy);
    }
}
void copy_std(benchmark::State& state) {
    const std::string source(TEXT);
    for (auto _ : state) {
        std::string copy = source;
        benchmark::DoNotOptimize(copy);
    }
}

void compare_kvcore_borrowed(benchmark::State& state) {
    const std::string other(TEXT);
    KVCORE::STRING a(TEXT, KVCORE::COPY_MODE::KEEP);
    KVCORE::STRING b(other.c_str(), KVCORE::COPY_MODE::KEEP);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(a.equals(b));
    }
}
void compare_kvcore_buffer(benchmark::State& state) {
    KVCORE::STRING a(TEXT);
    KVCORE::STRING b(TEXT);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(a.equals(b));
    }
}
void compare_kvcore_mixed(benchmark::State& state) {
    KVCORE::STRING a(TEXT);
    KVCORE::STRING b(TEXT, KVCORE::COPY_MODE::KEEP);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(a.equals(b));
    }
}
void compare_std(benchmark::State& state) {
    std::string a(TEXT);
    std::string b(TEXT);
    for (auto _ : state) {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(a == b);
    }
}

void build_kvcore(benchmark::State& state) {
    for (auto _ : state) {
        KVCORE::STRING_BUILDER builder;
        for (int i = 0; i < 100; ++i) {
            builder.append(TEXT);
        }
        benchmark::DoNotOptimize(builder.create_string(KVCORE::COPY_MODE::KEEP));
    }
}
void build_std_u16(benchmark::State& state) {
    const std::u16string text(TEXT, TEXT + sizeof TEXT - 1);
    for (auto _ : state) {
        std::u16string builder;
        for (int i = 0; i < 100; ++i) {
            builder.append(text);
        }
        benchmark::DoNotOptimize(builder);
    }
}

// Gives out a batch and takes it back, the newest first.
template <typename ALLOCATE, typename FREE>
void churn(benchmark::State& state, ALLOCATE allocate, FREE free) {
    std::vector<void*> slots(SLOTS);
    for (auto _ : state) {
        for (void*& slot : slots) {
            slot = allocate();
            benchmark::DoNotOptimize(slot);
        }
        for (std::size_t i = slots.size(); i-- > 0;) {
            free(slots[i]);
        }
    }
    state.SetItemsProcessed(state.iterations() * SLOTS);
}

void pool_kvcore(benchmark::State& state) {
    KVCORE::POOL_ALLOCATOR_BASE pool("bench", SLOTS, SLOT, false, false);
    churn(
        state, [&] { return pool.alloc_slot(SLOT); }, [&](void* slot) { pool.free_slot(slot); });
}
void pool_std_unsynchronized(benchmark::State& state) {
    std::pmr::unsynchronized_pool_resource pool;
    churn(
        state, [&] { return pool.allocate(SLOT); },
        [&](void* slot) { pool.deallocate(slot, SLOT); });
}
void pool_malloc(benchmark::State& state) {
    churn(
        state, [] { return KVCORE::MEMORY_LIBC::allocate(SLOT); },
        [](void* slot) { KVCORE::MEMORY_LIBC::free(slot); });
}

BENCHMARK(copy_kvcore_borrowed);
BENCHMARK(copy_kvcore_buffer);
BENCHMARK(copy_std);
BENCHMARK(compare_kvcore_borrowed);
BENCHMARK(compare_kvcore_buffer);
BENCHMARK(compare_kvcore_mixed);
BENCHMARK(compare_std);
BENCHMARK(build_kvcore);
BENCHMARK(build_std_u16);
BENCHMARK(pool_kvcore);
BENCHMARK(pool_std_unsynchronized);
BENCHMARK(pool_malloc);

}  // namespace
