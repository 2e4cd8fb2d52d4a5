//
// HttpMessage.cpp
//

#include "HttpMessage.h"

#include <Poco/Exception.h>
#include <Poco/String.h>
#include <Poco/URI.h>

namespace zunokeymap {
namespace editor {

namespace {

std::string find(const HeaderList& headers, const std::string& name, bool* found) {
    for (const auto& header : headers) {
        if (Poco::icompare(header.first, name) == 0) {
            if (found != nullptr) {
                *found = true;
            }
            return header.second;
        }
    }
    if (found != nullptr) {
        *found = false;
    }
    return std::string();
}

}  // namespace

std::string HttpRequest::header(const std::string& name, bool* found) const {
    return find(headers, name, found);
}

std::string HttpRequest::path() const {
    return target.substr(0, target.find_first_of("?#"));
}

std::string HttpRequest::query(const std::string& name, bool* found) const {
    if (found != nullptr) {
        *found = false;
    }
    const std::size_t mark = target.find('?');
    if (mark == std::string::npos) {
        return std::string();
    }
    std::string query = target.substr(mark + 1);
    query = query.substr(0, query.find('#'));
    std::size_t start = 0;
    while (start <= query.size()) {
        std::size_t end = query.find('&', start);
        if (end == std::string::npos) {
            end = query.size();
        }
        const std::string pair = query.substr(start, end - start);
        const std::size_t equals = pair.find('=');
        std::string key;
        std::string value;
        try {
            Poco::URI::decode(pair.substr(0, equals), key, true);
            if (equals != std::string::npos) {
                Poco::URI::decode(pair.substr(equals + 1), value, true);
            }
        } catch (const Poco::Exception&) {
            key.clear();  // a broken escape names no parameter
        }
        if (key == name) {
            if (found != nullptr) {
                *found = true;
            }
            return value;
        }
        start = end + 1;
    }
    return std::string();
}

void HttpResponse::set(const std::string& name, const std::string& value) {
    for (auto& header : headers) {
        if (Poco::icompare(header.first, name) == 0) {
            header.second = value;
            return;
        }
    }
    headers.emplace_back(name, value);
}

std::string HttpResponse::header(const std::string& name) const {
    return find(headers, name, nullptr);
}

bool EqualInConstantTime(const std::string& a, const std::string& b) {
    // Every byte of the longer string is visited whatever the contents.
    const std::size_t length = a.size() > b.size() ? a.size() : b.size();
    unsigned difference = a.size() == b.size() ? 0U : 1U;
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned char x = i < a.size() ? static_cast<unsigned char>(a[i]) : 0;
        const unsigned char y = i < b.size() ? static_cast<unsigned char>(b[i]) : 0;
        difference |= static_cast<unsigned>(x ^ y);
    }
    return difference == 0;
}

}  // namespace editor
}  // namespace zunokeymap
