// The pictures of a skin, by family. Each function draws those of one family with the skin's
// colours into the folder of its style sets, or of its named images.
#ifndef SKIN_ART_FAMILIES_H
#define SKIN_ART_FAMILIES_H

#include <filesystem>

class PALETTE;
class PICTURE_OUTPUT;

// Where a derived skin is tinted, its pictures are drawn with two palettes. Neutral ones are drawn
// with its greys, and take the tint when the skin is compiled. Those that hold the accent belong to
// style sets that aren't recolourable: they are drawn with the palette that is tinted already.
//
// In "style_sets/buttons":
void draw_buttons(const PALETTE& tinted, PICTURE_OUTPUT& output);
void draw_check_marks(const PALETTE& tinted, PICTURE_OUTPUT& output);
// In "style_sets/dialogs":
void draw_dialogs(const PALETTE& palette, const PALETTE& tinted, PICTURE_OUTPUT& output);
void draw_menus(const PALETTE& palette, const PALETTE& tinted, PICTURE_OUTPUT& output);
void draw_hint(const PALETTE& tinted, PICTURE_OUTPUT& output);
// In "style_sets/panels":
void draw_panel_frame(const PALETTE& palette, PICTURE_OUTPUT& output);
void draw_tabs(const PALETTE& tinted, PICTURE_OUTPUT& output);
// In "style_sets/profile":
void draw_profile_rows(const PALETTE& tinted, PICTURE_OUTPUT& output);
// In "style_sets/text":
void draw_text_fields(const PALETTE& palette, PICTURE_OUTPUT& output);
// In "style_sets/bars":
void draw_progress_bar(const PALETTE& tinted, PICTURE_OUTPUT& output);
void draw_scroll_bar(const PALETTE& palette, PICTURE_OUTPUT& output);
// In "images", which are never tinted:
void draw_arrows(const PALETTE& tinted, PICTURE_OUTPUT& output);
void draw_background(const PALETTE& tinted, PICTURE_OUTPUT& output);
void draw_logo(const PALETTE& tinted, PICTURE_OUTPUT& output);
// Twelve frames side by side.
void draw_wait_animation(const PALETTE& tinted, PICTURE_OUTPUT& output);
// The picture of the splash window; `font` is a font file for the name on it.
void draw_splash(const PALETTE& tinted, const std::filesystem::path& font, PICTURE_OUTPUT& output);

#endif  // SKIN_ART_FAMILIES_H
