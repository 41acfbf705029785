// The "C" locale, for numbers as text that must come out alike whatever the process has set.
#ifndef KVCORE_C_LOCALE_H
#define KVCORE_C_LOCALE_H

#include <locale.h>

namespace KVCORE {

inline locale_t get_c_locale() noexcept {
    static const locale_t locale = ::newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

// The calling thread's locale is "C" as long as this lives.
class C_LOCALE_SCOPE {
public:
    C_LOCALE_SCOPE() noexcept : previous(::uselocale(get_c_locale())) {}
    ~C_LOCALE_SCOPE() { ::uselocale(previous); }
    C_LOCALE_SCOPE(const C_LOCALE_SCOPE&) = delete;
    C_LOCALE_SCOPE& operator=(const C_LOCALE_SCOPE&) = delete;

private:
    const locale_t previous;
};

}  // namespace KVCORE

#endif  // KVCORE_C_LOCALE_H
