// Dialogs with typed buttons and message boxes, in a small skin of real files.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "modules/gui/message_box.h"
#include "modules/gui/text_box.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "platform/data_file.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "skin_fixture.h"

namespace {

// Styles of buttons are told apart by their background.
enum : std::uint32_t {
    ACKNOWLEDGE = 0xFF000001,
    CANCEL,
    POSITIVE,
    NEGATIVE,
    NORMAL,
    HELP,
    NEXT,
    BACK,
};

int calls = 0;
void* last_data = nullptr;
void* last_data2 = nullptr;

WM_MESG count_call(WM_SCREEN_OBJECT*, void* data1, void* data2) {
    ++calls;
    last_data = data1;
    last_data2 = data2;
    return WM_MESG_NONE;
}

WM_MESG close_modals(WM_SCREEN_OBJECT*, void*, void*) {
    return WM_MESG_CLOSE_MODAL_DIALOGS;
}

class DialogBaseTest : public SkinTest {
protected:
    static constexpr std::int16_t WIDTH = 500, HEIGHT = 400;

    void SetUp() override {
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
        put_dialog_skin();
        ASSERT_TRUE(load("s"));
        calls = 0;
        last_data = last_data2 = nullptr;
        MESSAGE_BOX::please_wait_animation_frame = MESSAGE_BOX::NO_FRAME;
        MOUSE::set_position(-1, -1, -1);
        MOUSE::release_all();
        WM_WINDOW_MANAGER::create();
        const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(WIDTH, HEIGHT);
        ASSERT_TRUE(manager().add_window(0, 1, size, size, size));
        info().back_buffer->reset(WIDTH, HEIGHT);
        manager().set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
        area().mark_entire_redraw_area();
        pages().check_for_draw();
    }
    void TearDown() override {
        WM_WINDOW_MANAGER::destroy();
        restart();
    }

    void put_button_style(const char* name, std::uint32_t colour) {
        char line[64];
        std::snprintf(line, sizeof line, "bg_colour\n\t#%08X\nborder_top_gap\n\t4\n", colour);
        put_style_set(std::string("skins/s/style_sets/").append(name).append(".ss"), name, "",
                      std::string(line) +
                          "border_left_gap\n\t10\nborder_right_gap\n\t10\n"
                          "border_bottom_gap\n\t4\nhighlight_colour\n\t#FFFFFFFF\n");
    }
    void put_style(const char* name, const char* more) {
        put_style_set(std::string("skins/s/style_sets/").append(name).append(".ss"), name, "",
                      more);
    }
    void put_dialog_skin() {
        put_skin("s", 1);
        has_font = put_font("skins/s/fonts/text.otf");
        put_style_set("skins/s/style_sets/default.ss", "DEFAULT", "",
                      has_font ? "font\n\ttext.otf\nfont_x_sz\n\t14\nfont_y_sz\n\t14\n"
                                 "fg_colour\n\t#FFFFFFFF\nbg_colour\n\t#00000000\nflags\n\t0\n"
                               : "font_x_sz\n\t14\nfont_y_sz\n\t14\n");
        put_button_style("DIALOG_BUTTON_ACKNOWLEDGE", ACKNOWLEDGE);
        put_button_style("DIALOG_BUTTON_CANCEL", CANCEL);
        put_button_style("DIALOG_BUTTON_POSITIVE_ACTION", POSITIVE);
        put_button_style("DIALOG_BUTTON_NEGATIVE_ACTION", NEGATIVE);
        put_button_style("DIALOG_BUTTON_NORMAL", NORMAL);
        put_button_style("DIALOG_BUTTON_HELP", HELP);
        put_button_style("DIALOG_BUTTON_NEXT", NEXT);
        put_button_style("DIALOG_BUTTON_BACK", BACK);
        for (const char* name : {"DIALOG_BACKGROUND", "DIALOG_BACKGROUND_CONFIRM",
                                 "DIALOG_BACKGROUND_WARNING", "DIALOG_BACKGROUND_ERROR"}) {
            const std::string colour = std::string(name).back() == 'D' ? "#FF202040" : "#FF402020";
            put_style(name, ("bg_colour\n\t" + colour +
                             "\nborder_left_gap\n\t12\nborder_right_gap\n\t12\n"
                             "border_top_gap\n\t6\nborder_bottom_gap\n\t12\n"
                             "x_spacing\n\t8\ny_spacing\n\t5\n")
                                .c_str());
        }
        put_style("DIALOG_TITLE",
                  "bg_colour\n\t#FF404080\nborder_top_gap\n\t3\nborder_bottom_gap\n\t3\n");
        put_style("BLANK", "");
        put_style("DIALOG_CHECK_BOX", "fg_colour\n\t#FFFFFFFF\nbg_colour\n\t#FF606060\n");
        for (const char* name : {"BACKGROUND", "GRID", "SCROLLBAR", "WORD"}) {
            put_style((std::string("DIALOG_MESSAGE_TEXT_BOX_") + name).c_str(),
                      "x_spacing\n\t0\ny_spacing\n\t0\n");
        }
        put_style_set("skins/s/style_sets/label.ss", "LABEL", "label");
        for (const char* piece : {"left", "mid", "right"}) {
            put_png(std::string("skins/s/style_sets/label_up_").append(piece).append(".png"), 8, 19,
                    COLOUR(0, 255, 255));
        }
        put_png("skins/s/style_sets/label_flashing.png", 8, 19, COLOUR_INVISIBLE);
        put("skins/s/constants/dialogs.cfg",
            "MESSAGE_BOX_WIDTH\n\t300\nMESSAGE_BOX_HEIGHT\n\t160\n"
            "DIALOG_AUTO_RESIZE_X_AMOUNT\n\t2\nDIALOG_AUTO_RESIZE_Y_AMOUNT\n\t1\n"
            "DIALOG_DEFAULT_CONTROL_WIDTH\n\t180\nDIALOG_DEFAULT_CONTROL_HEIGHT\n\t20\n"
            "MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_COUNT\n\t4\n"
            "MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_RATE\n\t50\n");
        put("skins/s/images/wait.cfg", "PLEASE_WAIT_ANIMATION\n\twait.png\n");
        put_png("skins/s/images/wait.png", 64, 16, COLOUR_GREEN);
    }

    static WM_WINDOW_MANAGER& manager() { return *WM_WINDOW_MANAGER::get_instance(); }
    static WM_WINDOW_INFO& info() {
        return *manager().get_window_info(WM_WINDOW_MANAGER::MAIN_WINDOW);
    }
    static WM_PAGE_MANAGER& pages() { return *info().page_manager; }
    static WM_AREA& area() { return *pages().get_area(0); }

    template <class DIALOG>
    DIALOG* show(DIALOG* dialog) {
        area().add_modal_object(dialog, 0);
        pages().monitor(0);
        return dialog;
    }
    static DIALOG_BASE* make(const std::vector<signed char>& types) {
        std::vector<DIALOG_BUTTON_INFO> infos;
        for (const signed char type : types) {
            infos.push_back({"label", infos.empty() ? &calls : nullptr, nullptr, type, nullptr});
        }
        if (!infos.empty()) {
            infos[0].callback = count_call;
        }
        return new DIALOG_BASE(-1, -1, -1, -1, "Title", 0, DIALOG_KIND_PLAIN, infos.data(),
                               static_cast<int>(infos.size()), 0);
    }
    // The types and the styles of the buttons in their order.
    static std::vector<int> types_of(const DIALOG_BASE& dialog) {
        std::vector<int> types;
        for (const auto& record : dialog.buttons) {
            if (record.button != nullptr) {
                types.push_back(record.type);
            }
        }
        return types;
    }
    static std::vector<std::uint32_t> styles_of(const DIALOG_BASE& dialog) {
        std::vector<std::uint32_t> styles;
        for (const auto& record : dialog.buttons) {
            if (record.button != nullptr) {
                styles.push_back(record.button->bg.value);
            }
        }
        return styles;
    }
    static void press_key(KEY_TYPE key) {
        KEYBOARD::process_key_event(key);
        pages().monitor(0);
    }
    static std::string words(int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += "Some more words. ";
        }
        return text;
    }

    bool has_font = false;
    KEYBOARD keyboard;
};

using SkinScriptTest = DialogBaseTest;

TEST_F(SkinScriptTest, LabelTakesItsImagesAndRecoloursTheOriginals) {
    WM_SCRIPT label(10, 20, -1, -1, GUI_SKIN::get_style_set("LABEL"), "text", 0);
    ASSERT_TRUE(label.is_graphical());
    EXPECT_EQ(19, label.height) << "that of the centre piece";
    label.text.set(label.text.value, "");
    const auto drawn = [&] {
        info().back_buffer->clear(COLOUR_BLACK);
        label.draw_object();
        return info().back_buffer->row(25)[15];
    };
    EXPECT_EQ(COLOUR(0, 255, 255), drawn());
    EXPECT_TRUE(label.is_in_it(12, 22));
    COLOUR once = COLOUR(0, 255, 255);
    once.recolour(COLOUR_RED);
    label.set_colours(COLOUR_GREEN, COLOUR_WHITE, COLOUR_WHITE, 0);
    label.set_colours(COLOUR_RED, COLOUR_WHITE, COLOUR_WHITE, 0);
    EXPECT_EQ(once, drawn()) << "recoloured from the original, not from green";
    // The flashing picture has nothing to show.
    label.flashing = true;
    EXPECT_EQ(COLOUR_BLACK, drawn());
    // Where the picture is transparent there is no label.
    label.up_box = label.flashing_box;
    EXPECT_FALSE(label.is_in_it(12, 22));
    label.script_flags |= SCRIPT_DONT_MASK_CLICK;
    EXPECT_TRUE(label.is_in_it(12, 22));
    EXPECT_FALSE(label.set_images(nullptr, nullptr, nullptr));
    // The same from the folder itself, without the style.
    const WM_STYLE_SET& style = GUI_SKIN::get_style_set("LABEL");
    EXPECT_TRUE(label.set_images(style.image_path, "label", nullptr));
    label.flashing = false;
    EXPECT_EQ(COLOUR(0, 255, 255), drawn());
}

TEST_F(DialogBaseTest, ButtonsAreSortedAndStyledByType) {
    struct CASE {
        std::vector<signed char> given;
        std::vector<int> types;
        std::vector<std::uint32_t> styles;
    };
    const CASE cases[] = {
        {{1}, {1}, {ACKNOWLEDGE}},
        {{2}, {2}, {NEGATIVE}},
        {{7}, {7}, {NEXT}},
        {{8}, {8}, {BACK}},
        {{77}, {77}, {NORMAL}},
        {{3, 2}, {2, 3}, {NEGATIVE, POSITIVE}},
        {{2, 3}, {2, 3}, {NEGATIVE, POSITIVE}},
        {{3, 4}, {4, 3}, {NEGATIVE, POSITIVE}},
        {{8, 7}, {8, 7}, {NORMAL, NORMAL}},
        {{3, 2, 4}, {4, 2, 3}, {NEGATIVE, CANCEL, POSITIVE}},
        {{6, 5, 3, 2}, {6, 5, 2, 3}, {HELP, NORMAL, NEGATIVE, POSITIVE}},
    };
    for (const CASE& each : cases) {
        const std::unique_ptr<DIALOG_BASE> dialog(make(each.given));
        EXPECT_EQ(each.types, types_of(*dialog));
        EXPECT_EQ(each.styles, styles_of(*dialog));
        const WM_SCREEN_OBJECT* focal = info().focal_object;
        if (each.given.size() > 1) {
            const WM_BUTTON* positive = dialog->get_button(DIALOG_BUTTON_POSITIVE_ACTION);
            EXPECT_EQ(positive != nullptr ? positive : dialog->buttons[1].button, focal);
        }
    }
}

TEST_F(DialogBaseTest, ButtonsStandOnTheBottomEdgeAndFollowIt) {
    const auto left_of = [](const DIALOG_BASE& dialog, std::size_t i) {
        return dialog.buttons[i].button->x - dialog.WM_DIALOG::contents->x;
    };
    const auto expect_bottom = [](const DIALOG_BASE& dialog) {
        for (const auto& record : dialog.buttons) {
            if (record.button != nullptr) {
                EXPECT_EQ(dialog.y + dialog.height - 12, record.button->y + record.button->height);
            }
        }
    };
    const int inner = 400 - 24;
    const std::unique_ptr<DIALOG_BASE> none(make({})), one(make({1})), two(make({2, 3})),
        help(make({6, 1})), three(make({5, 2, 3})), four(make({6, 5, 2, 3}));
    const int w = one->buttons[0].button->width;
    EXPECT_EQ(400, one->width);
    EXPECT_EQ(200, one->height);
    EXPECT_EQ((inner - w) / 2, left_of(*one, 0));
    EXPECT_EQ(inner - 8 - w, left_of(*two, 1));
    EXPECT_EQ(inner - 2 * (8 + w), left_of(*two, 0));
    EXPECT_EQ(inner - 8 - w, left_of(*help, 1));
    EXPECT_EQ(8, left_of(*help, 0));
    EXPECT_EQ(8, left_of(*three, 0));
    EXPECT_EQ(inner - 2 * (8 + w), left_of(*three, 1));
    EXPECT_EQ(8, left_of(*four, 0));
    EXPECT_EQ(inner - 3 * (8 + w), left_of(*four, 1));
    EXPECT_EQ(inner - 8 - w, left_of(*four, 3));
    EXPECT_EQ(none->WM_DIALOG::contents->height, none->contents->height);
    EXPECT_EQ(two->WM_DIALOG::contents->height - two->buttons[0].button->height - 5,
              two->contents->height);
    struct CASE {
        DIALOG_BASE& dialog;
        int first, others;
    };
    for (const CASE& each : {CASE{*one, 15, 0}, CASE{*two, 31, 31}, CASE{*four, 0, 31}}) {
        expect_bottom(each.dialog);
        const int x0 = each.dialog.buttons[0].button->x;
        const int contents_height = each.dialog.contents->height;
        each.dialog.resize(431, 220, 0);
        expect_bottom(each.dialog);
        EXPECT_EQ(x0 + each.first, each.dialog.buttons[0].button->x);
        EXPECT_EQ(contents_height + 20, each.dialog.contents->height);
        if (each.dialog.buttons[1].button != nullptr) {
            EXPECT_EQ(inner + 31 - 8 - w,
                      left_of(each.dialog,
                              static_cast<std::size_t>(
                                  each.dialog.get_number_of_buttons(DIALOG_BASE::ANY_TYPE) - 1)));
        }
    }
}

TEST_F(DialogBaseTest, ReactsToOneActionUntilReset) {
    int second = 0;
    DIALOG_BASE* dialog = show(new DIALOG_BASE(
        -1, -1, 400, 200, nullptr, 0, DIALOG_KIND_CONFIRM, "Yes", &calls, &second, 3, "No", nullptr,
        nullptr, 4, "Ok", &second, nullptr, 1, count_call, nullptr, nullptr, 0));
    dialog->set_button_enabled(DIALOG_BUTTON_NEGATIVE_ACTION, 0);
    EXPECT_EQ(WM_MESG_NONE, dialog->call_button_callback(DIALOG_BUTTON_NEGATIVE_ACTION));
    EXPECT_EQ(0, calls) << "it is disabled";
    dialog->call_button_callback(DIALOG_BUTTON_POSITIVE_ACTION);
    EXPECT_EQ(1, calls);
    EXPECT_EQ(&calls, last_data);
    EXPECT_EQ(&second, last_data2);
    EXPECT_TRUE(dialog->actioned);
    EXPECT_FALSE(dialog->get_button_enabled(DIALOG_BUTTON_POSITIVE_ACTION));
    EXPECT_TRUE(dialog->get_button_enabled(DIALOG_BUTTON_ACKNOWLEDGE));
    dialog->call_button_callback(DIALOG_BUTTON_ACKNOWLEDGE);
    EXPECT_EQ(1, calls);
    dialog->reset_actioned();
    EXPECT_TRUE(dialog->get_button_enabled(DIALOG_BUTTON_POSITIVE_ACTION));
    EXPECT_FALSE(dialog->get_button_enabled(DIALOG_BUTTON_NEGATIVE_ACTION)) << "as before";
    // The first callback serves the buttons without one; this one disables nothing.
    dialog->call_button_callback(DIALOG_BUTTON_ACKNOWLEDGE);
    EXPECT_EQ(2, calls);
    EXPECT_EQ(&second, last_data);
    EXPECT_TRUE(dialog->get_button_enabled(DIALOG_BUTTON_POSITIVE_ACTION));
    EXPECT_TRUE(dialog->actioned);
    // Another dialog's turn ends the action.
    dialog->update(0);
    EXPECT_TRUE(dialog->actioned);
    DIALOG_BASE* other = show(make({1}));
    EXPECT_EQ(other, DIALOG_BASE::active_dialog);
    EXPECT_EQ(other, info().active_dialog);
    pages().monitor(0);
    EXPECT_FALSE(dialog->actioned);
    area().remove_modal_object(other, 1, 0);
    EXPECT_EQ(nullptr, info().active_dialog);

    dialog->set_button_text(DIALOG_BUTTON_ACKNOWLEDGE, nullptr);
    EXPECT_STREQ("", dialog->get_button(DIALOG_BUTTON_ACKNOWLEDGE)->get_title_text());
    EXPECT_STREQ("", dialog->buttons[2].text);
    dialog->get_button(DIALOG_BUTTON_ACKNOWLEDGE)->set_string("Another title", 0);
    EXPECT_STREQ("", dialog->buttons[2].text) << "as the dialog set it";
    EXPECT_EQ(nullptr, dialog->get_button(DIALOG_BUTTON_HELP));
    EXPECT_EQ(1, dialog->get_number_of_buttons(DIALOG_BUTTON_NEGATIVE_ACTION));
}

TEST_F(DialogBaseTest, KeysPressButtons) {
    DIALOG_BASE* dialog = show(make({3}));
    press_key(KEY_ESCAPE);
    EXPECT_EQ(0, calls);
    EXPECT_EQ(KEY_NONE, keyboard.peek_code()) << "consumed all the same";
    pages().monitor(0);
    EXPECT_EQ(dialog->get_button(3), info().focal_object);
    press_key(KEY_RETURN);
    EXPECT_EQ(1, calls);
    area().remove_modal_object(dialog, 1, 0);

    int help_data = 0;
    dialog = show(new DIALOG_BASE(-1, -1, 400, 200, "t", 0, DIALOG_KIND_PLAIN, "Help", &help_data,
                                  nullptr, 6, "Cancel", nullptr, nullptr, 2, "Do", &calls, nullptr,
                                  3, count_call, nullptr, nullptr, 0));
    press_key(KEY_F1);
    EXPECT_EQ(2, calls);
    EXPECT_EQ(&help_data, last_data);
    dialog->reset_actioned();
    press_key(KEY_ESCAPE);
    EXPECT_EQ(3, calls);
    EXPECT_EQ(nullptr, last_data);
    dialog->reset_actioned();
    // Tab goes round the buttons of the dialog, in the order in which they stand.
    std::vector<const WM_SCREEN_OBJECT*> order;
    for (int i = 0; i < 3; ++i) {
        press_key(KEY_TAB);
        order.push_back(info().focal_object);
    }
    const std::vector<const WM_SCREEN_OBJECT*> expected = {
        dialog->get_button(6), dialog->get_button(2), dialog->get_button(3)};
    EXPECT_EQ(expected, order);
    press_key(KEY_RETURN);
    EXPECT_EQ(4, calls);
    EXPECT_EQ(&calls, last_data);
}

TEST_F(DialogBaseTest, ClicksAndClosesByMessage) {
    DIALOG_BASE* dialog = show(new DIALOG_BASE(-1, -1, -1, -1, "t", 0, DIALOG_KIND_PLAIN, "Close",
                                               nullptr, nullptr, 2, close_modals, 0));
    const WM_BUTTON& button = *dialog->get_button(2);
    const auto px = static_cast<std::int16_t>(button.x + button.width / 2);
    const auto py = static_cast<std::int16_t>(button.y + button.height / 2);
    MOUSE::set_position(0, px, py);
    pages().monitor(0);
    MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 1);
    pages().monitor(0);
    MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 0);
    EXPECT_EQ(WM_MESG_CLOSE_MODAL_DIALOGS, pages().monitor(0));
    pages().monitor(0);
    EXPECT_EQ(0, area().get_modal_object_count());
}

TEST_F(DialogBaseTest, HidesWhatIsBehindItsInsideOnlyWhileOpaque) {
    const std::unique_ptr<DIALOG_BASE> dialog(make({1}));
    const auto x = static_cast<std::int16_t>(dialog->x + 12);
    const auto y = static_cast<std::int16_t>(dialog->y + dialog->get_title_height());
    const auto right = static_cast<std::int16_t>(dialog->x + dialog->width - 13);
    const auto bottom = static_cast<std::int16_t>(dialog->y + dialog->height - 13);
    EXPECT_TRUE(dialog->is_obscuring(x, y, right, bottom));
    EXPECT_FALSE(dialog->is_obscuring(x, static_cast<std::int16_t>(y - 1), right, bottom));
    EXPECT_FALSE(dialog->is_obscuring(x, y, static_cast<std::int16_t>(right + 1), bottom));
    dialog->alpha = 254;
    EXPECT_FALSE(dialog->is_obscuring(x, y, right, bottom));
    dialog->alpha = 255;
    dialog->hide(0, 0);
    EXPECT_FALSE(dialog->is_obscuring(x, y, right, bottom));
}

TEST_F(DialogBaseTest, MessageBoxGrowsToItsText) {
    ASSERT_TRUE(has_font) << "the package fonts-inter is needed";
    const MESSAGE_BOX fitting("Title", "Short.", 0, DIALOG_KIND_PLAIN, "OK", nullptr, nullptr, 1,
                              count_call, 0);
    EXPECT_EQ(300, fitting.width);
    EXPECT_EQ(160, fitting.height);
    EXPECT_EQ((WIDTH - 300) / 2, fitting.x);
    EXPECT_EQ((HEIGHT - 160) / 2, fitting.y);

    MESSAGE_BOX grown("Title", words(25).c_str(), 0, DIALOG_KIND_PLAIN, "OK", nullptr, nullptr, 1,
                      count_call, 0);
    EXPECT_GT(grown.width, 300);
    EXPECT_EQ((grown.width - 300), 2 * (grown.height - 160));
    EXPECT_LT(grown.width, WIDTH);
    EXPECT_EQ((WIDTH - grown.width) / 2, grown.x);
    grown.contents->objects.set_cursor(grown.contents->objects.get_tail());
    auto* text = static_cast<TEXT_BOX*>(grown.contents->objects.get_info_dec());
    EXPECT_FALSE(text->get_scrolling());
    EXPECT_EQ(grown.contents->height, text->get_height());
    // One step less and it wouldn't fit.
    text->resize(static_cast<std::int16_t>(text->get_width() - 4),
                 static_cast<std::int16_t>(text->get_height() - 2), 0);
    EXPECT_TRUE(text->get_scrolling());

    const MESSAGE_BOX endless("Title", words(2000).c_str(), 0, DIALOG_KIND_PLAIN, 0);
    EXPECT_LE(endless.width, WIDTH);
    EXPECT_LE(endless.height, HEIGHT);
}

TEST_F(DialogBaseTest, CheckBoxGoesBeforeTheAnimation) {
    MESSAGE_BOX box("Title", "Text", MESSAGE_BOX_DO_NOT_SHOW_AGAIN | MESSAGE_BOX_PLEASE_WAIT,
                    DIALOG_KIND_WARNING, "OK", nullptr, nullptr, 1, count_call, 0);
    EXPECT_EQ(nullptr, box.please_wait);
    ASSERT_NE(nullptr, box.do_not_show);
    EXPECT_EQ(180, box.do_not_show->width);
    EXPECT_EQ(20, box.do_not_show->height);
    EXPECT_EQ(box.contents->x + (box.contents->width - 180) / 2, box.do_not_show->x);
    EXPECT_EQ(box.contents->y + box.contents->height - 4 * 5 - 20, box.do_not_show->y);
    EXPECT_FALSE(box.get_do_not_show_this_again());
    box.do_not_show->set_checked(1);
    EXPECT_TRUE(box.get_do_not_show_this_again());
}

TEST_F(DialogBaseTest, TheNextAnimationGoesOnFromTheLast) {
    {
        MESSAGE_BOX first("Title", "Wait", MESSAGE_BOX_PLEASE_WAIT, DIALOG_KIND_PLAIN, 0);
        ASSERT_NE(nullptr, first.please_wait);
        EXPECT_EQ(1, first.please_wait->sprite.frame);
        EXPECT_EQ(50, first.please_wait->frame_delay);
        EXPECT_EQ(16, first.please_wait->width);
        EXPECT_EQ(first.contents->x + (first.contents->width - 16) / 2, first.please_wait->x);
        first.please_wait->sprite.frame = 3;
    }
    EXPECT_EQ(3, MESSAGE_BOX::please_wait_animation_frame);
    { MESSAGE_BOX other("Title", "No animation", 0, DIALOG_KIND_PLAIN, 0); }
    MESSAGE_BOX next("Title", "Wait", MESSAGE_BOX_PLEASE_WAIT, DIALOG_KIND_PLAIN, 0);
    EXPECT_EQ(3, next.please_wait->sprite.frame);
}

}  // namespace
