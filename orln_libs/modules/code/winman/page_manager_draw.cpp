// The background, drawing what is marked, and fades.
#include <algorithm>

#include "modules/3d/render_manager_base.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "platform/process_tools.h"

// --- The background ---

void WM_PAGE_MANAGER::set_background(const IMAGE& image, std::int16_t x, std::int16_t y) {
    std::int16_t width = 0, height = 0;
    get_window_size(width, height);
    mark_whole_window();
    if (background.width != width || background.height != height) {
        background.reset(width, height);
        background.clear(COLOUR_BLACK);
    }
    image.put(x, y, &background);
}

void WM_PAGE_MANAGER::set_background_colour(COLOUR colour) {
    std::int16_t width = 0, height = 0;
    get_window_size(width, height);
    mark_whole_window();
    background.reset(width, height);
    background.clear(colour);
}

IMAGE& WM_PAGE_MANAGER::get_background(unsigned char as_it_is) {
    if (as_it_is) {
        return background;
    }
    std::int16_t width = 0, height = 0;
    get_window_size(width, height);
    if (background.width != width || background.height != height) {
        if (background.width > 0) {
            background.resize(width, height, 1);
        } else {
            background.reset(width, height);
            background.clear(COLOUR_BLACK);
        }
    }
    mark_whole_window();
    return background;
}

// --- Drawing what is marked ---

// Joins the regions that one modal object touches, so that it is drawn once, over one region.
void WM_PAGE_MANAGER::join_modal_regions(WM_WINDOW_INFO& info, bool* touched_by_modal) {
    OBJECT_WALK walk(info.modal_screen_objects, OBJECT_WALK::BACKWARD);
    while (WM_SCREEN_OBJECT* modal = walk.next()) {
        if (!modal->visible) {
            continue;
        }
        std::int32_t first = -1;
        for (std::int32_t i = 0; i < info.pending_count; ++i) {
            WM_REGION& region = info.pending_regions[i];
            info.update_region = region;
            if (!region.is_set() || !modal->is_in_redraw_area()) {
                continue;
            }
            if (first == -1) {
                first = i;
                touched_by_modal[i] = true;
            } else {
                info.pending_regions[first].unite(region);
                region.left = -1;
            }
        }
    }
    info.update_region = WM_REGION();
}

void WM_PAGE_MANAGER::draw_region(WM_WINDOW_INFO& info, const WM_REGION& region, bool with_modals) {
    IMAGE& buffer = *info.back_buffer;
    const std::int16_t x1 = region.left, y1 = region.top, x2 = region.right, y2 = region.bottom;
    info.update_region = region;
    buffer.set_active_area(x1, y1, x2, y2);
    bool under_modal = false, under_child = false;
    for (const auto& area : areas) {
        under_modal = under_modal || area->is_obscured(x1, y1, x2, y2, 1);
        under_child = under_child || area->is_obscured(x1, y1, x2, y2, 0);
        if (under_modal && under_child) {
            break;
        }
    }
    if (!under_modal) {
        if (!under_child) {
            // A background that nobody has set is black.
            IMAGE& behind = get_background(background.width > 0);
            behind.put(0, 0, &buffer, IMAGE_COPY_SOLID);
        }
        for (const auto& area : areas) {
            area->check_for_redraw();
        }
    }
    if (with_modals) {
        areas[0]->check_modal_redraw();
    }
    buffer.set_active_area(0, 0, buffer.width - 1, buffer.height - 1);
    info.update_region = WM_REGION();
}

void WM_PAGE_MANAGER::check_for_draw() {
    WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || info->pending_count == 0 || info->back_buffer == nullptr ||
        info->back_buffer->width < 1 || info->back_buffer->height < 1) {
        return;
    }
    bool touched_by_modal[WM_WINDOW_INFO::MAX_PENDING_REGIONS] = {};
    join_modal_regions(*info, touched_by_modal);
    for (std::int32_t i = 0; i < info->pending_count; ++i) {
        if (info->pending_regions[i].is_set()) {
            draw_region(*info, info->pending_regions[i], touched_by_modal[i]);
        }
    }
    info->clear_pending_update_regions();
}

// --- Fades ---

// Makes `picture` an opaque copy of the back buffer, and yields the buffer; null if it is empty.
IMAGE* WM_PAGE_MANAGER::copy_back_buffer(IMAGE& picture) const {
    const WM_WINDOW_INFO* info = get_window_info();
    IMAGE* buffer = info != nullptr ? info->back_buffer.get() : nullptr;
    if (buffer == nullptr || buffer->width < 1 || buffer->height < 1) {
        return nullptr;
    }
    picture.copy_pixels_from(*buffer);
    picture.realpha(255, 1, 0);
    return buffer;
}

// Calls draw_frame(progress) and shows the result, with a progress from 0 to 255 over fade_time.
template <class DRAW_FRAME>
void WM_PAGE_MANAGER::run_fade(DRAW_FRAME draw_frame) {
    ORLN_3D::RENDER_MANAGER_BASE* renderer = ORLN_3D::RENDER_MANAGER_BASE::get_instance();
    if (renderer != nullptr) {
        renderer->set_main_thread_rendering(1);
    }
    const std::uint32_t start = get_ms_count();
    std::int64_t progress = 0;
    while (progress < 255) {
        const std::int64_t elapsed = get_ms_count() - start;
        progress =
            fade_time > 0 ? std::clamp<std::int64_t>(elapsed * 255 / fade_time, 0, 255) : 255;
        draw_frame(static_cast<unsigned char>(progress));
        if (WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance()) {
            manager->blit_window(window, 1);
        }
    }
    if (renderer != nullptr) {
        renderer->set_main_thread_rendering(0);
    }
}

void WM_PAGE_MANAGER::mix_to_page(std::int32_t area) {
    IMAGE old_picture, new_picture;
    const bool has_old = copy_back_buffer(old_picture) != nullptr;
    change_all_pages(area);
    check_for_draw();
    IMAGE* buffer = copy_back_buffer(new_picture);
    if (!has_old || buffer == nullptr) {
        return;
    }
    run_fade([&](unsigned char progress) {
        old_picture.put(0, 0, buffer, IMAGE_COPY_SOLID);
        new_picture.put(0, 0, buffer, IMAGE_COPY_BLEND, progress);
    });
}

void WM_PAGE_MANAGER::fade_in_page(std::int32_t area) {
    IMAGE picture;
    change_all_pages(area);
    check_for_draw();
    IMAGE* buffer = copy_back_buffer(picture);
    if (buffer == nullptr) {
        return;
    }
    run_fade([&](unsigned char progress) {
        buffer->clear(COLOUR_BLACK);
        picture.put(0, 0, buffer, IMAGE_COPY_BLEND, progress);
    });
}

void WM_PAGE_MANAGER::fade_out_page() {
    IMAGE picture;
    IMAGE* buffer = copy_back_buffer(picture);
    if (buffer == nullptr) {
        return;
    }
    run_fade([&](unsigned char progress) {
        buffer->clear(COLOUR_BLACK);
        picture.put(0, 0, buffer, IMAGE_COPY_BLEND, static_cast<unsigned char>(255 - progress));
    });
}

void WM_PAGE_MANAGER::fade_out_in_page(std::int32_t area) {
    IMAGE picture;
    IMAGE* buffer = copy_back_buffer(picture);
    const std::int32_t whole_time = fade_time;
    fade_time /= 2;
    fade_out_page();
    if (buffer != nullptr) {
        picture.put(0, 0, buffer, IMAGE_COPY_SOLID);
    }
    fade_in_page(area);
    fade_time = whole_time;
}
