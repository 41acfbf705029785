// Vectors of the math library as log values: "(1.000000, 2.500000, 0.000000)".
//
// Only the vectors' names are needed here, so that the core library stands below the math library:
// whoever logs a vector has its header included anyway.
#ifndef KVCORE_VECTOR_LOGGABLE_H
#define KVCORE_VECTOR_LOGGABLE_H

#include "kvcore/loggable.h"

namespace KVMATH {

template <typename T>
struct BASEVECTOR2;
template <typename T>
struct VECTOR3_BASE;
template <typename T>
struct BASEVECTOR4;

}  // namespace KVMATH

namespace KVCORE {

// Appends "(", the numbers as reals with ", " between them, and ")". Yields the last node.
template <typename... NUMBERS>
LOGGABLE& append_numbers(LOGGABLE& node, const NUMBERS&... numbers) {
    LOGGABLE* last = &node;
    const char* separator = "(";
    const auto append = [&](double number) {
        last = &(*last << separator << number);
        separator = ", ";
    };
    (append(static_cast<double>(numbers)), ...);
    return *last << ")";
}

template <typename T>
LOGGABLE& operator<<(LOGGABLE& node, const KVMATH::BASEVECTOR2<T>& vector) {
    return append_numbers(node, vector.x, vector.y);
}
template <typename T>
LOGGABLE& operator<<(LOGGABLE& node, const KVMATH::VECTOR3_BASE<T>& vector) {
    return append_numbers(node, vector.x, vector.y, vector.z);
}
template <typename T>
LOGGABLE& operator<<(LOGGABLE& node, const KVMATH::BASEVECTOR4<T>& vector) {
    return append_numbers(node, vector.x, vector.y, vector.z, vector.w);
}

}  // namespace KVCORE

#endif  // KVCORE_VECTOR_LOGGABLE_H
