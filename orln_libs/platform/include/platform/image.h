// IMAGE: the software bitmap of the whole GUI.
//
// The GUI draws into 32-bit memory and never touches the screen; what changes is remembered as one
// dirty rectangle per image. An image belongs to one thread at a time; text needs FONT_MANAGER,
// which belongs to the main thread.
//
// Coordinates are pixels, corners are inclusive and may come in any order. Arguments are 32 bits
// wide so that callers can calculate with their 16-bit fields; whatever they are, nothing outside
// the active area is touched.
//
// The drawing operations, copies included, do nothing on an image that isn't `usable` or whose
// active area is empty. On a usable image without pixels, which only a programming error makes,
// they end the process with "IMAGE::fill_rect() - setup not called" and the like. Each widens the
// dirty rectangle by what it may have touched.
#ifndef PLATFORM_IMAGE_H
#define PLATFORM_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/colour.h"
#include "platform/data_device_client.h"

class DATA_FILE;
class DISK_MANAGER;

// How a copy treats each pixel.
enum IMAGE_COPY_TYPE : std::int32_t {
    IMAGE_COPY_BLEND = 0,           // COLOUR::mix with the source's alpha
    IMAGE_COPY_SOLID = 1,           // the 32 bits are copied
    IMAGE_COPY_MASK = 2,            // alpha 255 where the source's isn't 0, else 0; R, G, B stay
    IMAGE_COPY_MULTIPLY_ALPHA = 3,  // alpha * source alpha / 255; R, G, B stay
};

// Clockwise.
enum IMAGE_ROTATE_VALUE : std::int32_t {
    IMAGE_ROTATE_90 = 0,
    IMAGE_ROTATE_180 = 1,
    IMAGE_ROTATE_270 = 2,
};

// A wipe from one picture to another: the direction in which the edge between them goes. With MOVE
// the second picture pushes the first one out, with REVEAL both stay where they are.
enum IMAGE_BLEND_TYPE : std::int32_t {
    IMAGE_BLEND_MOVE_LEFT = 0,
    IMAGE_BLEND_MOVE_RIGHT = 1,
    IMAGE_BLEND_MOVE_UP = 2,
    IMAGE_BLEND_MOVE_DOWN = 3,
    IMAGE_BLEND_REVEAL_LEFT = 4,
    IMAGE_BLEND_REVEAL_RIGHT = 5,
    IMAGE_BLEND_REVEAL_UP = 6,
    IMAGE_BLEND_REVEAL_DOWN = 7,
};

// The wipe of a strip of sprites: the same eight.
enum IMAGE_TRANSITION_TYPE : std::int32_t {
    IMAGE_TRANSITION_MOVE_LEFT = 0,
    IMAGE_TRANSITION_MOVE_RIGHT = 1,
    IMAGE_TRANSITION_MOVE_UP = 2,
    IMAGE_TRANSITION_MOVE_DOWN = 3,
    IMAGE_TRANSITION_REVEAL_LEFT = 4,
    IMAGE_TRANSITION_REVEAL_RIGHT = 5,
    IMAGE_TRANSITION_REVEAL_UP = 6,
    IMAGE_TRANSITION_REVEAL_DOWN = 7,
};

// Flags of text. A position flag absent on an axis means centred.
enum IMAGE_TEXT_FLAG : std::int32_t {
    IMAGE_TEXT_SHADOW = 1,
    IMAGE_TEXT_INSET = 2,
    IMAGE_TEXT_CHISELLED = 4,
    IMAGE_TEXT_TOP = 8,
    IMAGE_TEXT_BOTTOM = 16,
    IMAGE_TEXT_LEFT = 32,
    IMAGE_TEXT_RIGHT = 64,
    IMAGE_TEXT_OUTLINE = 128,
};

class IMAGE : public DATA_DEVICE_CLIENT {
public:
    // The largest sides; a stride beyond them wouldn't fit its field.
    static constexpr std::int32_t MAX_WIDTH = 32766;
    static constexpr std::int32_t MAX_HEIGHT = 32767;
    // A size that isn't given; -1 means the same.
    static constexpr std::int32_t NO_SIZE = 65535;

    // --- Life ---

    // An empty image.
    IMAGE() = default;
    // An image of that size, transparent black; see reset.
    IMAGE(std::int32_t width, std::int32_t height);
    IMAGE(const IMAGE&) = delete;  // see copy_pixels_from
    IMAGE& operator=(const IMAGE&) = delete;

    // The stored form: a byte 1, width and height as 16-bit numbers, then the pixels row by row as
    // 32-bit numbers, without the padding of the stride. Numbers follow the device's byte order.
    // 1 for success.
    //
    // Reading ignores the first byte. It fails, with the image as it was, if the image is locked, a
    // side is larger than the limits above, or the device can't hold the pixels any more: nothing
    // is allocated that the bytes left don't justify.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;
    ~IMAGE() override;

    // Gives the image a new size with transparent black pixels. With the size it has, the pixels
    // stay. A side below 1 or beyond the limits above leaves an empty image. The active area and
    // the dirty rectangle become the whole image, max_width and max_height are cleared. Nothing if
    // the image is locked. Running out of memory is fatal.
    virtual void reset(std::int32_t width, std::int32_t height);

    // The constructors' work: reset, whatever a derived class makes of that.
    void setup(std::int32_t width, std::int32_t height);

    // Makes this image a copy of the other's size and pixels; nothing else is taken over.
    void copy_pixels_from(const IMAGE& source);
    // The same size and the same pixels.
    bool operator==(const IMAGE& other) const;

    // Reads the picture file `name`, tried with load_png() as it is and with ".png" behind it, then
    // with load_jpg() as it is and with ".jpg", and gives it the size; NO_SIZE keeps the file's. 1
    // for success. A file that exists but can't be read is told to platform_debug_stream by name,
    // and leaves the image empty.
    unsigned char load(const DISK_MANAGER& disk, const char* name, std::int32_t width = NO_SIZE,
                       std::int32_t height = NO_SIZE);

    // One file format each, from the file's position; see image_load.h for the limits. `name` is
    // for the trace. A refused picture leaves the image empty.
    unsigned char load_png(const DATA_FILE* file, const char* name = nullptr);
    unsigned char load_jpg(const DATA_FILE* file, std::int32_t width = NO_SIZE,
                           std::int32_t height = NO_SIZE, const char* name = nullptr);

    // Writes the picture to a file that is open for writing. 1 for success, which an empty image
    // never has; closing the file may still fail. PNG keeps all four channels; JPEG drops the
    // alpha. Quality 0 to 100.
    unsigned char save_png(DATA_FILE* file) const;
    unsigned char save_jpg(DATA_FILE* file, char quality, unsigned char progressive) const;

    // --- Active area and dirty rectangle ---

    // What may be drawn on. The corners are clamped to the image.
    void set_active_area(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    // Narrows the active area to what it has in common with the rectangle, perhaps nothing. That of
    // an object without a width, whose second corner lies before the first, is empty.
    void add_rect_to_active_area(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                 std::int32_t y2);
    // Widens the dirty rectangle by the part of this one that lies in the active area.
    void mark_dirty_area(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    bool is_dirty() const {
        return dirty_left != -1 && dirty_right != -1 && dirty_top != -1 && dirty_bottom != -1;
    }
    void set_not_dirty() { dirty_left = dirty_right = dirty_top = dirty_bottom = -1; }

    // --- Copies ---

    // Copies the `width` by `height` pixels at (sx, sy) of `source` to (dx, dy) of this image, cut
    // to the source and to this image's active area. With IMAGE_COPY_BLEND an alpha other than 255
    // scales the source's. The source may be this image itself, overlapping.
    void copy(const IMAGE* source, std::int32_t sx, std::int32_t sy, std::int32_t dx,
              std::int32_t dy, std::int32_t width, std::int32_t height,
              IMAGE_COPY_TYPE type = IMAGE_COPY_BLEND, unsigned char alpha = 255);
    // Copies this image, or a part of it, into `target`.
    void put(std::int32_t x, std::int32_t y, IMAGE* target, IMAGE_COPY_TYPE type = IMAGE_COPY_BLEND,
             unsigned char alpha = 255) const;
    void put(std::int32_t sx, std::int32_t sy, std::int32_t width, std::int32_t height,
             std::int32_t dx, std::int32_t dy, IMAGE* target,
             IMAGE_COPY_TYPE type = IMAGE_COPY_BLEND, unsigned char alpha = 255) const;
    // Fills this image from `source`, of which (x, y) becomes its top left corner.
    void get(std::int32_t x, std::int32_t y, const IMAGE* source,
             IMAGE_COPY_TYPE type = IMAGE_COPY_SOLID);

    // --- Filters, on the whole picture whatever the active area ---

    void make_grey();  // each pixel gets the mean of R, G, B
    void recolour(COLOUR colour);
    // The same, only for pixels that one channel stands out in: 0 red, 1 green, 2 blue; 3 means
    // every pixel.
    void recolour_channel(COLOUR colour, char channel);
    // Recolours a picture made of three masks: its red, green and blue are taken as weights of the
    // three colours, and the alpha stays.
    void set_trialpha_colours(COLOUR red, COLOUR green, COLOUR blue);
    // With `absolute` the alpha becomes `alpha`, with `keep_transparent` only where it isn't 0.
    // Otherwise it becomes old * alpha / 255.
    void realpha(unsigned char alpha, unsigned char absolute, unsigned char keep_transparent);
    // An alpha below `floor` becomes 0, the others (alpha - floor) * 255 / (255 - floor).
    void flatern_alpha(unsigned char floor);
    // Replaces exact matches. With `keep_alpha` only R, G and B are compared and replaced.
    void replace_colour(COLOUR from, COLOUR to, unsigned char keep_alpha = 0);

    // --- Sizes ---

    // Scales the picture. NO_SIZE on a side means the size it has. `keep_aspect` takes the tighter
    // of the two scales, `max_width` and `max_height` limit the result; both fields survive.
    // `smooth` averages (or interpolates, where the picture is too large for averaging or
    // `fast_scale` is off), otherwise the nearest pixel is taken. A negative result does nothing,
    // and neither does a locked image; without a change the image only becomes dirty.
    void resize(std::int32_t width, std::int32_t height, unsigned char smooth);
    // The picture of `source` at that size: copy_pixels_from and resize in one step, without the
    // copy between. The aspect rule and the limits are this image's own, as is `fast_scale`.
    void resize_from(const IMAGE& source, std::int32_t width, std::int32_t height,
                     unsigned char smooth);
    // Each pixel becomes the mean of 2 by 2 or 4 by 4; what is left over at the right and the
    // bottom is dropped. Nothing if a side is 1 already, or too short to leave a pixel.
    void scale_down_by_2();
    void scale_down_by_4();

    // Writes the turned picture into `target`, which gets the size that it takes. Degrees are
    // clockwise; the corners that open up are invisible.
    void rotate(IMAGE& target, IMAGE_ROTATE_VALUE turn) const;
    void rotate(IMAGE& target, float degrees) const;

    // --- Primitives. `blend` mixes with the colour's alpha; otherwise the 32 bits are stored ---

    void clear(COLOUR colour, unsigned char blend = 0);
    void fill_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                   COLOUR colour, unsigned char blend = 0);
    // All four channels run from `first` at the left or top to `last` at the right or bottom, over
    // the whole rectangle, whatever part of it is drawn.
    void fill_hfaded_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                          COLOUR first, COLOUR last);
    void fill_vfaded_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                          COLOUR first, COLOUR last);
    // Takes `percent` of the brightness away: 0 changes nothing, 100 leaves black.
    void darken_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                     std::int32_t percent);
    // A frame whose `thickness` lies inside the rectangle.
    void draw_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                   COLOUR colour, std::int32_t thickness = 1, char blend = 0);
    // A frame of one pixel that inverts by the colour's R, G, B: drawn twice, it is gone.
    void draw_xor_rect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                       COLOUR colour);

    // Lines are always mixed with the colour's alpha. A thick one has thickness / 2 of its pixels
    // above or left of the ideal line.
    void draw_line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                   COLOUR colour, std::int32_t thickness = 1, unsigned char anti_alias = 0);
    void plot_line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                   COLOUR colour, std::int32_t thickness = 1);
    // After X. Wu, "An efficient antialiasing technique", SIGGRAPH 1991.
    void plot_anti_aliased_line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                                COLOUR colour, std::int32_t thickness = 1);
    void draw_horizontal_line(std::int32_t x1, std::int32_t x2, std::int32_t y, COLOUR colour,
                              std::int32_t thickness = 1);
    void draw_vertical_line(std::int32_t x, std::int32_t y1, std::int32_t y2, COLOUR colour,
                            std::int32_t thickness = 1);
    // Filled. A pixel belongs to the figure if its centre does, by the even-odd rule; the corners
    // are centres of pixels.
    void plot_triangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                       std::int32_t x3, std::int32_t y3, COLOUR colour, unsigned char blend = 0);
    void fill_polygon(const std::int16_t* xs, const std::int16_t* ys, std::int32_t count,
                      COLOUR colour, unsigned char blend = 0);
    // The outline, or the disc with `filled`. A radius below 0 draws nothing.
    void plot_circle(std::int32_t x, std::int32_t y, std::int32_t radius, COLOUR colour,
                     unsigned char filled = 0, unsigned char blend = 0);

    // --- Effects ---

    // Draws a wipe from `first` to `second`, which have the same size, at (x, y): 0 percent shows
    // the first, 100 the second.
    void draw_blended_images(const IMAGE& first, const IMAGE& second, std::int32_t x,
                             std::int32_t y, IMAGE_BLEND_TYPE type, char percent);
    // Makes this image a strip of `frames` cells, side by side, each of the size of `first`: cell k
    // is the wipe at k / (frames - 1). 0, with the image as it was, if the two sizes differ or the
    // strip would be too wide.
    unsigned char create_sprite_transition_image(const IMAGE& first, const IMAGE& second,
                                                 IMAGE_TRANSITION_TYPE type, std::int32_t frames);
    // Makes this image a strip of all PNG and JPEG pictures in the folder `name` below the cursor
    // (null: the cursor's own), in the order of their names, each scaled to `width` by `height`;
    // NO_SIZE takes the first picture's. 0, with the image as it was, if there is none, one can't
    // be read or the strip would be too wide.
    unsigned char create_sprite_image_from_path(const DISK_MANAGER& disk, const char* name,
                                                std::int32_t width = NO_SIZE,
                                                std::int32_t height = NO_SIZE);

    // --- Text; see font_manager.h for the encoding of strings ---
    //
    // Sizes are in pixels; the height of a line is `y_size`. An invalid font or a size below 1
    // draws nothing. The alpha of the text colour scales the glyphs' coverage. `background` and
    // `underline` are drawn only if they have alpha. `flags` are of IMAGE_TEXT_FLAG.

    // Formats as ::printf does, into text_buffer_size bytes, and draws at (x, y). The short form
    // uses FONT_MANAGER's current font and sizes.
    void draw_text(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background, COLOUR underline,
                   std::int8_t font, std::int32_t x_size, std::int32_t y_size, const char* format,
                   ...) __attribute__((format(printf, 10, 11)));
    void draw_text(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background, COLOUR underline,
                   const char* format, ...) __attribute__((format(printf, 7, 8)));
    static constexpr std::size_t text_buffer_size = 4096;

    // One character by its code.
    void draw_char(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background, COLOUR underline,
                   std::int8_t font, std::int32_t x_size, std::int32_t y_size, std::uint16_t code);

    // One line in a rectangle, cut with "..." where it doesn't fit; `was_cut`, if not null, is set
    // to 1 then and left alone otherwise. Leading blanks take no room unless they are underlined.
    // Line feeds are ignored.
    void draw_single_line_string(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                                 COLOUR text, COLOUR background, COLOUR underline, std::int8_t font,
                                 std::int32_t x_size, std::int32_t y_size, const char* string,
                                 std::int32_t flags, unsigned char* was_cut = nullptr);
    // Wraps words into as many lines as fit, at most 256: at blanks, behind "-", or within a word
    // with a "-" put in. The last line is cut as a single one.
    void draw_multi_line_string(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                                COLOUR text, COLOUR background, COLOUR underline, std::int8_t font,
                                std::int32_t x_size, std::int32_t y_size, const char* string,
                                std::int32_t flags);

    // `count` characters, -1 for all, with one effect out of `flags`. `in_code` tells that the
    // string begins inside a run of codes.
    void process_and_render_string(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background,
                                   COLOUR underline, std::int8_t font, std::int32_t x_size,
                                   std::int32_t y_size, const char* string, std::int32_t flags,
                                   std::int32_t count = -1, unsigned char in_code = 0);
    // The same without effects. With `lighten` other than 0 the pixels get that much lighter (or
    // darker) instead of being coloured.
    void render_string(std::int32_t x, std::int32_t y, COLOUR text, COLOUR background,
                       COLOUR underline, double lighten, std::int8_t font, std::int32_t x_size,
                       std::int32_t y_size, const char* string, std::int32_t count = -1,
                       unsigned char in_code = 0);

    static std::int16_t shadow_x_offset, shadow_y_offset;
    static unsigned char shadow_alpha;
    static std::int16_t inset_x_offset, inset_y_offset;
    static unsigned char inset_alpha;
    static std::int16_t chiseled_x_offset, chiseled_y_offset;
    static double chiseled_light_blend_value, chiseled_dark_blend_value;

    // --- Pixels ---

    // The first pixel of row `y`, which must be a row of the image.
    COLOUR* row(std::int32_t y) { return pixels.get() + row_offset(y); }
    const COLOUR* row(std::int32_t y) const { return pixels.get() + row_offset(y); }

    std::int16_t height = 0, width = 0;  // 0 for an empty image
    std::int16_t stride = 0;             // pixels per row: the width made even
    std::unique_ptr<COLOUR[]> pixels;    // stride * height values; null for an empty image
    bool locked = false;                 // the size and the pixels are not this object's to change
    // The active area, inclusive; all -1: nothing may be drawn.
    std::int16_t active_left = -1, active_right = -1, active_top = -1, active_bottom = -1;
    bool usable = false;       // set by reset; nothing can be drawn without it
    bool keep_aspect = false;  // resizing keeps the proportions
    // The dirty rectangle, inclusive; all -1: clean.
    std::int16_t dirty_left = -1, dirty_right = -1, dirty_top = -1, dirty_bottom = -1;
    std::int16_t max_width = 0, max_height = 0;  // limits of resizing when positive
    void* cache_entry = nullptr;                 // the IMAGE_CACHE entry that holds this, if any
    bool fast_scale = true;                      // resizing may use the supersampling path

private:
    struct AREA {
        std::int32_t left, top, right, bottom;
        std::int32_t columns() const { return right - left + 1; }
        std::int32_t rows() const { return bottom - top + 1; }
    };
    struct GLYPH_PLACE;

    std::size_t row_offset(std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(stride);
    }
    void set_whole_active_and_dirty();
    bool can_draw(const char* operation) const;
    bool get_active(AREA& area) const;
    bool clip(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, AREA& area) const;
    void widen_dirty(const AREA& area);
    void widen_dirty_to_all();
    void fill_area(const AREA& area, COLOUR colour, bool blend);
    void mix_span(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                  COLOUR colour);
    void fill_figure(const std::int32_t* xs, const std::int32_t* ys, std::int32_t count,
                     COLOUR colour, bool blend);
    bool find_resized(std::int32_t& new_width, std::int32_t& new_height, std::int32_t old_width,
                      std::int32_t old_height) const;
    void scale_from(const COLOUR* source, std::int32_t source_width, std::int32_t source_height,
                    std::int32_t source_stride, std::int32_t new_width, std::int32_t new_height,
                    bool smooth);
    void scale_down(std::int32_t factor);
    void render_glyph_at(const GLYPH_PLACE& place);
};

#endif  // PLATFORM_IMAGE_H
