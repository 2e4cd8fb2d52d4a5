// Decimal numbers read from text: how far a number reaches, what counts as
// one, and values rounded as a correct reader rounds them; and numbers
// written as the C++ library's shortest form writes them.

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <zuno-keymapmanager/model/NumberText.h>

namespace {

namespace km = zunokeymapmanager;

struct NumberCase {
    const char* text;
    int length;  ///< characters read; 0 when no number starts there
    double value;
};

// clang-format off
const NumberCase kNumbers[] = {
    {"0", 1, 0.0}, {"-0.25e2x", 7, -25.0}, {"1.5,2.5", 3, 1.5}, {".5", 2, 0.5}, {"5.", 2, 5.0},
    {"-.5)", 3, -0.5}, {"1E+3", 4, 1000.0}, {"7e-1;", 4, 0.7},
    // An exponent without digits is not part of the number.
    {"2e", 1, 2.0}, {"2e+", 1, 2.0}, {"3E-x", 1, 3.0},
    // The nearest double, as a correctly rounding reader finds it.
    {"0.1", 3, 0.1}, {"2.2250738585072014e-308", 23, 2.2250738585072014e-308},
    {"1.7976931348623157e308", 22, 1.7976931348623157e308}, {"1e-400", 6, 0.0},
    // Nothing to read, or beyond the range of a double.
    {"", 0, 0}, {"-", 0, 0}, {".", 0, 0}, {"-.e1", 0, 0}, {"+1", 0, 0}, {"e5", 0, 0},
    {"inf", 0, 0}, {"nan", 0, 0}, {"0x10", 1, 0.0}, {"1e999", 0, 0}, {"-2e308", 0, 0},
};
// clang-format on

TEST(NumberText, ReadsTheLongestNumberAndItsValue) {
    for (const NumberCase& c : kNumbers) {
        const char* first = c.text;
        const char* last = first + std::strlen(first);
        double value = -123.0;
        const char* end = km::ReadNumber(first, last, value);
        EXPECT_EQ(end - first, c.length) << "'" << c.text << "'";
        EXPECT_EQ(value, c.length == 0 ? -123.0 : c.value) << "'" << c.text << "'";
    }
}

TEST(NumberText, StopsAtTheEndGivenEvenInsideANumber) {
    const std::string text = "12.75e3";
    for (std::size_t size = 1; size <= text.size(); ++size) {
        double value = 0;
        const char* end = km::ReadNumber(text.data(), text.data() + size, value);
        const std::string expected = size == 6 ? "12.75" : text.substr(0, size);
        EXPECT_EQ(std::string(text.data(), end), expected) << "size " << size;
        EXPECT_EQ(value, std::stod(expected)) << "size " << size;
    }
}

// The platform's own writer where it has one: the same characters, and they
// read back to the same bits.
TEST(NumberText, WritesTheShortestFormAsTheStandardLibraryDoes) {
    std::vector<double> values = {
        0.0,      -0.0,    0.5,       1e-06,  0.0001,
        100,      123456,  1234567,   1e+21,  1e+22,
        0.1,      1.0 / 3, -2.5e-300, 5e-324, std::numeric_limits<double>::max(),
        0.123456, 1.05};
    std::mt19937_64 random(27);
    std::uniform_int_distribution<int> exponent(-30, 30);
    std::uniform_real_distribution<double> mantissa(-10, 10);
    for (int i = 0; i < 2000; ++i) {
        values.push_back(std::ldexp(mantissa(random), exponent(random)));
        values.push_back(std::round(mantissa(random) * 1e6) / 1e6);
    }
    for (const double value : values) {
        char expected[64];
        const auto result = std::to_chars(expected, expected + sizeof expected, value);
        const std::string written = km::WriteNumber(value);
        EXPECT_EQ(written, std::string(expected, result.ptr)) << value;
        double back = 0;
        km::ReadNumber(written.data(), written.data() + written.size(), back);
        EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0) << written;
    }
    EXPECT_EQ(km::WriteNumber(std::nan("")), "nan");
    EXPECT_EQ(km::WriteNumber(-HUGE_VAL), "-inf");
}

}  // namespace
