// Back buffers and their way to the screen.
#include <algorithm>

#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/image.h"
#include "platform/process_tools.h"
#include "platform/window_events.h"
#include "platform/window_platform.h"
#include "sdl_platform.h"

namespace {

using SURFACE = std::unique_ptr<SDL_Surface, SDL_SURFACE_DELETER>;

constexpr COLOUR BLACK = 0xFF000000;

// A surface that looks at the pixels of an image. Its alpha counts for nothing on the screen.
SURFACE view_image(const IMAGE& image) {
    return SURFACE(SDL_CreateRGBSurfaceWithFormatFrom(
        image.pixels.get(), image.width, image.height, 32,
        image.stride * static_cast<int>(sizeof(COLOUR)), SDL_PIXELFORMAT_RGB888));
}

// The whole number of surface pixels for one of the back buffer; 0 if the desktop enlarges by
// something in between.
std::int32_t find_factor(const WINDOW_SYSTEM& system, SDL_Window* sdl, const SDL_Surface* surface) {
    int width = 0;
    int height = 0;
    SDL_GetWindowSize(sdl, &width, &height);
    if (width < 1 || height < 1 || surface->w % width != 0 || surface->h % height != 0 ||
        surface->w / width != surface->h / height) {
        return 0;
    }
    return surface->w / width * system.scale;
}

// Copies `area` of the picture to its place on the surface, enlarged by `factor`. `area` becomes
// the part of the surface that has changed.
void copy_area(SDL_Surface* picture, SDL_Surface* surface, std::int32_t factor, SDL_Rect& area) {
    SDL_Rect source = area;
    SDL_Rect target = {area.x * factor, area.y * factor, area.w * factor, area.h * factor};
    if (factor == 1) {
        SDL_BlitSurface(picture, &source, surface, &target);
    } else if (factor > 1) {
        SDL_BlitScaled(picture, &source, surface, &target);
    } else {
        // A part alone would leave seams where its edges fall within a pixel of the surface.
        target = {0, 0, surface->w, surface->h};
        SDL_BlitScaled(picture, nullptr, surface, &target);
    }
    area = target;
}

}  // namespace

void create_back_buffer(IMAGE* image, std::int16_t width, std::int16_t height) {
    if (!image) {
        return;
    }
    image->locked = false;
    image->reset(width, height);
    if (!image->pixels || image->width != width || image->height != height) {
        display_message("Error", "create_back_buffer() - unable to allocate image buffer", 1);
        exit_app("Application was unable to continue");
    }
    for (std::int32_t y = 0; y < height; ++y) {
        std::fill_n(image->row(y), image->stride, BLACK);
    }
    image->set_active_area(0, 0, width - 1, height - 1);
    image->mark_dirty_area(0, 0, width - 1, height - 1);
    image->locked = true;
    if (WINDOW_EVENTS* events = get_window_events()) {
        events->set_data_for_back_buffer(image, image->pixels.get());
    }
}

IMAGE* find_back_buffer(void* handle) {
    WINDOW_EVENTS* events = get_window_events();
    return events && handle ? events->get_window_backbuffer(handle) : nullptr;
}

void present_image(const WINDOW_SYSTEM& system, NATIVE_WINDOW& window, const IMAGE& image) {
    SDL_Surface* const surface = window.sdl ? SDL_GetWindowSurface(window.sdl.get()) : nullptr;
    const SURFACE picture = surface && image.pixels ? view_image(image) : nullptr;
    if (!picture) {
        return;
    }
    SDL_Rect area = {image.dirty_left, image.dirty_top, image.dirty_right - image.dirty_left + 1,
                     image.dirty_bottom - image.dirty_top + 1};
    copy_area(picture.get(), surface, find_factor(system, window.sdl.get(), surface), area);
    // Cut to the surface by the copy; empty if the window has become smaller than the area's place.
    if (area.w > 0 && area.h > 0) {
        SDL_UpdateWindowSurfaceRects(window.sdl.get(), &area, 1);
    }
}

void swap_screens(void* handle, int index) {
    WINDOW_EVENTS* events = get_window_events();
    WINDOW_SYSTEM* system = WINDOW_SYSTEM::find();
    if (WINDOW_EVENTS::use_external_rendering || !events || !system) {
        return;
    }
    IMAGE* image = nullptr;
    if (handle) {
        image = events->get_window_backbuffer(handle);
    } else if (index != -1) {
        image = events->get_backbuffer_from_index(static_cast<char>(index));
    }
    if (!image || !image->is_dirty()) {
        return;
    }
    if (NATIVE_WINDOW* window =
            handle ? system->find_window(handle) : system->find_window_by_index(index)) {
        present_image(*system, *window, *image);
    }
    events_something_done = true;
    image->set_not_dirty();
}

unsigned char save_window_picture(void* handle, const DISK_MANAGER& folder, const char* name) {
    const IMAGE* image = find_back_buffer(handle);
    if (!image || !name) {
        return 0;
    }
    DATA_FILE* file = folder.open_data_file(name, FILE_WRITE, BYTEORDER_LITTLE);
    if (!file) {
        return 0;
    }
    const bool written = image->save_png(file) != 0;
    return DISK_MANAGER::close(file) && written;
}
