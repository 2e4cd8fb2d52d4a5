//
// NumberText.cpp
//

#include "zuno-keymapmanager/model/NumberText.h"

#include <cmath>
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

}  // namespace zunokeymapmanager
