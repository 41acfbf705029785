#!/usr/bin/env python3
"""Writes kvlibs/kvcore/code/unicode_tables.cpp from Python's copy of the Unicode character database.

Run it from the root of the tree:  python3 tools/make_unicode_tables.py > kvlibs/kvcore/code/unicode_tables.cpp
Only the Basic Multilingual Plane is covered, without surrogates: a character is one 16-bit unit.
"""
import sys
import unicodedata

UNITS = [u for u in range(0x10000) if not 0xD800 <= u <= 0xDFFF]
# The property White_Space of the database's PropList.txt.
WHITE_SPACE = ([0x20, 0x85, 0xA0, 0x1680, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000]
               + list(range(0x09, 0x0E)) + list(range(0x2000, 0x200B)))


def runs(units):
    """Cuts ascending units into (first, last, stride) with stride 1 or 2."""
    result = []
    i = 0
    while i < len(units):
        first = last = units[i]
        stride = 1
        if i + 1 < len(units) and units[i + 1] - first == 2:
            stride = 2
        while i + 1 < len(units) and units[i + 1] - last == stride:
            i += 1
            last = units[i]
        i += 1
        result.append((first, last, stride if last != first else 1))
    return result


def write_rows(name, kind, items):
    for i in range(0, len(items), 4):
        print("    " + " ".join(items[i:i + 4]))
    print(f"}};\nconstinit const std::span<const {kind}> {name}({name}_RANGES);\n")


def write_class(name, units):
    ranges = runs(units)
    print(f"constexpr UNIT_RANGE {name}_RANGES[] = {{")
    write_rows(name, "UNIT_RANGE",
               [f"{{0x{first:04X}, 0x{last:04X}, {stride}}}," for first, last, stride in ranges])


def write_mapping(name, mapping):
    """Cuts the mapping into ascending runs with one difference between unit and image."""
    pairs = [(u, mapping(u)) for u in UNITS]
    pairs = [(u, m - u) for u, m in pairs if m != u]
    ranges = []
    i = 0
    while i < len(pairs):
        j = i
        stride = 1
        if i + 1 < len(pairs) and pairs[i + 1][1] == pairs[i][1] and pairs[i + 1][0] - pairs[i][0] == 2:
            stride = 2
        while (j + 1 < len(pairs) and pairs[j + 1][1] == pairs[i][1]
               and pairs[j + 1][0] - pairs[j][0] == stride):
            j += 1
        ranges.append((pairs[i][0], pairs[j][0], stride if j > i else 1, pairs[i][1]))
        i = j + 1
    print(f"constexpr CASE_RANGE {name}_RANGES[] = {{")
    write_rows(name, "CASE_RANGE",
               [f"{{0x{first:04X}, 0x{last:04X}, {stride}, {difference}}},"
                for first, last, stride, difference in ranges])


def single(text, unit):
    """A mapping of one unit to one unit; anything longer leaves the unit as it is."""
    return ord(text) if len(text) == 1 and ord(text) < 0x10000 else unit


def category(*wanted):
    return [u for u in UNITS if unicodedata.category(chr(u)) in wanted]


def simple_lower(unit):
    # The one unit whose simple mapping differs from its full one.
    return 0x69 if unit == 0x130 else single(chr(unit).lower(), unit)


def simple_upper(unit):
    # Greek letters with iota subscript have a full mapping of two units, and a simple one.
    text = chr(unit).upper()
    return single(text, unit) if len(text) == 1 else single(chr(unit).title(), unit)


def simple_fold(unit):
    # Where the full folding has more units, the simple one is the lower case.
    text = chr(unit).casefold()
    return single(text, unit) if len(text) == 1 else single(chr(unit).lower(), unit)


def main():
    print(f"// Made by tools/make_unicode_tables.py from the Unicode character database {unicodedata.unidata_version}.")
    print('#include "unicode_tables.h"\n\nnamespace KVCORE::UNICODE {\n\n// clang-format off')
    write_class("ALPHABETIC", category("Lu", "Ll", "Lt", "Lm", "Lo"))
    write_class("DECIMAL_DIGIT", category("Nd"))
    write_class("UPPER_CASE", category("Lu"))
    write_class("LOWER_CASE", category("Ll"))
    write_class("WHITE_SPACE", sorted(WHITE_SPACE))
    write_class("PUNCTUATION", category("Pc", "Pd", "Ps", "Pe", "Pi", "Pf", "Po"))
    write_mapping("TO_LOWER", simple_lower)
    write_mapping("TO_UPPER", simple_upper)
    write_mapping("FOLD_CASE", simple_fold)
    print("// clang-format on\n\n}  // namespace KVCORE::UNICODE")
    return 0


sys.exit(main())
