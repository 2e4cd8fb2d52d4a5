//
// SvgWriter.h
//
// Builds SVG text: elements, attributes and numbers written the same way on
// every machine, and text from documents made safe to embed.
//

#ifndef ZUNO_KEYMAP_RENDER_SVGWRITER_H
#define ZUNO_KEYMAP_RENDER_SVGWRITER_H

#include <string>
#include <string_view>

namespace zunokeymap {
namespace render {

/// Appends `text` to `out` as XML character data or attribute text: & < > " '
/// become entities, characters XML 1.0 does not allow (most control
/// characters, U+FFFE, U+FFFF) are dropped, and each byte that is not part of
/// valid UTF-8 becomes U+FFFD. Nothing a document says can open markup.
void AppendEscaped(std::string& out, std::string_view text);

/// Appends `value` with at most two decimals and no trailing zeros ("12.5",
/// "-3", "0.07"), whatever the locale. Values that are not finite or beyond
/// +/-1e9 are clamped, so a hostile number cannot produce an unbounded picture.
void AppendNumber(std::string& out, double value);

/// Appends one step of path data: `command` (a letter, or ' ' to continue
/// one) and the point "x y", as AppendNumber writes numbers.
void AppendPathPoint(std::string& out, char command, double x, double y);

/// Writes one SVG document into a string. Open an element, add attributes,
/// then close it empty or give it text or children:
///
///     svg.open("circle").attr("cx", 10).attr("r", 4).close();
///     svg.open("text").attr("x", 0).text("A & B");
///     svg.open("g").attr("class", "item").content(); ... svg.end("g");
class SvgWriter {
public:
    explicit SvgWriter(std::size_t reserve = 0);

    SvgWriter& open(std::string_view name);
    SvgWriter& attr(std::string_view name, std::string_view value);
    SvgWriter& attr(std::string_view name, const char* value) {
        return attr(name, std::string_view(value));
    }
    SvgWriter& attr(std::string_view name, const std::string& value) {
        return attr(name, std::string_view(value));
    }
    SvgWriter& attr(std::string_view name, double value);
    SvgWriter& attr(std::string_view name, int value) {
        return attr(name, static_cast<double>(value));
    }
    /// Ends the open tag with "/>".
    void close();
    /// Ends the open tag, writes escaped `text` and the end tag.
    void text(std::string_view text);
    /// Ends the open tag; children follow, then end(name).
    void content();
    void end(std::string_view name);
    /// Appends markup as is: only for text this renderer wrote itself.
    void raw(std::string_view markup);

    const std::string& str() const { return out_; }
    std::string take() { return std::move(out_); }

private:
    std::string out_;
    std::string_view openName_;
};

}  // namespace render
}  // namespace zunokeymap

#endif  // ZUNO_KEYMAP_RENDER_SVGWRITER_H
