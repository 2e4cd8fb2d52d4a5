// Decimal numbers read from text: how far a number reaches, what counts as
// one, and values rounded as a correct reader rounds them.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

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

}  // namespace
