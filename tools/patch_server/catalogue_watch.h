// Keeps the newest catalogue of a published folder: a thread of its own looks for changes, so that
// the checksum of a large archive holds up nobody's download.
#ifndef TOOLS_PATCH_SERVER_CATALOGUE_WATCH_H
#define TOOLS_PATCH_SERVER_CATALOGUE_WATCH_H

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "published_catalogue.h"

class CATALOGUE_WATCH {
public:
    // `block_size` as for PUBLISHED_CATALOGUE::scan.
    CATALOGUE_WATCH(std::string published_folder, std::uint32_t archive_block_size);
    ~CATALOGUE_WATCH();
    CATALOGUE_WATCH(const CATALOGUE_WATCH&) = delete;
    CATALOGUE_WATCH& operator=(const CATALOGUE_WATCH&) = delete;

    // Reads the folder for the first time and starts to watch it. False with the reason if there
    // is nothing to serve.
    bool start(std::string& reason);
    // The newest catalogue. Any thread.
    std::shared_ptr<const PUBLISHED_CATALOGUE> get() const;

private:
    void watch();

    const std::string folder;
    const std::uint32_t block_size;
    mutable std::mutex lock;  // catalogue, stopping
    std::condition_variable wake;
    std::shared_ptr<const PUBLISHED_CATALOGUE> catalogue;
    bool stopping = false;
    std::string fingerprint;  // the watching thread's, after start
    std::thread thread;
};

#endif  // TOOLS_PATCH_SERVER_CATALOGUE_WATCH_H
