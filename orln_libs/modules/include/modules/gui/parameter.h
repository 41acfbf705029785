// PARAMETER: a value of a run-time type with limits. Labels hold their text in it, scroll bars
// their position.
#ifndef MODULES_GUI_PARAMETER_H
#define MODULES_GUI_PARAMETER_H

#include <cstdint>

class PARAMETER {
public:
    enum TYPE : std::int32_t {
        TYPE_CHAR = 0,
        TYPE_SHORT = 1,
        TYPE_LONG = 2,
        TYPE_FLOAT = 3,
        TYPE_DOUBLE = 4,
        TYPE_STRING = 5,
        TYPE_POINTER = 6,
    };

    union VALUE_TYPE {
        signed char char_value;
        std::int16_t short_value;
        std::int32_t long_value;
        float float_value;
        double double_value;
        char* string_value;  // owned, from array new; may be null
        void* pointer_value;
    };
    static_assert(sizeof(VALUE_TYPE) == 8);

    // All three values are 0, empty or null. `min` and `max` are in force at once: set them first.
    explicit PARAMETER(std::int32_t value_type = TYPE_LONG);
    // A string with a copy of the text; null is the empty text.
    explicit PARAMETER(const char* text);
    PARAMETER(const PARAMETER& other);
    PARAMETER& operator=(const PARAMETER& other);
    ~PARAMETER();

    // Stores into `value`, `min` or `max` of this object, converted to its type: numbers are
    // truncated, and limited to the type's own range. A string gets the number's text; null is the
    // empty text. Then check_limits.
    void set(VALUE_TYPE& where, std::int32_t number);
    void set(VALUE_TYPE& where, double number);
    void set(VALUE_TYPE& where, void* pointer);
    void set(VALUE_TYPE& where, const char* text);

    // Puts `value` between `min` and `max`. Strings and pointers have no limits.
    void check_limits();

    // One of the values converted. A string that isn't a number is 0, and so is a null one.
    std::int32_t get_long(const VALUE_TYPE& where) const;
    double get_double(const VALUE_TYPE& where) const;
    void* get_ptr(const VALUE_TYPE& where) const;
    // The text form, cut to `size` with its terminator. Numbers with a fraction have two places.
    void get_str(const VALUE_TYPE& where, char* buffer, std::int32_t size) const;
    // The length of a string `value`; 0 for all other types.
    std::int32_t get_str_length() const;

    std::int32_t type;
    VALUE_TYPE value, min, max;

private:
    void set_text(VALUE_TYPE& where, const char* text);
    void copy_from(const PARAMETER& other);
    void free_strings();
};

#endif  // MODULES_GUI_PARAMETER_H
