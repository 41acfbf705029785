// Driver for fuzz targets in builds without libFuzzer: replays every seed, then a fixed number of
// deterministic mutations of the seeds, so that each test run exercises the parsers on bad input.
//
// usage: TARGET SEED_FOLDER [MUTATIONS_PER_SEED]
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using BYTES = std::vector<std::uint8_t>;

BYTES read_file(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return BYTES(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// One to four random edits: flipped bits, special values, cuts, repeated and spliced stretches.
void mutate(BYTES& bytes, const BYTES& other, std::mt19937& rng) {
    static constexpr std::uint8_t SPECIAL[] = {0x00, 0x01, 0x7F, 0x80, 0xFF, '\n', '/', '.'};
    const auto below = [&rng](std::size_t n) { return n == 0 ? 0 : rng() % n; };
    for (std::size_t edits = 1 + below(4); edits != 0; --edits) {
        const std::size_t at = below(bytes.size());
        const auto where = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        switch (below(6)) {
            case 0:
                if (!bytes.empty()) {
                    *where = static_cast<std::uint8_t>(*where ^ (1u << below(8)));
                }
                break;
            case 1:
                if (!bytes.empty()) {
                    *where = SPECIAL[below(sizeof SPECIAL)];
                }
                break;
            case 2:
                bytes.resize(at);
                break;
            case 3:
                bytes.insert(where, 1 + below(8), SPECIAL[below(sizeof SPECIAL)]);
                break;
            case 4:
                for (std::size_t i = at; i < std::min(at + 4, bytes.size()); ++i) {
                    bytes[i] = SPECIAL[below(sizeof SPECIAL)];
                }
                break;
            default:
                if (!other.empty()) {
                    const std::size_t from = below(other.size());
                    const std::size_t n = std::min<std::size_t>(other.size() - from, 64);
                    bytes.insert(where, other.begin() + static_cast<std::ptrdiff_t>(from),
                                 other.begin() + static_cast<std::ptrdiff_t>(from + n));
                }
                break;
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s SEED_FOLDER [MUTATIONS_PER_SEED]\n", argv[0]);
        return 2;
    }
    std::vector<std::filesystem::path> names;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1], error)) {
        if (entry.is_regular_file()) {
            names.push_back(entry.path());
        }
    }
    if (error || names.empty()) {
        std::fprintf(stderr, "%s: no seeds in %s\n", argv[0], argv[1]);
        return 1;
    }
    std::sort(names.begin(), names.end());
    std::vector<BYTES> seeds;
    for (const auto& name : names) {
        seeds.push_back(read_file(name));
    }
    const long mutations = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 300;
    std::mt19937 rng(20260101);
    std::size_t runs = 0;
    for (const BYTES& seed : seeds) {
        LLVMFuzzerTestOneInput(seed.data(), seed.size());
        ++runs;
        for (long i = 0; i < mutations; ++i, ++runs) {
            BYTES bytes = seed;
            mutate(bytes, seeds[rng() % seeds.size()], rng);
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
        }
    }
    std::printf("%zu seeds, %zu inputs\n", seeds.size(), runs);
    return 0;
}
