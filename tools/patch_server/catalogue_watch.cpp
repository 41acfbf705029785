#include "catalogue_watch.h"

#include <chrono>

#include "server_log.h"

namespace {

constexpr std::chrono::milliseconds WATCH_INTERVAL{500};

}  // namespace

CATALOGUE_WATCH::CATALOGUE_WATCH(std::string published_folder, std::uint32_t archive_block_size)
    : folder(std::move(published_folder)), block_size(archive_block_size) {
}

CATALOGUE_WATCH::~CATALOGUE_WATCH() {
    {
        std::lock_guard<std::mutex> guard(lock);
        stopping = true;
    }
    wake.notify_all();
    if (thread.joinable()) {
        thread.join();
    }
}

bool CATALOGUE_WATCH::start(std::string& reason) {
    fingerprint = make_fingerprint(folder);
    catalogue = PUBLISHED_CATALOGUE::scan(folder, block_size, reason);
    if (!catalogue) {
        return false;
    }
    thread = std::thread([this] { watch(); });
    return true;
}

std::shared_ptr<const PUBLISHED_CATALOGUE> CATALOGUE_WATCH::get() const {
    std::lock_guard<std::mutex> guard(lock);
    return catalogue;
}

void CATALOGUE_WATCH::watch() {
    std::string told;
    std::unique_lock<std::mutex> guard(lock);
    while (!wake.wait_for(guard, WATCH_INTERVAL, [this] { return stopping; })) {
        guard.unlock();
        const std::string now = make_fingerprint(folder);
        if (now != fingerprint) {
            std::string reason;
            // What can't be read now is tried again at the next look; the old catalogue serves on.
            if (auto fresh = PUBLISHED_CATALOGUE::scan(folder, block_size, reason)) {
                fingerprint = now;
                server_log("new catalogue: %zu add-ons, %zu archives", fresh->get_add_ons().size(),
                           fresh->get_archives().size());
                std::lock_guard<std::mutex> publish(lock);
                catalogue = std::move(fresh);
                told.clear();
            } else if (reason != told) {
                told = reason;
                server_log("the published folder can't be read yet: %s", reason.c_str());
            }
        }
        guard.lock();
    }
}
