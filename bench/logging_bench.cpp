// What a log call site costs: while its channel is disabled, and when a message is built, handled
// and formatted. Beside each stands the plain code that does the same.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <memory>

#include "kvcore/log_channel.h"
#include "kvcore/log_handler.h"
#include "kvcore/log_manager.h"
#include "kvcore/log_message.h"

namespace {

using KVCORE::LOG_CHANNEL;

LOG_CHANNEL off_channel("BENCH_OFF");
LOG_CHANNEL parent_off_channel("BENCH_PARENT_OFF", LOG_CHANNEL::STREAM_OUTPUT, &off_channel);
LOG_CHANNEL on_channel("BENCH_ON", LOG_CHANNEL::STREAM_OUTPUT);
std::atomic<bool> plain_switch{false};

// Takes messages, and their texts if so asked.
class BENCH_HANDLER : public KVCORE::LOG_HANDLER {
public:
    explicit BENCH_HANDLER(bool formats) : formats_(formats) {}
    std::uint32_t output(const KVCORE::LOG_MESSAGE& message) override {
        for (const auto* value = message.loggables.get(); formats_ && value;
             value = value->get_next()) {
            benchmark::DoNotOptimize(value->get_as_c8());
        }
        return 0;
    }

private:
    const bool formats_;
};

void disabled_channel(benchmark::State& state) {
    int n = 0;
    for (auto _ : state) {
        KVCORE_LOG(off_channel, 0, << "frame " << ++n << " took " << 1.5 << " ms");
        benchmark::DoNotOptimize(n);
    }
}
BENCHMARK(disabled_channel);

void disabled_parent(benchmark::State& state) {
    int n = 0;
    for (auto _ : state) {
        KVCORE_LOG(parent_off_channel, 0, << "frame " << ++n << " took " << 1.5 << " ms");
        benchmark::DoNotOptimize(n);
    }
}
BENCHMARK(disabled_parent);

void disabled_plain_switch(benchmark::State& state) {
    int n = 0;
    char line[128];
    for (auto _ : state) {
        if (plain_switch.load(std::memory_order_relaxed)) {
            std::snprintf(line, sizeof line, "frame %d took %f ms", ++n, 1.5);
        }
        benchmark::DoNotOptimize(n);
    }
}
BENCHMARK(disabled_plain_switch);

void plain_snprintf(benchmark::State& state) {
    int n = 0;
    char line[128];
    for (auto _ : state) {
        std::snprintf(line, sizeof line, "frame %d took %f ms", ++n, 1.5);
        benchmark::DoNotOptimize(line);
    }
}
BENCHMARK(plain_snprintf);

// The argument: whether the handler asks for the texts.
void enabled_channel(benchmark::State& state) {
    KVCORE::LOG_MANAGER::install_handler(std::make_unique<BENCH_HANDLER>(state.range(0) != 0));
    KVCORE::LOG_MANAGER::initialise();
    int n = 0;
    for (auto _ : state) {
        KVCORE_LOG(on_channel, 0, << "frame " << ++n << " took " << 1.5 << " ms");
    }
    KVCORE::LOG_MANAGER::shutdown();
}
BENCHMARK(enabled_channel)->Arg(0)->Arg(1);

}  // namespace
