// Prints a table of the fixed-point functions: the time of a call beside that of the C library's
// double, and the error beside a reference of 200 bits. An error counts steps of 2^-28, the last
// bit of the format; the relative one is given where results are large.
#include "kvmath/fixed_point.h"

#include <mpfr.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

namespace {

using KVMATH::FIXED_POINT;

constexpr int REFERENCE_BITS = 200;
constexpr int ROUNDS = 41;
constexpr std::size_t NUM_TIMED = 4096;
constexpr std::size_t NUM_CHECKED = 200'000;

struct FUNCTION {
    const char* name;
    const char* range;
    double low;
    double high;
    FIXED_POINT (*fixed)(FIXED_POINT);
    double (*real)(double);
    int (*reference)(mpfr_t, const mpfr_t, mpfr_rnd_t);
};

FIXED_POINT get_sine(FIXED_POINT angle) {
    FIXED_POINT sine;
    FIXED_POINT::sin_cos(angle, &sine, nullptr);
    return sine;
}

FIXED_POINT get_cosine(FIXED_POINT angle) {
    FIXED_POINT cosine;
    FIXED_POINT::sin_cos(angle, nullptr, &cosine);
    return cosine;
}

FIXED_POINT get_exponential(FIXED_POINT exponent) {
    return exponent.exponential();
}

FIXED_POINT get_root(FIXED_POINT value) {
    return value.square_root();
}

std::vector<FIXED_POINT> get_arguments(const FUNCTION& function, std::size_t count) {
    std::mt19937_64 engine(1);
    std::uniform_real_distribution<double> distribution(function.low, function.high);
    std::vector<FIXED_POINT> arguments;
    for (std::size_t i = 0; i < count; ++i) {
        arguments.emplace_back(distribution(engine));
    }
    return arguments;
}

// Nanoseconds a call, of one pass over all arguments.
template <typename T>
double time_pass(T (*function)(T), const std::vector<T>& arguments, std::vector<T>& results) {
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        results[i] = function(arguments[i]);
    }
    const std::chrono::duration<double, std::nano> duration =
        std::chrono::steady_clock::now() - start;
    return duration.count() / static_cast<double>(arguments.size());
}

double get_median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

struct TIMES {
    double fixed;
    double real;
};

// Both in turn, so that a busy moment hits both.
TIMES measure_times(const FUNCTION& function) {
    const std::vector<FIXED_POINT> arguments = get_arguments(function, NUM_TIMED);
    std::vector<double> real_arguments;
    for (const FIXED_POINT argument : arguments) {
        real_arguments.push_back(argument.to_double());
    }
    std::vector<FIXED_POINT> results(arguments.size());
    std::vector<double> real_results(arguments.size());
    std::vector<double> fixed_times;
    std::vector<double> real_times;
    for (int round = 0; round < ROUNDS; ++round) {
        fixed_times.push_back(time_pass(function.fixed, arguments, results));
        real_times.push_back(time_pass(function.real, real_arguments, real_results));
    }
    return {get_median(fixed_times), get_median(real_times)};
}

struct ERRORS {
    double largest = 0;           // in steps of 2^-28
    double mean = 0;              // of their sizes
    double largest_relative = 0;  // among results of at least 1
};

ERRORS measure_errors(const FUNCTION& function) {
    mpfr_t argument;
    mpfr_t exact;
    mpfr_t error;
    mpfr_inits2(REFERENCE_BITS, argument, exact, error, static_cast<mpfr_ptr>(nullptr));
    ERRORS errors;
    for (const FIXED_POINT x : get_arguments(function, NUM_CHECKED)) {
        mpfr_set_sj_2exp(argument, x.get_raw(), -FIXED_POINT::FRACTION_BITS, MPFR_RNDN);
        function.reference(exact, argument, MPFR_RNDN);
        mpfr_set_sj_2exp(error, function.fixed(x).get_raw(), -FIXED_POINT::FRACTION_BITS,
                         MPFR_RNDN);
        mpfr_sub(error, error, exact, MPFR_RNDN);
        const double size = std::fabs(mpfr_get_d(error, MPFR_RNDN));
        const double steps = std::ldexp(size, FIXED_POINT::FRACTION_BITS);
        errors.largest = std::max(errors.largest, steps);
        errors.mean += steps / static_cast<double>(NUM_CHECKED);
        const double result = std::fabs(mpfr_get_d(exact, MPFR_RNDN));
        if (result >= 1.0) {
            errors.largest_relative = std::max(errors.largest_relative, size / result);
        }
    }
    mpfr_clears(argument, exact, error, static_cast<mpfr_ptr>(nullptr));
    return errors;
}

constexpr double PI = 3.14159265358979;

const FUNCTION FUNCTIONS[] = {
    {"sine", "-2 pi to 2 pi", -2 * PI, 2 * PI, get_sine, std::sin, mpfr_sin},
    {"cosine", "-2 pi to 2 pi", -2 * PI, 2 * PI, get_cosine, std::cos, mpfr_cos},
    {"square root", "0 to 1", 0, 1, get_root, std::sqrt, mpfr_sqrt},
    {"square root", "0 to 1e6", 0, 1e6, get_root, std::sqrt, mpfr_sqrt},
    {"exponential", "-19.4 to 0", -19.4, 0, get_exponential, std::exp, mpfr_exp},
    {"exponential", "0 to 24.2", 0, 24.2, get_exponential, std::exp, mpfr_exp},
};

}  // namespace

int main() {
    std::printf(
        "| Function | Range | Fixed, ns | double, ns | double / fixed | Largest error, steps "
        "of 2^-28 | Mean | Largest relative, results from 1 |\n");
    std::printf("|---|---|---|---|---|---|---|---|\n");
    for (const FUNCTION& function : FUNCTIONS) {
        const TIMES times = measure_times(function);
        const ERRORS errors = measure_errors(function);
        std::printf("| %s | %s | %.1f | %.1f | %.2f | %.3g | %.3g | ", function.name,
                    function.range, times.fixed, times.real, times.real / times.fixed,
                    errors.largest, errors.mean);
        if (errors.largest_relative > 0) {
            std::printf("%.1e |\n", errors.largest_relative);
        } else {
            std::printf("none |\n");
        }
    }
    mpfr_free_cache();
    return 0;
}
