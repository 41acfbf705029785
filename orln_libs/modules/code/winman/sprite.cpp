#include "modules/winman/sprite.h"

#include <algorithm>

#include "control_failure.h"

SPRITE::SPRITE(IMAGE* target_image, IMAGE* sheet_image, std::int16_t frame_count)
    : target(target_image) {
    if (frame_count < 1) {
        stop_on_control_failure("SPRITE::SPRITE() - invalid number of frames");
    }
    set_sprites(sheet_image, frame_count);
}

void SPRITE::set_sprites(IMAGE* new_sheet, std::int16_t new_frames) {
    sheet = new_sheet;
    frames = std::max(new_frames, std::int16_t{1});
    frame = 1;
    frame_width = static_cast<std::int16_t>(sheet != nullptr ? sheet->width / frames : 0);
    height = sheet != nullptr ? sheet->height : std::int16_t{0};
    background_kept = false;
}

void SPRITE::move(std::int16_t new_x, std::int16_t new_y, std::int16_t new_frame) {
    if (new_frame < 1 || new_frame > frames) {
        return;
    }
    x = new_x;
    y = new_y;
    frame = new_frame;
    background_kept = false;
}

void SPRITE::keep_background() {
    if (background_kept || target == nullptr || frame_width < 1 || height < 1) {
        return;
    }
    background.reset(frame_width, height);
    if (x < 0 || y < 0 || x + frame_width > target->width || y + height > target->height) {
        background.clear(COLOUR_INVISIBLE);  // beyond the target
    }
    background.get(x, y, target);
    background_kept = true;
}

void SPRITE::draw(unsigned char save_background, unsigned char alpha) {
    draw_sub(0, 0, frame_width, height, save_background, alpha);
}

void SPRITE::draw_sub(std::int16_t sx, std::int16_t sy, std::int16_t w, std::int16_t h,
                      unsigned char save_background, unsigned char alpha) {
    if (sheet == nullptr || target == nullptr) {
        return;
    }
    if (save_background) {
        keep_background();
    }
    // Not the neighbour's pixels.
    const std::int32_t left = std::max<std::int32_t>(sx, 0), top = std::max<std::int32_t>(sy, 0);
    const std::int32_t right = std::min<std::int32_t>(sx + w, frame_width);
    const std::int32_t bottom = std::min<std::int32_t>(sy + h, height);
    if (right > left && bottom > top) {
        sheet->put(get_cell_x() + left, top, right - left, bottom - top, x + left, y + top, target,
                   IMAGE_COPY_BLEND, alpha);
    }
}

void SPRITE::hide() {
    if (background_kept && target != nullptr) {
        background.put(x, y, target, IMAGE_COPY_SOLID);
    }
    background_kept = false;
}

bool SPRITE::check_for_collision(const SPRITE& other) const {
    return x < other.x + other.frame_width && other.x < x + frame_width &&
           y < other.y + other.height && other.y < y + height;
}

bool SPRITE::check_for_collision(COLOUR colour) {
    keep_background();
    for (std::int32_t row = 0; background_kept && row < background.height; ++row) {
        const COLOUR* pixels = background.row(row);
        if (std::find(pixels, pixels + background.width, colour) != pixels + background.width) {
            return true;
        }
    }
    return false;
}
