// TEXT_BOX: a tagged text of 100,000 words, beside pango with the same text as markup on a cairo
// image surface: the same font files at the same pixel size, lines of the same width, and pages of
// as many lines.
//
// A text box lays out 1000 rows at most. In a box as wide as a window's (argument 600) these are
// the first words of the text, and pango is given just those; in a box of 8000 pixels they are all
// 100,000.
#include <benchmark/benchmark.h>
#include <pango/pangocairo.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_grid.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

namespace {

constexpr char FONT_FOLDER[] = "/usr/share/fonts/opentype/inter";
constexpr char FONT_FAMILY[] = "Inter";
constexpr std::int8_t REGULAR = 0, BOLD = 1;
constexpr int PIXEL_SIZE = 15;  // text is rasterised at its size less 1
constexpr int LINE_HEIGHT = PIXEL_SIZE + 1;
constexpr int PAGE_LINES = 25;
constexpr int PAGE_HEIGHT = PAGE_LINES * LINE_HEIGHT;
constexpr int BAR_WIDTH = 12;
constexpr std::size_t WORD_COUNT = 100000;
constexpr std::size_t PARAGRAPH_WORDS = 250;

// --- The text, with our tags and with pango's ---

struct TAGGED_WORD {
    std::string tagged, markup;
};

// Each seventh word has a colour, each twentieth is bold; paragraphs end with a line feed.
TAGGED_WORD make_word(std::size_t number, std::mt19937& random) {
    static constexpr char LETTERS[] = "etaoinshrdlucmfwypvbgk";
    std::string letters;
    for (std::size_t length = 1 + random() % 10; letters.size() < length;) {
        letters += LETTERS[random() % (sizeof LETTERS - 1)];
    }
    TAGGED_WORD word = {letters, letters};
    if (number % 7 == 3) {
        word.tagged = "<:colour#4294901760>" + letters + "<:default#>";
        word.markup = "<span foreground='#ff0000'>" + letters + "</span>";
    } else if (number % 20 == 5) {
        word.tagged = "<:style_on#bold>" + letters + "<:style_off#bold>";
        word.markup = "<b>" + letters + "</b>";
    }
    const bool ends = number % PARAGRAPH_WORDS == PARAGRAPH_WORDS - 1;
    word.tagged += ends ? '\n' : ' ';
    word.markup += ends ? '\n' : ' ';
    return word;
}

const std::vector<TAGGED_WORD>& get_words() {
    static const std::vector<TAGGED_WORD> words = [] {
        std::vector<TAGGED_WORD> made;
        std::mt19937 random(7);
        for (std::size_t i = 0; i < WORD_COUNT; ++i) {
            made.push_back(make_word(i, random));
        }
        return made;
    }();
    return words;
}

// The words that begin before `end` of the tagged text.
std::size_t count_words(std::size_t end) {
    std::size_t at = 0, count = 0;
    for (const TAGGED_WORD& word : get_words()) {
        if (at >= end) {
            break;
        }
        at += word.tagged.size();
        ++count;
    }
    return count;
}

std::string join(std::string TAGGED_WORD::*form, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += get_words()[i].*form;
    }
    return text;
}

// --- Ours: one window without a native window, in a skin made in memory ---

class WINDOW {
public:
    explicit WINDOW(std::int16_t width) {
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
        load_fonts();
        add_styles();
        WM_WINDOW_MANAGER::create();
        WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
        const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(width, PAGE_HEIGHT);
        manager.add_window(WM_WINDOW_MANAGER::MAIN_WINDOW, 1, size, size, size);
        buffer = manager.get_back_buffer(WM_WINDOW_MANAGER::MAIN_WINDOW);
        buffer->reset(width, PAGE_HEIGHT);
        pages = manager.get_page_manager(WM_WINDOW_MANAGER::MAIN_WINDOW);
        pages->background.reset(width, PAGE_HEIGHT);
        pages->background.clear(COLOUR_WHITE);
        pages->get_area(0)->mark_entire_redraw_area();
        draw();
    }
    ~WINDOW() {
        WM_WINDOW_MANAGER::destroy();
        WM_PAGE_TOOL_MANAGER::get_instance().clear();
    }
    WINDOW(const WINDOW&) = delete;
    WINDOW& operator=(const WINDOW&) = delete;

    // A box that fills the window.
    TEXT_BOX& show(const std::string& text, std::uint32_t more_flags = 0) {
        auto* box =
            new TEXT_BOX(0, 0, static_cast<std::int16_t>(buffer->width - 1), PAGE_HEIGHT - 1,
                         text.c_str(), -1, nullptr, TBF_MULTI_LINE | more_flags, "", nullptr,
                         nullptr, nullptr, WM_WINDOW_MANAGER::MAIN_WINDOW);
        pages->get_area(0)->add_object(box, 0);
        return *box;
    }
    void remove(TEXT_BOX& box) { pages->get_area(0)->remove_object(&box, 1, 0); }
    void draw() {
        pages->check_for_draw();
        benchmark::ClobberMemory();
    }
    // A whole turn of the main loop.
    void tick() {
        WM_SCREEN_OBJECT::now_ms += 15;
        pages->monitor(0);
        draw();
    }

private:
    static void load_fonts() {
        DISK_MANAGER disk;
        FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
        fonts.free_font(-1);
        disk.move_down(FONT_FOLDER, false, true);
        fonts.load_font("Inter-Regular.otf", REGULAR, &disk);
        fonts.load_font("Inter-Bold.otf", BOLD, &disk);
    }
    static WM_STYLE_SET& add_style(const char* name, std::int8_t font = REGULAR) {
        auto* style = new WM_STYLE_SET;
        style->set_name(name);
        style->font = font;
        style->fg_colour = COLOUR_BLACK;
        style->bg_colour = COLOUR_INVISIBLE;
        style->font_x_sz = style->font_y_sz = LINE_HEIGHT;
        style->x_spacing = style->y_spacing = 0;
        WM_PAGE_TOOL_MANAGER& tools = WM_PAGE_TOOL_MANAGER::get_instance();
        tools.style_sets.add(style);
        tools.sort_style_sets();
        return *style;
    }
    static void add_styles() {
        add_style("TEXT_BOX_BACKGROUND").flags |= STYLE_LEFT_JUSTIFY_TEXT;
        add_style("TEXT_BOX_GRID");
        add_style("TEXT_BOX_SCROLLBAR").grid_scrollbar_width = BAR_WIDTH;
        add_style("TEXT_BOX_INFO");
        add_style("TEXT_BOX_WORD");
        add_style("TEXT_BOX_WORD_BOLD", BOLD);
        add_style("TEXT_BOX_WORD_ITALIC");
        add_style("TEXT_BOX_WORD_BOLD_ITALIC", BOLD);
    }

    IMAGE* buffer;
    WM_PAGE_MANAGER* pages;
};

std::int16_t width_of(const benchmark::State& state) {
    return static_cast<std::int16_t>(state.range(0));
}

// What a box of that width lays out, which the peer is given.
struct LAID_OUT {
    explicit LAID_OUT(std::int16_t window_width) {
        WINDOW window(window_width);
        TEXT_BOX& box = window.show(join(&TAGGED_WORD::tagged, WORD_COUNT));
        const std::int16_t last_row = static_cast<std::int16_t>(box.grid->row_count - 1);
        const WM_GRID_ROW& row = *box.grid->rows[static_cast<std::size_t>(last_row)];
        const auto* end = static_cast<const TEXT_BOX_WORD*>(
            box.grid->get_object(static_cast<std::int16_t>(row.columns - 1), last_row));
        width = box.text_width;
        rows = box.grid->row_count;
        words = count_words(static_cast<std::size_t>(end->text_start));
        markup = join(&TAGGED_WORD::markup, words);
        window.remove(box);
    }

    int width, rows;
    std::size_t words;
    std::string markup;
};

void show_counts(benchmark::State& state, int rows, std::size_t words) {
    state.counters["rows"] = rows;
    state.counters["words"] = static_cast<double>(words);
}

void layout_box(benchmark::State& state) {
    const LAID_OUT laid_out(width_of(state));
    WINDOW window(width_of(state));
    const std::string text = join(&TAGGED_WORD::tagged, WORD_COUNT);
    for (auto _ : state) {
        TEXT_BOX& box = window.show(text);
        benchmark::DoNotOptimize(box.grid->row_count);
        window.remove(box);
    }
    show_counts(state, laid_out.rows, laid_out.words);
}

void first_drawing_box(benchmark::State& state) {
    WINDOW window(width_of(state));
    const std::string text = join(&TAGGED_WORD::tagged, WORD_COUNT);
    for (auto _ : state) {
        TEXT_BOX& box = window.show(text);
        window.draw();
        window.remove(box);
    }
}

// Down by a page, and from the end back to the top.
void scroll_page_box(benchmark::State& state) {
    WINDOW window(width_of(state));
    TEXT_BOX& box = window.show(join(&TAGGED_WORD::tagged, WORD_COUNT));
    window.draw();
    for (auto _ : state) {
        if (box.get_scrolled_to_bottom()) {
            box.set_scroll_to_top();
        } else {
            box.set_scroll_position(box.get_scroll_position() - PAGE_HEIGHT);
        }
        window.draw();
    }
    window.remove(box);
}

// A user in the middle of the text.
class EDITING {
public:
    explicit EDITING(const benchmark::State& state)
        : window(width_of(state)),
          box(window.show(join(&TAGGED_WORD::tagged, WORD_COUNT), TBF_EDITABLE | TBF_SELECTABLE)) {
        WM_WINDOW_MANAGER::get_instance()->set_window_as_focal_window(
            WM_WINDOW_MANAGER::MAIN_WINDOW);
        box.set_max_text_length(INT32_MAX);
        box.take_focus(1);
        MOUSE::set_position(WM_WINDOW_MANAGER::MAIN_WINDOW, 0, 0);
        box.move_cursor(0, static_cast<std::int16_t>(box.grid->row_count / 2), 0, 0);
        window.tick();
    }
    ~EDITING() {
        MOUSE::release_all();
        window.remove(box);
    }

    WINDOW window;
    TEXT_BOX& box;
};

// A character and its removal, each with the drawing.
void typing_box(benchmark::State& state) {
    EDITING editing(state);
    const std::size_t length = editing.box.text.size();
    for (auto _ : state) {
        KEYBOARD::process_char_event('x', 0);
        editing.window.tick();
        KEYBOARD::process_key_event(KEY_BACKSPACE);
        editing.window.tick();
    }
    if (editing.box.text.size() != length) {
        state.SkipWithError("nothing was typed");
    }
}

// The pointer moves with the button down, half of the text being selected.
void drag_selection_box(benchmark::State& state) {
    EDITING editing(state);
    editing.box.set_scroll_to_top();
    MOUSE::set_position(WM_WINDOW_MANAGER::MAIN_WINDOW, 50, 100);
    MOUSE::process_mouse_button(MOUSE_BUTTON_LEFT, 1);
    editing.window.tick();
    editing.box.set_scroll_position(editing.box.get_scroll_position() / 2);
    std::int16_t move = 0;
    for (auto _ : state) {
        move = static_cast<std::int16_t>(40 - move);
        MOUSE::set_position(WM_WINDOW_MANAGER::MAIN_WINDOW, static_cast<std::int16_t>(200 + move),
                            200);
        editing.window.tick();
    }
    if (!editing.box.has_selection()) {
        state.SkipWithError("nothing was selected");
    }
}

// The arrow keys, from line to line.
void move_cursor_box(benchmark::State& state) {
    EDITING editing(state);
    KEY_TYPE key = KEY_DOWN;
    for (auto _ : state) {
        KEYBOARD::process_key_event(key);
        editing.window.tick();
        key = key == KEY_DOWN ? KEY_UP : KEY_DOWN;
    }
}

// --- The peer ---

// A page of pango's lines.
class PEER {
public:
    explicit PEER(const benchmark::State& state) : laid_out(width_of(state)) {
        surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width_of(state), PAGE_HEIGHT);
        cairo = cairo_create(surface);
        context = pango_cairo_create_context(cairo);
        cairo_font_options_t* options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
        pango_cairo_context_set_font_options(context, options);
        cairo_font_options_destroy(options);
        font = pango_font_description_from_string(FONT_FAMILY);
        pango_font_description_set_absolute_size(font, PIXEL_SIZE * PANGO_SCALE);
    }
    ~PEER() {
        remove();
        pango_font_description_free(font);
        g_object_unref(context);
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
    PEER(const PEER&) = delete;
    PEER& operator=(const PEER&) = delete;

    bool has_font() const {
        PangoFont* found = pango_context_load_font(context, font);
        PangoFontDescription* description = pango_font_describe(found);
        const bool same =
            std::string(FONT_FAMILY) == pango_font_description_get_family(description);
        pango_font_description_free(description);
        g_object_unref(found);
        return same;
    }
    void show() {
        layout = pango_layout_new(context);
        pango_layout_set_font_description(layout, font);
        pango_layout_set_width(layout, laid_out.width * PANGO_SCALE);
        pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
        pango_layout_set_markup(layout, laid_out.markup.c_str(),
                                static_cast<int>(laid_out.markup.size()));
        int width = 0, height = 0;
        pango_layout_get_pixel_size(layout, &width, &height);
        benchmark::DoNotOptimize(height);
    }
    void remove() {
        if (layout) {
            g_object_unref(layout);
        }
        layout = nullptr;
        top = nullptr;
    }
    void go_to_top() { top = pango_layout_get_lines_readonly(layout); }
    void go_down() {
        for (int i = 0; i < PAGE_LINES && top; ++i) {
            top = top->next;
        }
        if (!top) {
            go_to_top();
        }
    }
    void draw() {
        cairo_set_source_rgb(cairo, 1, 1, 1);
        cairo_paint(cairo);
        cairo_set_source_rgb(cairo, 0, 0, 0);
        const GSList* line = top;
        for (int i = 0; i < PAGE_LINES && line; ++i, line = line->next) {
            cairo_move_to(cairo, 0, i * LINE_HEIGHT + PIXEL_SIZE - 3);
            pango_cairo_show_layout_line(cairo, static_cast<PangoLayoutLine*>(line->data));
        }
        cairo_surface_flush(surface);
        benchmark::ClobberMemory();
    }
    void count(benchmark::State& state) {
        show();
        show_counts(state, pango_layout_get_line_count(layout), laid_out.words);
        remove();
    }

private:
    const LAID_OUT laid_out;
    cairo_surface_t* surface;
    cairo_t* cairo;
    PangoContext* context;
    PangoFontDescription* font;
    PangoLayout* layout = nullptr;
    const GSList* top = nullptr;
};

void layout_pango(benchmark::State& state) {
    PEER peer(state);
    if (!peer.has_font()) {
        state.SkipWithError("no font");
        return;
    }
    for (auto _ : state) {
        peer.show();
        peer.remove();
    }
    peer.count(state);
}

void first_drawing_pango(benchmark::State& state) {
    PEER peer(state);
    for (auto _ : state) {
        peer.show();
        peer.go_to_top();
        peer.draw();
        peer.remove();
    }
}

void scroll_page_pango(benchmark::State& state) {
    PEER peer(state);
    peer.show();
    peer.go_to_top();
    for (auto _ : state) {
        peer.go_down();
        peer.draw();
    }
}

void boxes(benchmark::internal::Benchmark* bench) {
    bench->Arg(600)->Arg(8000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(layout_box)->Apply(boxes);
BENCHMARK(layout_pango)->Apply(boxes);
BENCHMARK(first_drawing_box)->Apply(boxes);
BENCHMARK(first_drawing_pango)->Apply(boxes);
BENCHMARK(scroll_page_box)->Apply(boxes);
BENCHMARK(scroll_page_pango)->Apply(boxes);
BENCHMARK(typing_box)->Apply(boxes);
BENCHMARK(drag_selection_box)->Apply(boxes);
BENCHMARK(move_cursor_box)->Apply(boxes);

}  // namespace
