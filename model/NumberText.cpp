//
// NumberText.cpp
//

#include "zuno-keymapmanager/model/NumberText.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include <Poco/NumericString.h>

namespace zunokeymapmanager {

namespace {

const char* skipDigits(const char* p, const char* last) {
    while (p < last && *p >= '0' && *p <= '9') {
        ++p;
    }
    return p;
}

}  // namespace

const char* ReadNumber(const char* first, const char* last, double& value) {
    const char* p = first;
    if (p < last && *p == '-') {
        ++p;
    }
    const char* digits = p;
    p = skipDigits(p, last);
    bool any = p > digits;
    if (p < last && *p == '.') {
        const char* fraction = p + 1;
        const char* end = skipDigits(fraction, last);
        if (any || end > fraction) {
            any = true;
            p = end;
        }
    }
    if (!any) {
        return first;
    }
    // An exponent counts only with its digits: "2e" is the number 2.
    if (p < last && (*p == 'e' || *p == 'E')) {
        const char* exponent = p + 1;
        if (exponent < last && (*exponent == '+' || *exponent == '-')) {
            ++exponent;
        }
        const char* end = skipDigits(exponent, last);
        if (end > exponent) {
            p = end;
        }
    }
    // Poco's conversion is the correctly rounded one of double-conversion,
    // which no locale touches.
    const double read = Poco::strToDouble(std::string(first, p).c_str());
    if (!std::isfinite(read)) {
        return first;
    }
    value = read;
    return p;
}

std::string WriteNumber(double value) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    // double-conversion finds the shortest digits; only their layout is ours.
    char shortest[64] = {};
    Poco::doubleToStr(shortest, sizeof shortest, value);
    const char* p = shortest;
    const bool negative = *p == '-' || std::signbit(value);
    if (*p == '-') {
        ++p;
    }
    std::string digits;
    int point = 0;  // the value is 0.DIGITS times ten to the power `point`
    bool fraction = false;
    for (; *p != '\0' && *p != 'e' && *p != 'E'; ++p) {
        if (*p == '.') {
            fraction = true;
        } else if (digits.empty() && *p == '0') {
            point -= fraction ? 1 : 0;
        } else {
            digits += *p;
            point += fraction ? 0 : 1;
        }
    }
    if (*p == 'e' || *p == 'E') {
        point += std::atoi(p + 1);
    }
    const std::string sign = negative ? "-" : "";
    while (!digits.empty() && digits.back() == '0') {
        digits.pop_back();
    }
    if (digits.empty()) {
        return sign + "0";
    }
    const int count = static_cast<int>(digits.size());
    std::string fixed;
    if (point <= 0) {
        fixed = "0." + std::string(static_cast<std::size_t>(-point), '0') + digits;
    } else if (point >= count) {
        fixed = digits + std::string(static_cast<std::size_t>(point - count), '0');
    } else {
        fixed = digits.substr(0, static_cast<std::size_t>(point)) + "." +
                digits.substr(static_cast<std::size_t>(point));
    }
    const int exponent = point - 1;
    const int magnitude = exponent < 0 ? -exponent : exponent;
    std::string scientific = digits.substr(0, 1);
    if (count > 1) {
        scientific += "." + digits.substr(1);
    }
    scientific += exponent < 0 ? "e-" : "e+";
    scientific += (magnitude < 10 ? "0" : "") + std::to_string(magnitude);
    return sign + (fixed.size() <= scientific.size() ? fixed : scientific);
}

}  // namespace zunokeymapmanager
