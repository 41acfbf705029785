// IMAGE_BOX: the scalable picture of one state of a control.
//
// A box has up to nine pieces, of which the edges and the centre are tiled to fill any rectangle:
//
//     nine pieces           three across           three down      one
//     top_left  top  top_right                      top
//     left    centre  right     left centre right    centre          centre
//     bottom_left bottom bottom_right               bottom
//
// and up to three overlays, which are drawn over it within its outline. All images lie in an
// IMAGE_CACHE, which counts the references; a copy of a box costs only those counts. One thread at
// a time, as everything of the toolkit.
#ifndef MODULES_WINMAN_IMAGE_BOX_H
#define MODULES_WINMAN_IMAGE_BOX_H

#include <cstdint>
#include <memory>

#include "platform/colour.h"
#include "platform/image.h"

class DISK_MANAGER;
class IMAGE_CACHE;

class IMAGE_BOX {
public:
    // An empty box. `image_cache`, which must outlive the box, is where its images will come from;
    // a box without one takes over the cache of the first box that is assigned to it.
    explicit IMAGE_BOX(IMAGE_CACHE* image_cache = nullptr) : cache(image_cache) {}
    // Copies share the images.
    IMAGE_BOX(const IMAGE_BOX& other) { *this = other; }
    IMAGE_BOX& operator=(const IMAGE_BOX& other);
    ~IMAGE_BOX() { clear_images(); }

    // Opens the pieces whose files stand in a folder, given as a stored path or a cursor, by the
    // name `base` and suffixes: first the overlays "%s_colay", "%s_solay" and "%s_polay", then
    // nine pieces if there is "%s_top_left", three across if there is "%s_left", three down if
    // there is "%s_top", and otherwise the one image `base`. `cache_flags` is passed on to
    // IMAGE_CACHE::open_image. True if all pieces of that form were found; false also without a
    // cache. What the box held before is closed.
    bool load_images(const char* path, const char* base, unsigned char cache_flags);
    bool load_images(const DISK_MANAGER& disk, const char* base, unsigned char cache_flags);

    // Gives all images back to the cache.
    void clear_images();

    // The box can be drawn.
    bool are_images_valid() const { return centre != nullptr; }

    // Fills the rectangle of `target`, both corners included. Corners and sides of nine pieces that
    // don't fit are shrunk in proportion, the ends of three pieces overlap. Overlays are drawn for
    // IMAGE_COPY_BLEND and IMAGE_COPY_SOLID. The flag has no effect.
    void draw(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2, IMAGE* target,
              unsigned char resize, IMAGE_COPY_TYPE copy_type);

    // Whether the pixel under the point (from the box's own corner) is not transparent, if the box
    // has that size.
    bool is_in_it(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height) const;

    // The size of a piece as it was loaded; 0 for null.
    std::int32_t natural_width(const IMAGE* piece) const;
    std::int32_t natural_height(const IMAGE* piece) const;

    // The cache's operation of that name on each image of the box. The box gets images of its own
    // where they are shared, unless the cache recolours in place.
    void make_grey();
    void recolour(COLOUR colour);
    void recolour_channel(COLOUR colour, char channel);
    void set_trialpha_colours(COLOUR red, COLOUR green, COLOUR blue);
    void replace_colour(COLOUR from, COLOUR to);

    IMAGE_CACHE* cache = nullptr;
    // Counted by the cache; null where the box has no such piece.
    IMAGE* left = nullptr;
    IMAGE* centre = nullptr;
    IMAGE* right = nullptr;
    IMAGE* top = nullptr;
    IMAGE* bottom = nullptr;
    IMAGE* top_left = nullptr;
    IMAGE* top_right = nullptr;
    IMAGE* bottom_left = nullptr;
    IMAGE* bottom_right = nullptr;
    IMAGE* centre_overlay = nullptr;
    IMAGE* stretch_overlay = nullptr;
    IMAGE* position_overlay = nullptr;
    // The picture at its last size, while store_local_result is set.
    std::unique_ptr<IMAGE> local_result;

    // Boxes keep their last picture and draw it in one copy while the size stays.
    static bool store_local_result;

private:
    struct AREA;
    struct DIVISION;

    static DIVISION divide(std::int32_t size, std::int32_t first, std::int32_t last);
    void resize_piece(IMAGE*& piece, std::int32_t width, std::int32_t height);
    void draw_picture(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type);
    void draw_nine(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type);
    void draw_across(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type) const;
    void draw_down(const AREA& area, IMAGE& target, IMAGE_COPY_TYPE copy_type) const;
    void draw_overlays(const AREA& area, IMAGE& target);
    template <class OPERATION>
    void change_images(OPERATION operation);
};

#endif  // MODULES_WINMAN_IMAGE_BOX_H
