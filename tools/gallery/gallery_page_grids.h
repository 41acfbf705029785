// GALLERY_PAGE_GRIDS: grids, of which one has ten thousand rows, and scroll bars.
#ifndef GALLERY_PAGE_GRIDS_H
#define GALLERY_PAGE_GRIDS_H

#include <memory>
#include <vector>

#include "gallery_page.h"

class PARAMETER;
class WM_GRID;
class WM_SCROLLBAR;

class GALLERY_PAGE_GRIDS : public GALLERY_PAGE {
public:
    explicit GALLERY_PAGE_GRIDS(GALLERY& owner);
    ~GALLERY_PAGE_GRIDS() override;

    void take_pictures(GALLERY_CAMERA& camera) override;

protected:
    void build() override;
    void forget() override;
    WM_MESG act(WM_SCREEN_OBJECT& object, std::int32_t command) override;

private:
    enum COMMAND : std::int32_t { CELL = 1, MOVED };
    static constexpr std::int16_t LONG_ROWS = 10000;

    void build_table(std::int32_t width);
    void build_long_grid(std::int32_t x, std::int32_t width);
    void build_layouts(std::int32_t x, std::int32_t width);
    void build_bars();
    WM_SCROLLBAR* add_bar(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                          std::uint32_t flags, bool enabled);

    WM_GRID* table = nullptr;
    WM_GRID* long_grid = nullptr;
    WM_SCROLLBAR* first_bar = nullptr;
    // Of the bars, which only refer to them.
    std::vector<std::unique_ptr<PARAMETER>> values;
};

#endif  // GALLERY_PAGE_GRIDS_H
