#include "modules/gui/parameter.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "kvcore/text_field.h"

namespace {

// Where a number is put when a string takes it; no number is longer.
constexpr std::size_t NUMBER_TEXT_SIZE = 50;

template <class TYPE, class NUMBER>
TYPE limited(NUMBER number) {
    constexpr auto lowest = static_cast<NUMBER>(std::numeric_limits<TYPE>::lowest());
    constexpr auto highest = static_cast<NUMBER>(std::numeric_limits<TYPE>::max());
    return static_cast<TYPE>(std::clamp(number, lowest, highest));
}

std::int32_t truncated(double number) {
    return std::isnan(number) ? 0 : limited<std::int32_t>(number);
}

char* copy_text(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    char* copy = new (std::nothrow) char[size];
    if (copy) {
        std::memcpy(copy, text, size);
    }
    return copy;
}

}  // namespace

PARAMETER::PARAMETER(std::int32_t value_type) : type(value_type) {
    for (VALUE_TYPE* where : {&value, &min, &max}) {
        where->double_value = 0;
        where->pointer_value = nullptr;
    }
}

PARAMETER::PARAMETER(const char* text) : PARAMETER(TYPE_STRING) {
    set_text(value, text);
}

PARAMETER::PARAMETER(const PARAMETER& other) : PARAMETER(other.type) {
    copy_from(other);
}

PARAMETER& PARAMETER::operator=(const PARAMETER& other) {
    if (this != &other) {
        free_strings();
        type = other.type;
        copy_from(other);
    }
    return *this;
}

PARAMETER::~PARAMETER() {
    free_strings();
}

void PARAMETER::copy_from(const PARAMETER& other) {
    value = other.value;
    min = other.min;
    max = other.max;
    if (type == TYPE_STRING) {
        for (VALUE_TYPE* where : {&value, &min, &max}) {
            where->string_value = where->string_value ? copy_text(where->string_value) : nullptr;
        }
    }
}

void PARAMETER::free_strings() {
    if (type == TYPE_STRING) {
        for (VALUE_TYPE* where : {&value, &min, &max}) {
            delete[] where->string_value;
            where->string_value = nullptr;
        }
    }
}

void PARAMETER::set_text(VALUE_TYPE& where, const char* text) {
    // The text may be the one that is being replaced.
    char* copy = copy_text(text ? text : "");
    delete[] where.string_value;
    where.string_value = copy;
}

void PARAMETER::set(VALUE_TYPE& where, std::int32_t number) {
    switch (type) {
        case TYPE_CHAR:
            where.char_value = limited<signed char>(number);
            break;
        case TYPE_SHORT:
            where.short_value = limited<std::int16_t>(number);
            break;
        case TYPE_LONG:
            where.long_value = number;
            break;
        case TYPE_FLOAT:
            where.float_value = static_cast<float>(number);
            break;
        case TYPE_DOUBLE:
            where.double_value = number;
            break;
        case TYPE_STRING: {
            char text[NUMBER_TEXT_SIZE];
            std::snprintf(text, sizeof text, "%" PRId32, number);
            set_text(where, text);
            break;
        }
        case TYPE_POINTER:
            where.pointer_value = reinterpret_cast<void*>(static_cast<std::intptr_t>(number));
            break;
        default:
            break;
    }
    check_limits();
}

void PARAMETER::set(VALUE_TYPE& where, double number) {
    switch (type) {
        case TYPE_FLOAT:
            where.float_value = static_cast<float>(number);
            break;
        case TYPE_DOUBLE:
            where.double_value = number;
            break;
        case TYPE_STRING: {
            // The largest doubles have more digits than there is room.
            char text[NUMBER_TEXT_SIZE];
            std::snprintf(text, sizeof text, "%.2lf", number);
            set_text(where, text);
            break;
        }
        default:
            set(where, truncated(number));
            return;
    }
    check_limits();
}

void PARAMETER::set(VALUE_TYPE& where, void* pointer) {
    if (type == TYPE_POINTER) {
        where.pointer_value = pointer;
    } else if (type == TYPE_STRING) {
        char text[NUMBER_TEXT_SIZE];
        std::snprintf(text, sizeof text, "%p", pointer);
        set_text(where, text);
    } else {
        set(where, static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(pointer)));
    }
}

void PARAMETER::set(VALUE_TYPE& where, const char* text) {
    switch (type) {
        case TYPE_CHAR:
            where.char_value = text ? static_cast<signed char>(*text) : static_cast<signed char>(0);
            check_limits();
            break;
        case TYPE_SHORT:
        case TYPE_LONG:
            set(where, text ? limited<std::int32_t>(std::strtoll(text, nullptr, 10)) : 0);
            break;
        case TYPE_FLOAT:
        case TYPE_DOUBLE:
            set(where, text ? std::strtod(text, nullptr) : 0.0);
            break;
        case TYPE_STRING:
            set_text(where, text);
            break;
        case TYPE_POINTER:
            where.pointer_value = const_cast<char*>(text);
            break;
        default:
            break;
    }
}

void PARAMETER::check_limits() {
    // In this order: where the limits cross, the upper one counts.
    const auto limit = [](auto& number, auto lowest, auto highest) {
        number = number < lowest ? lowest : number;
        number = number > highest ? highest : number;
    };
    switch (type) {
        case TYPE_CHAR:
            limit(value.char_value, min.char_value, max.char_value);
            break;
        case TYPE_SHORT:
            limit(value.short_value, min.short_value, max.short_value);
            break;
        case TYPE_LONG:
            limit(value.long_value, min.long_value, max.long_value);
            break;
        case TYPE_FLOAT:
            limit(value.float_value, min.float_value, max.float_value);
            break;
        case TYPE_DOUBLE:
            limit(value.double_value, min.double_value, max.double_value);
            break;
        default:
            break;
    }
}

std::int32_t PARAMETER::get_long(const VALUE_TYPE& where) const {
    switch (type) {
        case TYPE_CHAR:
            return where.char_value;
        case TYPE_SHORT:
            return where.short_value;
        case TYPE_LONG:
            return where.long_value;
        case TYPE_FLOAT:
            return truncated(where.float_value);
        case TYPE_DOUBLE:
            return truncated(where.double_value);
        case TYPE_STRING:
            return where.string_value
                       ? limited<std::int32_t>(std::strtoll(where.string_value, nullptr, 10))
                       : 0;
        case TYPE_POINTER:
            return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(where.pointer_value));
        default:
            return 0;
    }
}

double PARAMETER::get_double(const VALUE_TYPE& where) const {
    switch (type) {
        case TYPE_FLOAT:
            return static_cast<double>(where.float_value);
        case TYPE_DOUBLE:
            return where.double_value;
        case TYPE_STRING:
            return where.string_value ? std::strtod(where.string_value, nullptr) : 0;
        default:
            return get_long(where);
    }
}

void* PARAMETER::get_ptr(const VALUE_TYPE& where) const {
    if (type == TYPE_POINTER) {
        return where.pointer_value;
    }
    if (type == TYPE_STRING) {
        void* pointer = nullptr;
        return where.string_value && std::sscanf(where.string_value, "%p", &pointer) == 1 ? pointer
                                                                                          : nullptr;
    }
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(get_long(where)));
}

void PARAMETER::get_str(const VALUE_TYPE& where, char* buffer, std::int32_t size) const {
    if (!buffer || size < 1) {
        return;
    }
    const auto room = static_cast<std::size_t>(size);
    *buffer = '\0';
    switch (type) {
        case TYPE_CHAR:
            std::snprintf(buffer, room, "%c", where.char_value);
            break;
        case TYPE_SHORT:
        case TYPE_LONG:
            std::snprintf(buffer, room, "%" PRId32, get_long(where));
            break;
        case TYPE_FLOAT:
        case TYPE_DOUBLE:
            std::snprintf(buffer, room, "%.2lf", get_double(where));
            break;
        case TYPE_STRING:
            KVCORE::copy_text_field(buffer, room, where.string_value);
            break;
        case TYPE_POINTER:
            std::snprintf(buffer, room, "%p", where.pointer_value);
            break;
        default:
            break;
    }
}

std::int32_t PARAMETER::get_str_length() const {
    return type == TYPE_STRING && value.string_value
               ? static_cast<std::int32_t>(std::strlen(value.string_value))
               : 0;
}
