// WM_PTM_APP_INFO: the five tables of a skin, and their entries.
//
// An entry is known by its name; a name of null sorts before any other. Each table is sorted by
// name with `strcmp` and owns its entries. The stored form of the tables is five groups in the
// order of the fields, each a 4-byte count and that many records.
#ifndef MODULES_WINMAN_APP_INFO_H
#define MODULES_WINMAN_APP_INFO_H

#include <cstdint>

#include "modules/winman/owned_text.h"
#include "modules/winman/style_set.h"
#include "platform/colour.h"
#include "platform/data_device_client.h"
#include "platform/ptrarray.h"

class IMAGE;

// A font file of the skin. Record: name, filename (dynamic text), path (2048 bytes), font_index
// (1 byte). Reading a record loads the font, at the index that it had when it was stored.
class WM_PTM_FONT_INFO : public DATA_DEVICE_CLIENT {
public:
    WM_PTM_FONT_INFO() { clear(); }
    WM_PTM_FONT_INFO(const WM_PTM_FONT_INFO&) = delete;
    WM_PTM_FONT_INFO& operator=(const WM_PTM_FONT_INFO&) = delete;

    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;
    void clear();
    void set_name(const char* text) { name.set(text); }
    void set_filename(const char* text) { filename.set(text); }

    // Goes to `path` and loads the font file, at font_index if that isn't -1; stores the index
    // that it got. False, with index -1, if the file isn't there or isn't a font.
    bool load_font();

    OWNED_TEXT name;
    char path[WM_STYLE_SET::PATH_SIZE];  // "$APPDATA/fonts" unless given
    signed char font_index;              // in FONT_MANAGER; -1: not loaded
    OWNED_TEXT filename;
};

// A named colour. Record: name (dynamic text), colour (4 bytes).
class WM_PTM_COLOUR_INFO : public DATA_DEVICE_CLIENT {
public:
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;
    void clear();
    void set_name(const char* text) { name.set(text); }

    OWNED_TEXT name;
    COLOUR colour = COLOUR_BLACK;
};

// A named image. Record: name, filename (dynamic text), path (2048 bytes). The image itself lies in
// the non-styleset cache, from which reading a record opens it.
class WM_PTM_IMAGE_INFO : public DATA_DEVICE_CLIENT {
public:
    WM_PTM_IMAGE_INFO() { clear(); }
    ~WM_PTM_IMAGE_INFO() override { close_image(); }
    WM_PTM_IMAGE_INFO(const WM_PTM_IMAGE_INFO&) = delete;
    WM_PTM_IMAGE_INFO& operator=(const WM_PTM_IMAGE_INFO&) = delete;

    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;
    void clear();
    void set_name(const char* text) { name.set(text); }
    void set_filename(const char* text) { filename.set(text); }

    // Opens the image through the cache. False, with `image` null, if there is none.
    bool load_image();
    // Gives the image back to the cache.
    void close_image();

    OWNED_TEXT name;
    char path[WM_STYLE_SET::PATH_SIZE];  // "$APPDATA/images" unless given
    IMAGE* image = nullptr;              // counted by the cache
    OWNED_TEXT filename;
};

// A named number. Record: name (dynamic text), value (2 bytes).
class WM_PTM_CONSTANT_INFO : public DATA_DEVICE_CLIENT {
public:
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;
    void clear();
    void set_name(const char* text) { name.set(text); }

    OWNED_TEXT name;
    std::int16_t value = 0;
};

class WM_PTM_APP_INFO : public DATA_DEVICE_CLIENT {
public:
    WM_PTM_APP_INFO();
    WM_PTM_APP_INFO(const WM_PTM_APP_INFO&) = delete;
    WM_PTM_APP_INFO& operator=(const WM_PTM_APP_INFO&) = delete;

    // Reading adds to the tables; a record replaces the entry of its name. Each table takes its
    // records as a whole: a group that fails leaves its table as it was, and ends the reading.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;

    // Empties all five tables.
    void clear();

    // The entry of that name, or null. `index`, if not null, receives its place in the table, or
    // -1.
    WM_STYLE_SET* find_style_set(const char* name, std::int32_t* index = nullptr) const;
    WM_PTM_FONT_INFO* find_font(const char* name, std::int32_t* index = nullptr) const;
    WM_PTM_COLOUR_INFO* find_colour(const char* name, std::int32_t* index = nullptr) const;
    WM_PTM_IMAGE_INFO* find_image(const char* name, std::int32_t* index = nullptr) const;
    WM_PTM_CONSTANT_INFO* find_constant(const char* name, std::int16_t* index = nullptr) const;

    void sort_style_sets() { style_sets.sort(); }
    void sort_fonts() { fonts.sort(); }
    void sort_colours() { colours.sort(); }
    void sort_images() { images.sort(); }
    void sort_constants() { constants.sort(); }

    PTRARRAY style_sets;  // WM_STYLE_SET*
    PTRARRAY fonts;       // WM_PTM_FONT_INFO*
    PTRARRAY colours;     // WM_PTM_COLOUR_INFO*
    PTRARRAY images;      // WM_PTM_IMAGE_INFO*
    PTRARRAY constants;   // WM_PTM_CONSTANT_INFO*
};

#endif  // MODULES_WINMAN_APP_INFO_H
