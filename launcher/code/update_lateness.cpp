#include "launcher/update_lateness.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "modules/frameworks/application_loop.h"

void UPDATE_LATENESS::begin_update(std::int64_t now_us, LAUNCHER_PAGE page) {
    if (last_us >= 0) {
        const std::int64_t late =
            std::max<std::int64_t>(now_us - last_us - IDLE_UPDATE_RATE_MS * 1000, 0);
        PAGE_COUNTS& of_page = counts[std::min<std::size_t>(last_page, counts.size() - 1)];
        const auto bound = std::find_if(BOUNDS_MS.begin(), BOUNDS_MS.end(),
                                        [late](std::int32_t ms) { return late <= ms * 1000; });
        ++of_page.classes[static_cast<std::size_t>(bound - BOUNDS_MS.begin())];
        ++of_page.updates;
        of_page.max_us = std::max(of_page.max_us, late);
    }
    last_us = now_us;
    last_page = page;
}

void UPDATE_LATENESS::begin_update(LAUNCHER_PAGE page) {
    if (!file.empty()) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        begin_update(std::chrono::duration_cast<std::chrono::microseconds>(now).count(), page);
    }
}

std::string UPDATE_LATENESS::make_text() const {
    std::string text = "page updates max_ms";
    for (const std::int32_t bound : BOUNDS_MS) {
        text += " le_" + std::to_string(bound);
    }
    text += " more\n";
    for (const LAUNCHER_PAGE page : {PAGE_NONE, PAGE_SPLASH, PAGE_DOWNLOAD, PAGE_ERROR}) {
        const PAGE_COUNTS& of_page = counts[page];
        if (of_page.updates == 0) {
            continue;
        }
        text += get_page_name(page);
        text += ' ' + std::to_string(of_page.updates);
        text += ' ' + std::to_string((of_page.max_us + 999) / 1000);
        for (const std::int64_t count : of_page.classes) {
            text += ' ' + std::to_string(count);
        }
        text += '\n';
    }
    return text;
}

void UPDATE_LATENESS::write() const {
    if (file.empty()) {
        return;
    }
    if (std::FILE* out = std::fopen(file.c_str(), "we")) {
        const std::string text = make_text();
        std::fwrite(text.data(), 1, text.size(), out);
        std::fclose(out);
    }
}

const char* get_page_name(LAUNCHER_PAGE page) {
    switch (page) {
        case PAGE_SPLASH:
            return "splash";
        case PAGE_DOWNLOAD:
            return "download";
        case PAGE_ERROR:
            return "error";
        default:
            return "none";
    }
}
