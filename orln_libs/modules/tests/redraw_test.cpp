// Redraw as a whole: whatever changed, the back buffer is what drawing everything would give.
#include <algorithm>
#include <random>

#include "winman_fixture.h"

namespace {

// An object of stripes, through which one sees what lies behind, or an opaque one.
class STRIPES : public TEST_OBJECT {
public:
    STRIPES(int x1, int y1, int w, int h, COLOUR fill, bool is_opaque)
        : TEST_OBJECT(x1, y1, w, h, fill) {
        opaque = is_opaque;
        allowed_focus = true;
    }
    void draw_object() override {
        const COLOUR look = has_focus() ? COLOUR_WHITE : colour;
        for (int line = y; line < y + height; ++line) {
            if (opaque || line % 3 == 0) {
                get_back_buffer(-1)->draw_line(x, line, x + width - 1, line, look);
            }
        }
    }
};

class RedrawTest : public WINMAN_FIXTURE {
protected:
    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        pages().set_background_colour(COLOUR_BLUE);
        pages().check_for_draw();
    }

    int pick(int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    }
    COLOUR pick_colour() {
        return COLOUR(static_cast<std::uint32_t>(pick(0, 0xFFFFFF)) | 0xFF000000u);
    }

    static std::int16_t to_short(int value) { return static_cast<std::int16_t>(value); }

    // Within `around`, or else in the window and perhaps across its edges.
    STRIPES* make(WM_SCREEN_OBJECT* around) {
        const int w = pick(1, around != nullptr ? around->width : 90);
        const int h = pick(1, around != nullptr ? around->height : 70);
        auto* object = new STRIPES(0, 0, w, h, pick_colour(), pick(0, 1) != 0);
        known.push_back({object, around});
        place(known.back());
        return object;
    }

    struct KNOWN {
        STRIPES* object;
        WM_SCREEN_OBJECT* around;  // its parent; null for those in an area or the modal list
    };
    void forget(const WM_SCREEN_OBJECT* object) {
        std::erase_if(known, [&](const KNOWN& each) {
            return each.object == object || each.around == object;
        });
    }

    void place(const KNOWN& chosen) {
        STRIPES& object = *chosen.object;
        if (const WM_SCREEN_OBJECT* around = chosen.around) {
            object.move(to_short(around->x + pick(0, around->width - object.width)),
                        to_short(around->y + pick(0, around->height - object.height)));
        } else {
            object.move(to_short(pick(-20, WIDTH)), to_short(pick(-20, HEIGHT)));
        }
    }
    // Growing keeps the children within; a child stays within its parent.
    static void grow(const KNOWN& chosen, int by) {
        STRIPES& object = *chosen.object;
        int most = WIDTH;
        if (const WM_SCREEN_OBJECT* around = chosen.around) {
            most = around->x + around->width - object.x;
        }
        object.resize(to_short(std::max<int>(object.width, std::min(object.width + by, most))),
                      object.height, 0);
    }
    void add_one() {
        WM_SCREEN_OBJECT& parent = area(pick(0, 1));
        switch (known.empty() ? 0 : pick(0, 3)) {
            case 0:
            case 1:
                parent.add_object(make(nullptr), 0);
                break;
            case 2:
                parent.add_modal_object(make(nullptr), 0);
                break;
            default: {
                const KNOWN& chosen = known[pick_index()];
                if (chosen.around == nullptr) {
                    WM_SCREEN_OBJECT* around = chosen.object;
                    around->add_object(make(around), 0);
                }
            }
        }
    }
    void remove_one(const KNOWN& chosen) {
        STRIPES* const object = chosen.object;
        WM_SCREEN_OBJECT* const parent = object->parent;
        forget(object);
        if (object->is_modal_object()) {
            parent->remove_modal_object(object, 1, 0);
        } else {
            parent->remove_object(object, 1, 0);
        }
    }
    void change_one() {
        if (known.size() < 4 || (known.size() < 14 && pick(0, 3) == 0)) {
            add_one();
            return;
        }
        const KNOWN chosen = known[pick_index()];
        STRIPES& object = *chosen.object;
        switch (pick(0, 7)) {
            case 0:
                remove_one(chosen);
                break;
            case 1:
                object.hide(0, pick(0, 1) != 0);
                break;
            case 2:
                object.request_draw(0, pick(0, 1) != 0);
                break;
            case 3:
                object.colour = pick_colour();
                object.request_draw(0, 0);
                break;
            case 4:
                object.take_focus(1);
                break;
            case 5:
                place(chosen);
                break;
            case 6:
                grow(chosen, pick(0, 5));
                break;
            default:
                area(pick(0, 1))
                    .mark_redraw_subarea(to_short(pick(-50, WIDTH)), to_short(pick(-50, HEIGHT)),
                                         to_short(pick(0, 300)), to_short(pick(0, 300)), 0);
        }
    }
    std::size_t pick_index() {
        return static_cast<std::size_t>(pick(0, static_cast<int>(known.size()) - 1));
    }

    // The first pixel where the back buffer isn't what drawing everything gives; "" if it is.
    static std::string find_stale_pixel() {
        IMAGE drawn_in_steps;
        drawn_in_steps.copy_pixels_from(*info().back_buffer);
        info().back_buffer->clear(COLOUR_BLACK);
        area().mark_entire_redraw_area();
        pages().check_for_draw();
        for (int y = 0; y < HEIGHT; ++y) {
            for (int x = 0; x < WIDTH; ++x) {
                if (drawn_in_steps.row(y)[x] != pixel(x, y)) {
                    return std::to_string(x) + ", " + std::to_string(y);
                }
            }
        }
        return "";
    }

    std::mt19937 random;
    std::vector<KNOWN> known;
};

TEST_F(RedrawTest, AfterRandomChangesNothingStaleIsLeft) {
    for (unsigned round = 0; round < 20; ++round) {
        random.seed(round);
        for (int step = 0; step < 100; ++step) {
            for (int changes = pick(1, 4); changes > 0; --changes) {
                change_one();
            }
            pages().check_for_draw();
            // Drawing everything would also mend what objects think of themselves: not each time.
            if (step % 4 == 3) {
                ASSERT_EQ("", find_stale_pixel()) << "round " << round << ", step " << step;
            }
        }
        while (!known.empty()) {
            remove_one(known.back());
        }
        pages().check_for_draw();
        ASSERT_EQ("", find_stale_pixel()) << "round " << round;
        ASSERT_EQ(0, TEST_OBJECT::alive);
    }
}

TEST_F(RedrawTest, WhatWasDrawnIsWithinTheDirtyRectangle) {
    random.seed(1);
    IMAGE presented;
    for (int step = 0; step < 300; ++step) {
        IMAGE& buffer = *info().back_buffer;
        presented.copy_pixels_from(buffer);
        buffer.set_not_dirty();
        change_one();
        pages().check_for_draw();
        for (int y = 0; y < HEIGHT; ++y) {
            for (int x = 0; x < WIDTH; ++x) {
                if (presented.row(y)[x] != pixel(x, y)) {
                    ASSERT_TRUE(x >= buffer.dirty_left && x <= buffer.dirty_right &&
                                y >= buffer.dirty_top && y <= buffer.dirty_bottom)
                        << x << ", " << y << ", step " << step;
                }
            }
        }
    }
}

TEST_F(RedrawTest, AModalObjectGoesFromTheScreenAlsoWhenItsOpenerWentBefore) {
    TEST_OBJECT* button = add(new TEST_OBJECT(0, 0, 10, 10));
    draw_all();
    auto* menu = new TEST_OBJECT(50, 50, 20, 20, COLOUR_GREEN);
    button->add_modal_object(menu, 0);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_GREEN, pixel(60, 60));
    area().remove_object(button, 1, 0);  // a refresh of the page
    EXPECT_EQ(&area(), menu->parent);
    pages().check_for_draw();
    menu->monitor_result = WM_MESG_REMOVE_MODAL;
    area().monitor();
    EXPECT_EQ(0, TEST_OBJECT::alive);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_BLUE, pixel(60, 60));
}

TEST_F(RedrawTest, ObjectsBeyondTheEdgesAreDrawnUpToThem) {
    add(new TEST_OBJECT(10, 10, INT16_MAX, INT16_MAX));
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_RED, pixel(WIDTH - 1, HEIGHT - 1));

    TEST_OBJECT status(-5, -5, 10, 10, COLOUR_GREEN);  // in no area
    status.force_draw_object();
    EXPECT_EQ(COLOUR_GREEN, pixel(4, 4));
    EXPECT_EQ(COLOUR_BLUE, pixel(5, 5));
    EXPECT_EQ(0, info().pending_count);
    status.move(-50, 0);
    status.force_draw_object();
    EXPECT_EQ(1, status.draws);
}

TEST_F(RedrawTest, WithoutABackgroundOfItsOwnAWindowIsBlack) {
    pages().background.reset(0, 0);
    TEST_OBJECT* object = add(new TEST_OBJECT(10, 10, 20, 20));
    draw_all();
    EXPECT_EQ(COLOUR_RED, pixel(15, 15));
    object->hide(0, 0);
    pages().check_for_draw();
    EXPECT_EQ(COLOUR_BLACK, pixel(15, 15));
}

}  // namespace
