// The migration layer's parsers over 50 MB of text beside std::getline and strtod, and block
// streams beside fread.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "kvcore/fsref_item.h"
#include "kvmigration/code_line_parser.h"
#include "kvmigration/input_stream.h"
#include "kvmigration/line_parser.h"
#include "kvmigration/statement_parser.h"

namespace {

using KVMIGRATION::STRING;

constexpr std::size_t TEXT_SIZE = 50'000'000;
constexpr std::size_t BLOCK_SIZE = 65536;

// The vertices of a mesh as text, a line each, ended by what the parser looks for.
const STRING& get_text() {
    static const STRING text = [] {
        STRING lines;
        lines.reserve(TEXT_SIZE + 64);
        char line[64];
        for (unsigned i = 0; lines.size() < TEXT_SIZE; ++i) {
            std::snprintf(line, sizeof line, "v %u.%06u %u.%04u %u.25;\n", i % 97,
                          i * 7919 % 1000000, i % 13, i % 10000, i % 1009);
            lines.append(line);
        }
        return lines;
    }();
    return text;
}

void set_rate(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

// Lines, words, numbers.
void numbers_parsers(benchmark::State& state) {
    const STRING& text = get_text();
    for (auto _ : state) {
        double sum = 0.0;
        KVMIGRATION::LINE_PARSER lines;
        KVMIGRATION::CHUNK_PARSER words;
        while (text.get_next_chunk(lines)) {
            words.reset();
            lines.chunk.get_next_chunk(words);
            while (lines.chunk.get_next_chunk(words)) {
                sum += static_cast<double>(words.chunk.get_real_value());
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    set_rate(state, text.size());
}
void numbers_getline_strtod(benchmark::State& state) {
    const STRING& text = get_text();
    for (auto _ : state) {
        double sum = 0.0;
        std::istringstream lines(text);
        std::string line;
        while (std::getline(lines, line)) {
            const char* at = line.c_str() + 1;
            char* end = nullptr;
            for (double value = std::strtod(at, &end); end != at; value = std::strtod(at, &end)) {
                sum += value;
                at = end;
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    set_rate(state, text.size());
}

template <typename PARSER>
void count_chunks(benchmark::State& state, std::int32_t step) {
    const STRING& text = get_text();
    for (auto _ : state) {
        PARSER parser;
        std::size_t count = 0;
        while (text.get_next_chunk(parser)) {
            parser.position += step;
            ++count;
        }
        benchmark::DoNotOptimize(count);
    }
    set_rate(state, text.size());
}
void lines_parser(benchmark::State& state) {
    count_chunks<KVMIGRATION::LINE_PARSER>(state, 0);
}
void lines_getline(benchmark::State& state) {
    const STRING& text = get_text();
    for (auto _ : state) {
        std::istringstream lines(text);
        std::string line;
        std::size_t count = 0;
        while (std::getline(lines, line)) {
            ++count;
        }
        benchmark::DoNotOptimize(count);
    }
    set_rate(state, text.size());
}
void statements_parser(benchmark::State& state) {
    count_chunks<KVMIGRATION::STATEMENT_PARSER>(state, 1);
}
void tokens_parser(benchmark::State& state) {
    count_chunks<KVMIGRATION::CODE_LINE_PARSER>(state, 0);
}

// The text as a file, removed at the end.
class BENCH_FILE {
public:
    BENCH_FILE()
        : path((std::filesystem::temp_directory_path() /
                std::string("kv_parser_bench_").append(std::to_string(::getpid())))
                   .string()) {
        get_text().write(path);
    }
    ~BENCH_FILE() { ::unlink(path.c_str()); }
    static const std::string& get_path() {
        static const BENCH_FILE file;
        return file.path;
    }

private:
    const std::string path;
};

void blocks_kvcore(benchmark::State& state) {
    const auto item = KVCORE::FSREF_ITEM::create(BENCH_FILE::get_path());
    std::vector<unsigned char> block(BLOCK_SIZE);
    for (auto _ : state) {
        const auto stream = item->open_to_read();
        std::int64_t total = 0;
        while (stream->get_last_result() == 0) {
            total += stream->read_bytes(block.data(), BLOCK_SIZE);
        }
        benchmark::DoNotOptimize(total);
    }
    set_rate(state, get_text().size());
}
void blocks_kvmigration(benchmark::State& state) {
    std::vector<unsigned char> block(BLOCK_SIZE);
    for (auto _ : state) {
        KVMIGRATION::INPUT_STREAM stream(BENCH_FILE::get_path());
        while (stream.read(block.data(), static_cast<std::int32_t>(BLOCK_SIZE))) {
            benchmark::DoNotOptimize(block.data());
        }
    }
    set_rate(state, get_text().size());
}
void blocks_fread(benchmark::State& state) {
    std::vector<unsigned char> block(BLOCK_SIZE);
    for (auto _ : state) {
        std::FILE* const file = std::fopen(BENCH_FILE::get_path().c_str(), "rbe");
        while (std::fread(block.data(), 1, BLOCK_SIZE, file) == BLOCK_SIZE) {
            benchmark::DoNotOptimize(block.data());
        }
        std::fclose(file);
    }
    set_rate(state, get_text().size());
}

void values_kvmigration(benchmark::State& state) {
    for (auto _ : state) {
        KVMIGRATION::INPUT_STREAM stream(BENCH_FILE::get_path());
        std::uint32_t value = 0;
        std::uint32_t sum = 0;
        while (stream.read(value)) {
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    set_rate(state, get_text().size());
}
void values_fread(benchmark::State& state) {
    for (auto _ : state) {
        std::FILE* const file = std::fopen(BENCH_FILE::get_path().c_str(), "rbe");
        std::uint32_t value = 0;
        std::uint32_t sum = 0;
        while (std::fread(&value, 1, sizeof value, file) == sizeof value) {
            sum += value;
        }
        std::fclose(file);
        benchmark::DoNotOptimize(sum);
    }
    set_rate(state, get_text().size());
}

BENCHMARK(numbers_parsers)->Unit(benchmark::kMillisecond);
BENCHMARK(numbers_getline_strtod)->Unit(benchmark::kMillisecond);
BENCHMARK(lines_parser)->Unit(benchmark::kMillisecond);
BENCHMARK(lines_getline)->Unit(benchmark::kMillisecond);
BENCHMARK(statements_parser)->Unit(benchmark::kMillisecond);
BENCHMARK(tokens_parser)->Unit(benchmark::kMillisecond);
BENCHMARK(blocks_kvcore)->Unit(benchmark::kMillisecond);
BENCHMARK(blocks_kvmigration)->Unit(benchmark::kMillisecond);
BENCHMARK(blocks_fread)->Unit(benchmark::kMillisecond);
BENCHMARK(values_kvmigration)->Unit(benchmark::kMillisecond);
BENCHMARK(values_fread)->Unit(benchmark::kMillisecond);

}  // namespace
