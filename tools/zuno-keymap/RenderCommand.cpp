//
// RenderCommand.cpp
//
// zuno-keymap render: a keymap as a picture of the screen, in SVG.
//

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <SvgRenderer.h>

#include "CommandLine.h"
#include "Common.h"
#include "DiffPicture.h"
#include "ScreenOptions.h"

namespace zunokeymap {

namespace {

struct RenderArguments {
    std::string file;
    std::string old;  ///< with --diff: the keymap FILE is compared with
    std::string output;
    std::string size;
    std::string background;
    bool joystick = false;
    bool labels = false;
    bool noLegend = false;
};

int runRender(const RenderArguments& args) {
    const bool joystick = args.joystick;
    render::RenderOptions picture;
    const std::string error = ReadScreenOptions(args.size, args.background, picture);
    if (!error.empty()) {
        return UsageError("render", error);
    }

    const Loaded loaded = Load(args.file, joystick);
    const Loaded old = args.old.empty() ? Loaded() : Load(args.old, joystick);
    for (const Loaded* each : {&old, &loaded}) {
        if (each->diagnostic.failed) {
            return ReportLoadFailure(*each);
        }
    }
    picture.labels = args.labels;
    picture.legend = !args.noLegend;
    if (old.doc != nullptr) {
        const std::vector<KeymapChange> changes = DiffKeymaps(*old.doc, *loaded.doc);
        picture.overlay = DiffOverlay(*old.doc, *loaded.doc, changes);
        picture.title = render::LastPathComponent(old.source) + " \xE2\x86\x92 " +
                        render::LastPathComponent(loaded.source) + ": " + DiffSummary(changes);
    }
    const std::string svg = render::RenderDocumentSvg(*loaded.doc, loaded.text, loaded.joystick,
                                                      loaded.source, picture);

    return WriteOutput("render", args.output.empty() ? "-" : args.output, svg) ? kClean : kUsage;
}

}  // namespace

void AddRenderCommand(CLI::App& app) {
    auto args = std::make_shared<RenderArguments>();
    CLI::App& command = AddSubcommand(
        app, "render", "draw a document as an SVG picture of the screen",
        "Draws the document as one self-contained SVG picture of the screen: every item\n"
        "at its marker with its key caption, its touch point and the geometry of its type,\n"
        "invalid items and key collisions marked (the reason in each item's tooltip), and\n"
        "a band above the screen with a title line and a legend. docs/render.md describes\n"
        "the picture.\n\n"
        "With --diff OLD, FILE is drawn as the new keymap with what changed since OLD\n"
        "marked over it (diff's pairing of items): removed items ghosted in red,\n"
        "added items ringed in green, moved items with an arrow from where they were,\n"
        "rebound items with the old caption beside the new.\n\n"
        "Exit status: 0 when drawn (problems are drawn, not errors), 1 when FILE (or OLD)\n"
        "does not load, 2 on a usage error or when a file cannot be read or written.\n");
    command.add_option("FILE", args->file, "the document to draw (with --diff: NEW)")->required();
    command
        .add_option("--diff", args->old,
                    "draw what changed from OLD to FILE: removed, added, moved, rebound")
        ->type_name("OLD");
    command
        .add_option("-o,--output", args->output,
                    "write to OUT instead of standard output ('-' is standard output)")
        ->type_name("OUT");
    command
        .add_option("--size", args->size,
                    "the screen in pixels (default 1920x1080, or the background's size)")
        ->type_name("WxH");
    command
        .add_option("--background", args->background,
                    "a PNG or JPEG image (a screenshot) drawn under the items and embedded")
        ->type_name("IMAGE");
    command.add_flag("--labels", args->labels,
                     "print each item's description beside its marker, where there is room");
    command.add_flag("--no-legend", args->noLegend,
                     "leave out the band with the title line and the legend: the picture is "
                     "the screen alone");
    command.add_flag("--joystick", args->joystick, "load FILE as a gamepad document");
    OnRun(command, [args] { return runRender(*args); });
}

}  // namespace zunokeymap
