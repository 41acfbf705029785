// Writing pictures to files.
#ifndef SKIN_ART_PICTURE_OUTPUT_H
#define SKIN_ART_PICTURE_OUTPUT_H

#include <filesystem>
#include <string>

class CANVAS;

// How much of a picture its scalable form keeps whole at each side.
struct SIDES {
    SIDES(int all) : left(all), top(all), right(all), bottom(all) {}  // NOLINT
    SIDES(int a, int b, int c, int d) : left(a), top(b), right(c), bottom(d) {}

    int left, top, right, bottom;
};

// Writes the pictures of one folder. Everything ends the program with a message on failure.
class PICTURE_OUTPUT {
public:
    explicit PICTURE_OUTPUT(const std::filesystem::path& folder);

    // One file "NAME.png".
    void put(const CANVAS& canvas, const std::string& name);
    // Nine files "NAME_top_left.png" and so on.
    void put_nine(const CANVAS& canvas, const std::string& name, const SIDES& sides);
    // Three files "NAME_left.png", "NAME_mid.png", "NAME_right.png".
    void put_across(const CANVAS& canvas, const std::string& name, int left, int right);
    // One file "NAME.jpg".
    void put_jpeg(const CANVAS& canvas, const std::string& name);

private:
    void put_part(const CANVAS& canvas, const std::string& name, int x, int y, int width,
                  int height);

    std::filesystem::path path;
};

#endif  // SKIN_ART_PICTURE_OUTPUT_H
