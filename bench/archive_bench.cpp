// Installing an update: ungzip_file and the checked unpacking against the gzip and tar programs, on
// the same archive of many small and a few large files.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "modules/misc/gzip_tools.h"
#include "modules/misc/tar_file.h"
#include "platform/disk_manager.h"

namespace {

namespace fs = std::filesystem;

// "update.tar.gz" and "update.tar" of the given size, made by the programs themselves.
class UPDATE {
public:
    explicit UPDATE(std::int64_t megabytes)
        : root(fs::temp_directory_path() / ("kv_archive_bench_" + std::to_string(::getpid()))) {
        fs::create_directories(root / "in");
        std::mt19937 random(1);
        std::int64_t left = megabytes << 20;
        for (int number = 0; left > 0; number++) {
            const std::int64_t size = number % 50 == 0 ? 16 << 20 : 16 << 10;
            const fs::path folder = root / "in" / std::to_string(number / 40);
            fs::create_directories(folder);
            std::string bytes(static_cast<std::size_t>(size), '\0');
            for (std::size_t i = 0; i < bytes.size(); i++) {
                // Half of it compresses.
                bytes[i] = static_cast<char>(i & 64 ? random() : i);
            }
            std::ofstream(folder / std::to_string(number), std::ios::binary) << bytes;
            left -= size;
        }
        run("tar --format=ustar -cf update.tar -C in .");
        run("gzip -k1 update.tar");
        fs::remove_all(root / "in");
        bytes_ = static_cast<std::int64_t>(fs::file_size(root / "update.tar"));
        disk.move_down(root.c_str(), false, true);
    }
    ~UPDATE() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    bool run(const std::string& command) const {
        return std::system(("cd '" + root.string() + "' && " + command).c_str()) == 0;
    }
    DISK_MANAGER empty_target() const {
        fs::remove_all(root / "out");
        fs::create_directory(root / "out");
        DISK_MANAGER target = disk;
        target.move_down("out");
        return target;
    }
    std::int64_t bytes() const { return bytes_; }

    fs::path root;
    DISK_MANAGER disk;

private:
    std::int64_t bytes_ = 0;
};

bool unpack(const UPDATE& update, const DISK_MANAGER& target) {
    TAR_FILE tar;
    std::string reason;
    return tar.open_tar_file("update.tar", update.disk) &&
           tar.unpack_all_files_checked(target, reason);
}

template <class WORK>
void measure(benchmark::State& state, WORK work) {
    const UPDATE update(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        const DISK_MANAGER target = update.empty_target();
        state.ResumeTiming();
        if (!work(update, target)) {
            state.SkipWithError("failed");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * update.bytes());
}

void install_with_our_tools(benchmark::State& state) {
    measure(state, [](const UPDATE& update, const DISK_MANAGER& target) {
        return ungzip_file("update.tar.gz", "update.tar", update.disk) && unpack(update, target);
    });
}

void install_with_the_programs(benchmark::State& state) {
    measure(state, [](const UPDATE& update, const DISK_MANAGER&) {
        return update.run("gunzip -kf update.tar.gz && tar -xf update.tar -C out");
    });
}

void unpack_with_our_tools(benchmark::State& state) {
    measure(state, unpack);
}

void unpack_with_the_program(benchmark::State& state) {
    measure(state, [](const UPDATE& update, const DISK_MANAGER&) {
        return update.run("tar -xf update.tar -C out");
    });
}

}  // namespace

BENCHMARK(install_with_our_tools)->Arg(512)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(install_with_the_programs)->Arg(512)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(unpack_with_our_tools)->Arg(512)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(unpack_with_the_program)->Arg(512)->Unit(benchmark::kMillisecond)->UseRealTime();
