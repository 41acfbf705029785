// The values of a log message, as a chain that is turned into text only when a handler asks.
//
//   LOGGABLE root;
//   root << "x = " << 5;
//
// Text is referenced, not copied, so a literal costs nothing to log; a char* must live until the
// message was handled. KVCORE::STRING is held by its shared buffer, std::string is copied.
#ifndef KVCORE_LOGGABLE_H
#define KVCORE_LOGGABLE_H

#include <cstdint>
#include <string>

namespace KVCORE {

class STRING;
class SYMBOL;

// A node, and the root of a chain: the root itself yields no text. A node owns the rest of its
// chain. One thread at a time.
//
// The texts are never null and stay good until the next text is asked of the same node.
class LOGGABLE {
public:
    LOGGABLE() = default;
    virtual ~LOGGABLE();
    LOGGABLE(const LOGGABLE&) = delete;
    LOGGABLE& operator=(const LOGGABLE&) = delete;

    virtual const char* get_as_c8() const;
    virtual const char16_t* get_as_c16() const;
    // `id` is written as the element's id. No flag is in use.
    virtual const char* get_as_xml(std::int32_t id, std::uint32_t flags) const;

    LOGGABLE* get_next() { return next_; }
    const LOGGABLE* get_next() const { return next_; }

    // Puts `node` behind this one and yields it. Takes ownership of it.
    LOGGABLE& append(LOGGABLE* node);
    // Hands over what is behind this node, which then is the last.
    LOGGABLE* release_next();

private:
    LOGGABLE* next_ = nullptr;
};

class CONSTANT_LOGGABLE_C8 : public LOGGABLE {
public:
    // The text is not copied; null counts as empty.
    explicit CONSTANT_LOGGABLE_C8(const char* text) : text_(text ? text : "") {}
    const char* get_as_c8() const override { return text_; }
    const char16_t* get_as_c16() const override;

private:
    const char* text_;
    mutable std::u16string wide_;
};

class CONSTANT_LOGGABLE_C16 : public LOGGABLE {
public:
    // The text is not copied; null counts as empty.
    explicit CONSTANT_LOGGABLE_C16(const char16_t* text) : text_(text ? text : u"") {}
    const char* get_as_c8() const override;
    const char16_t* get_as_c16() const override { return text_; }

private:
    const char16_t* text_;
    mutable std::string narrow_;
};

class STL_STRING_LOGGABLE : public LOGGABLE {
public:
    explicit STL_STRING_LOGGABLE(std::string text) : text_(std::move(text)) {}
    const char* get_as_c8() const override { return text_.c_str(); }
    const char16_t* get_as_c16() const override;

private:
    std::string text_;
    mutable std::u16string wide_;
};

// Numbers keep their texts inside the node, so that asking for them allocates nothing.
class NUMBER_LOGGABLE : public LOGGABLE {
public:
    const char16_t* get_as_c16() const override;

protected:
    static constexpr std::size_t BUFFER_SIZE = 64;
    mutable char text_[BUFFER_SIZE];

private:
    mutable char16_t wide_[BUFFER_SIZE];
};

class INTEGER_LOGGABLE : public NUMBER_LOGGABLE {
public:
    INTEGER_LOGGABLE(std::uint64_t value, bool is_signed) : value_(value), is_signed_(is_signed) {}
    const char* get_as_c8() const override;
    const char* get_as_xml(std::int32_t id, std::uint32_t flags) const override;

private:
    std::uint64_t value_;
    bool is_signed_;
};

// In fixed notation; a number too long for that in exponent notation.
class REAL_LOGGABLE : public NUMBER_LOGGABLE {
public:
    explicit REAL_LOGGABLE(double value) : value_(value) {}
    const char* get_as_c8() const override;
    const char* get_as_xml(std::int32_t id, std::uint32_t flags) const override;

private:
    double value_;
};

class BOOLEAN_LOGGABLE : public LOGGABLE {
public:
    explicit BOOLEAN_LOGGABLE(bool value) : value_(value) {}
    const char* get_as_c8() const override { return value_ ? "true" : "false"; }
    const char16_t* get_as_c16() const override { return value_ ? u"true" : u"false"; }
    const char* get_as_xml(std::int32_t, std::uint32_t) const override {
        return value_ ? "<true/>" : "<false/>";
    }

private:
    bool value_;
};

// Each appends a node behind the given one and yields the new node. The char types are numbers.
LOGGABLE& operator<<(LOGGABLE& node, bool value);
LOGGABLE& operator<<(LOGGABLE& node, char value);
LOGGABLE& operator<<(LOGGABLE& node, signed char value);
LOGGABLE& operator<<(LOGGABLE& node, unsigned char value);
LOGGABLE& operator<<(LOGGABLE& node, short value);
LOGGABLE& operator<<(LOGGABLE& node, unsigned short value);
LOGGABLE& operator<<(LOGGABLE& node, int value);
LOGGABLE& operator<<(LOGGABLE& node, unsigned int value);
LOGGABLE& operator<<(LOGGABLE& node, long value);
LOGGABLE& operator<<(LOGGABLE& node, unsigned long value);
LOGGABLE& operator<<(LOGGABLE& node, long long value);
LOGGABLE& operator<<(LOGGABLE& node, unsigned long long value);
LOGGABLE& operator<<(LOGGABLE& node, float value);
LOGGABLE& operator<<(LOGGABLE& node, double value);
LOGGABLE& operator<<(LOGGABLE& node, const char* text);
LOGGABLE& operator<<(LOGGABLE& node, const char16_t* text);
LOGGABLE& operator<<(LOGGABLE& node, const std::string& text);
LOGGABLE& operator<<(LOGGABLE& node, const void* pointer);
LOGGABLE& operator<<(LOGGABLE& node, const STRING& text);
LOGGABLE& operator<<(LOGGABLE& node, const SYMBOL& symbol);

}  // namespace KVCORE

#endif  // KVCORE_LOGGABLE_H
