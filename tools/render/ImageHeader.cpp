//
// ImageHeader.cpp
//

#include "ImageHeader.h"

#include <cstdint>
#include <cstring>

namespace zunokeymap {
namespace render {

namespace {

// Far beyond any screen; larger sizes are more likely corruption than images.
constexpr std::uint32_t kMaxSide = 65535;

std::uint32_t bigEndian(const std::string& s, std::size_t at, int bytes) {
    std::uint32_t value = 0;
    for (int k = 0; k < bytes; ++k) {
        value = (value << 8) | static_cast<unsigned char>(s[at + static_cast<std::size_t>(k)]);
    }
    return value;
}

std::string readPng(const std::string& s, std::uint32_t& width, std::uint32_t& height) {
    // Signature, then the first chunk: length 13, "IHDR", width, height.
    if (s.size() < 8 + 8 + 13 || bigEndian(s, 8, 4) != 13 || s.compare(12, 4, "IHDR") != 0) {
        return "the PNG file has no IHDR header";
    }
    width = bigEndian(s, 16, 4);
    height = bigEndian(s, 20, 4);
    return std::string();
}

bool isStartOfFrame(unsigned char marker) {
    // SOF0..SOF15 without DHT (C4), JPG (C8) and DAC (CC).
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

std::string readJpeg(const std::string& s, std::uint32_t& width, std::uint32_t& height) {
    std::size_t at = 2;  // after SOI
    while (at + 4 <= s.size()) {
        if (static_cast<unsigned char>(s[at]) != 0xFF) {
            return "the JPEG file's segments are damaged";
        }
        const unsigned char marker = static_cast<unsigned char>(s[at + 1]);
        if (marker == 0xFF) {  // fill byte
            ++at;
            continue;
        }
        if (marker == 0xD8 || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {
            at += 2;  // markers without a length
            continue;
        }
        if (marker == 0xD9 || marker == 0xDA) {
            break;  // end of image or start of scan before any frame header
        }
        const std::uint32_t length = bigEndian(s, at + 2, 2);
        if (length < 2) {
            return "the JPEG file's segments are damaged";
        }
        if (isStartOfFrame(marker)) {
            // Length, precision, height, width.
            if (length < 7 || at + 9 > s.size()) {
                return "the JPEG frame header is cut short";
            }
            height = bigEndian(s, at + 5, 2);
            width = bigEndian(s, at + 7, 2);
            return std::string();
        }
        at += 2 + length;
    }
    return "the JPEG file has no frame header";
}

}  // namespace

namespace {

std::string base64(const std::string& bytes) {
    static const char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    std::size_t i = 0;
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(bytes[k]); };
    for (; i + 3 <= bytes.size(); i += 3) {
        const unsigned v = (byte(i) << 16) | (byte(i + 1) << 8) | byte(i + 2);
        out += kDigits[(v >> 18) & 63];
        out += kDigits[(v >> 12) & 63];
        out += kDigits[(v >> 6) & 63];
        out += kDigits[v & 63];
    }
    if (i < bytes.size()) {
        const bool two = i + 1 < bytes.size();
        const unsigned v = (byte(i) << 16) | (two ? byte(i + 1) << 8 : 0);
        out += kDigits[(v >> 18) & 63];
        out += kDigits[(v >> 12) & 63];
        out += two ? kDigits[(v >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

}  // namespace

std::string DataUri(const std::string& mime, const std::string& bytes) {
    return "data:" + mime + ";base64," + base64(bytes);
}

std::string ReadBackground(std::string bytes, Background& out) {
    static const char kPng[] = "\x89PNG\r\n\x1A\n";
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::string mime;
    std::string error;
    if (bytes.size() >= 8 && std::memcmp(bytes.data(), kPng, 8) == 0) {
        mime = "image/png";
        error = readPng(bytes, width, height);
    } else if (bytes.size() >= 3 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
               static_cast<unsigned char>(bytes[1]) == 0xD8 &&
               static_cast<unsigned char>(bytes[2]) == 0xFF) {
        mime = "image/jpeg";
        error = readJpeg(bytes, width, height);
    } else {
        return "not a PNG or JPEG image";
    }
    if (!error.empty()) {
        return error;
    }
    if (width == 0 || height == 0 || width > kMaxSide || height > kMaxSide) {
        return "the image size " + std::to_string(width) + "x" + std::to_string(height) +
               " is not usable";
    }
    out.uri = DataUri(mime, bytes);
    out.bytes = std::move(bytes);
    out.mime = mime;
    out.width = static_cast<int>(width);
    out.height = static_cast<int>(height);
    return std::string();
}

}  // namespace render
}  // namespace zunokeymap
