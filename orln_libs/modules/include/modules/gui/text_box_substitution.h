// TEXT_BOX_SUBSTITUTION: a text that is replaced by another as soon as it has been typed.
#ifndef MODULES_GUI_TEXT_BOX_SUBSTITUTION_H
#define MODULES_GUI_TEXT_BOX_SUBSTITUTION_H

class TEXT_BOX_SUBSTITUTION {
public:
    static constexpr int TEXT_SIZE = 256;

    char from[TEXT_SIZE] = "";
    char to[TEXT_SIZE] = "";
};

#endif  // MODULES_GUI_TEXT_BOX_SUBSTITUTION_H
