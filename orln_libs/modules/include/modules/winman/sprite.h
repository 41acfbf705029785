// SPRITE: one frame of a strip, drawn on an image and taken away again.
#ifndef MODULES_WINMAN_SPRITE_H
#define MODULES_WINMAN_SPRITE_H

#include <cstdint>

#include "platform/image.h"

class SPRITE {
public:
    // Neither image is owned; both must outlive the sprite, or be replaced. Fewer than one frame
    // ends the process.
    SPRITE(IMAGE* target, IMAGE* sheet, std::int16_t frames);

    // Another strip; the frame becomes the first.
    void set_sprites(IMAGE* new_sheet, std::int16_t new_frames);
    // Where the next draw goes. A frame that isn't there: nothing happens. Forgets `background`.
    void move(std::int16_t new_x, std::int16_t new_y, std::int16_t new_frame);
    // With `save_background` what lies under the sprite is kept first, once per position.
    void draw(unsigned char save_background, unsigned char alpha);
    // Only a part of the cell, at its place.
    void draw_sub(std::int16_t sx, std::int16_t sy, std::int16_t w, std::int16_t h,
                  unsigned char save_background, unsigned char alpha);
    // Puts `background` back, and forgets it.
    void hide();
    // The rectangles overlap; touching isn't enough.
    bool check_for_collision(const SPRITE& other) const;
    // Some pixel under the sprite is exactly this colour. Keeps the background first if none is.
    bool check_for_collision(COLOUR colour);

    IMAGE* sheet = nullptr;  // the frames side by side
    IMAGE* target = nullptr;
    IMAGE background;        // what lay under the sprite; empty: nothing kept
    std::int16_t frame = 1;  // from 1 to `frames`
    std::int16_t frames = 1;
    std::int16_t height = 0, frame_width = 0;
    std::int16_t x = 0, y = 0;

private:
    void keep_background();
    std::int32_t get_cell_x() const { return (frame - 1) * frame_width; }

    bool background_kept = false;
};

#endif  // MODULES_WINMAN_SPRITE_H
